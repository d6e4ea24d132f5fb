#include "app/FindingText.h"
#include "app/NaturalOrder.h"
#include "app/PlanTableModel.h"

#include "tests/app/PlanPair.h"
#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>

// What the pages of the plan check say, and how they sort.

using verification::Finding;
using verification::Kind;

static SharedPlanCheck checkOf(const InputText& input, const QByteArray& schedule)
{
    const TemporaryFolder folder;
    writeFile(QStringLiteral("in.xml"), input.document());
    writeFile(QStringLiteral("out.xml"), schedule);
    return std::make_shared<const PlanCheck>(QStringList{folder.path(QStringLiteral("in.xml"))},
                                             QStringList{folder.path(QStringLiteral("out.xml"))});
}

static SharedPlanCheck checkOf(const QList<LineTransmission>& transmissions)
{
    return checkOf(lineInput({10, 25}), lineSchedule(transmissions));
}

static QString rowOf(const PlanTable& table, int row)
{
    QStringList texts;
    for (const PlanColumn& column : table.columns)
        texts.append(column.cell(row).text);
    return texts.join(QLatin1Char('|'));
}

static QStringList rowsOf(const PlanTable& table)
{
    QStringList rows;
    for (int row = 0; row < table.rowCount; ++row)
        rows.append(rowOf(table, row));
    return rows;
}

static QStringList columnOf(const QAbstractItemModel& model, int column)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.index(row, column).data().toString());
    return texts;
}

/// One column of numbers or of texts.
static PlanTable tableOf(const QList<PlanCell>& cells)
{
    PlanTable table;
    table.rowCount = cells.size();
    table.columns = {{QStringLiteral("header"), [cells](int row) { return cells.at(row); }}};
    table.place = [](int row) {
        PlanPlace place;
        place.node = row;
        return place;
    };
    return table;
}

static PlanCell number(qint64 value)
{
    PlanCell cell;
    cell.text = QString::number(value);
    cell.order = value;
    cell.isNumber = true;
    return cell;
}

static PlanCell text(const char* value)
{
    PlanCell cell;
    cell.text = QString::fromUtf8(value);
    return cell;
}

class PlanTablesTest : public QObject
{
    Q_OBJECT

private slots:
    // ---- Findings

    void clashIsToldWithNodePortSlotAndFlows()
    {
        const PlanTable table = findingTable(checkOf(clashingTransmissions()));
        QCOMPARE(rowsOf(table), QStringList{QStringLiteral(
                                    u"故障|时隙冲突|S2|2|5|10-0, 25-0|2 次发送占用同一时隙")});
        const PlanPlace place = table.place(0);
        QCOMPARE(place.node, 12);
        QCOMPARE(place.port, 2);
        QCOMPARE(place.slot, qint64(5));
        QVERIFY(!place.receives);
    }

    void windowIsToldWithItsSlots()
    {
        InputText input = lineNetwork(2, 4);
        input.flow(10, QStringLiteral("2000"), 1, QStringLiteral("A"), QStringLiteral("[200,600]"),
                   {{QStringLiteral("B"), QStringLiteral("[0,400]")}});
        const PlanTable table = findingTable(checkOf(input, lineSchedule({{10, 0, 4, 5, 6}})));
        QCOMPARE(
            rowOf(table, 0),
            QStringLiteral(u"故障|超出发送窗口|A|1|4|10-0|在时隙 4 发送，发送窗口是时隙 [1,2]"));
        QCOMPARE(
            rowOf(table, 1),
            QStringLiteral(u"故障|超出接收窗口|B|1|6|10-0|在时隙 6 收到，接收窗口是时隙 [0,1]"));
        QVERIFY(!table.place(0).receives);
        QVERIFY(table.place(1).receives);
    }

    void flowWithoutAPlaceLeadsToItsTalkersPort()
    {
        const PlanTable table = findingTable(checkOf({soundTransmissions().first()}));
        QCOMPARE(rowOf(table, 0), QStringLiteral(u"故障|流未规划||||25|1 次发送都不在调度表中"));
        QCOMPARE(table.place(0).node, 1);
        QCOMPARE(table.place(0).port, 1);
        QCOMPARE(*table.place(0).flowID, 25);
    }

    void faultsAndRemarksDifferInTextAndIcon()
    {
        // A period that is no whole number of slots, in a schedule of another cycle.
        InputText input = lineNetwork(2, 4);
        input.flow(10, QStringLiteral("2100"), 1, QStringLiteral("A"), QStringLiteral("[0,2000]"),
                   {{QStringLiteral("B"), QStringLiteral("[0,2000]")}});
        const PlanTable table = findingTable(checkOf(input, lineSchedule({{10, 0, 0, 1, 2}})));
        const PlanColumn& level = table.columns.front();
        QSet<QString> texts;
        QSet<qint64> icons;
        for (int row = 0; row < table.rowCount; ++row) {
            const PlanCell cell = level.cell(row);
            QVERIFY(!cell.icon.isNull());
            texts.insert(cell.text);
            icons.insert(cell.icon.cacheKey());
        }
        QCOMPARE(texts, (QSet<QString>{QStringLiteral(u"故障"), QStringLiteral(u"提示")}));
        QVERIFY(icons.size() >= 2);
    }

    void everyKindHasANameAndAnExplanationOfItsOwn()
    {
        const SharedPlanCheck check = checkOf(soundTransmissions());
        QSet<QString> names;
        for (const Kind kind : verification::allKinds()) {
            Finding finding;
            finding.kind = kind;
            QVERIFY(!textOf(kind).isEmpty());
            names.insert(textOf(kind));
            const QString explanation = explanationOf(*check, finding);
            QVERIFY2(!explanation.isEmpty() && !explanation.contains(QLatin1Char('%')),
                     qPrintable(textOf(kind)));
        }
        QCOMPARE(size_t(names.size()), verification::allKinds().size());
    }

    void reasonsAreToldInWords()
    {
        const SharedPlanCheck check = checkOf(soundTransmissions());
        QSet<QString> texts;
        for (int reason = 0; reason <= int(verification::Reason::PeriodZero); ++reason) {
            Finding finding;
            finding.kind = Kind::MissingFlow;
            finding.reason = static_cast<verification::Reason>(reason);
            texts.insert(explanationOf(*check, finding));
        }
        QCOMPARE(texts.size(), int(verification::Reason::PeriodZero) + 1);
    }

    void veryManyTransmissionsAreCounted()
    {
        Finding finding;
        for (int i = 0; i < 30; ++i)
            finding.transmissions.push_back({7, i});
        QVERIFY(transmissionsText(finding).endsWith(QStringLiteral(u"7-19, …共 30")));
        finding.transmissions = {{7, verification::Transmission::wholeFlow}};
        QCOMPARE(transmissionsText(finding), QStringLiteral("7"));
    }

    void summaryTellsTheNumbersChecked()
    {
        QCOMPARE(summaryOf(nullptr), QStringLiteral(u"还没有载入调度表。"));
        QCOMPARE(summaryOf(checkOf(soundTransmissions()).get()),
                 QStringLiteral(u"未发现问题。已检查 2 次发送、2 条流、3 个端口。"));
        QCOMPARE(summaryOf(checkOf(clashingTransmissions()).get()),
                 QStringLiteral(u"发现 1 个故障、0 个提示。已检查 2 次发送、2 条流、3 个端口。"));
    }

    void logTellsTwentyFindingsAndHowManyMore()
    {
        verification::Verification result;
        result.transmissions = 7;
        QCOMPARE(logLines(result),
                 QStringList{QStringLiteral("verification: 7 transmissions, no finding")});
        result.findings.resize(20);
        QCOMPARE(logLines(result).size(), 20);
        QVERIFY(logLines(result).last().startsWith(QStringLiteral("verification: fault, ")));
        result.findings.resize(23);
        QCOMPARE(logLines(result).size(), 21);
        QCOMPARE(logLines(result).last(), QStringLiteral("verification: 3 more"));
    }

    void nodeWithoutANameIsToldByItsNumber()
    {
        const SharedPlanCheck check = checkOf(soundTransmissions());
        QCOMPARE(check->nodeName(12), QStringLiteral("S2"));
        QCOMPARE(check->nodeName(77), QStringLiteral(u"节点77"));
    }

    // ---- Figures

    void loadsComeFullestFirst()
    {
        const PlanTable table = loadTable(checkOf(clashingTransmissions()));
        QCOMPARE(rowsOf(table),
                 (QStringList{QStringLiteral("A|1|2|10|20.0"), QStringLiteral("S1|2|2|10|20.0"),
                              QStringLiteral("S2|2|1|10|10.0")}));
        QCOMPARE(table.columns.back().cell(2).share, 0.1);
        QCOMPARE(table.place(2).node, 12);
        QCOMPARE(table.place(2).port, 2);
    }

    void latencyStandsInSlotsAndMicrosecondsBesideTheWindows()
    {
        const PlanTable table = latencyTable(checkOf(clashingTransmissions()));
        QCOMPARE(rowsOf(table),
                 (QStringList{QStringLiteral("10|A|B|1|5|5|0|1000|1000|0|[0,9]|[0,9]"),
                              QStringLiteral("25|A|B|1|2|2|0|400|400|0|[0,9]|[0,9]")}));
        QCOMPARE(table.place(1).node, 1);
        QCOMPARE(*table.place(1).flowID, 25);
    }

    void waitingFramesStandAgainstBuffers()
    {
        const PlanTable table = occupancyTable(checkOf(clashingTransmissions()));
        QCOMPARE(rowsOf(table),
                 (QStringList{QStringLiteral("S1|1|4|1|25.0"), QStringLiteral("S2|2|4|5|50.0")}));
        QCOMPARE(table.place(1).node, 12);
    }

    // ---- The model

    void numbersSortByTheirValue()
    {
        PlanTableModel model;
        model.showTable(tableOf({number(10), number(9), number(-1), number(100)}));
        model.sort(0, Qt::AscendingOrder);
        QCOMPARE(columnOf(model, 0), (QStringList{QStringLiteral("-1"), QStringLiteral("9"),
                                                  QStringLiteral("10"), QStringLiteral("100")}));
        model.sort(0, Qt::DescendingOrder);
        QCOMPARE(columnOf(model, 0).first(), QStringLiteral("100"));
        QCOMPARE(model.placeOf(0).node, 3);
        model.sort(-1, Qt::AscendingOrder);
        QCOMPARE(columnOf(model, 0).first(), QStringLiteral("10"));
    }

    void numbersWithinTextsSortByTheirValue()
    {
        PlanTableModel model;
        model.showTable(tableOf({text("SW10"), text("SW2"), text("A"), text("SW2b"), text("")}));
        model.sort(0, Qt::AscendingOrder);
        QCOMPARE(columnOf(model, 0),
                 (QStringList{QString(), QStringLiteral("A"), QStringLiteral("SW2"),
                              QStringLiteral("SW2b"), QStringLiteral("SW10")}));
        QVERIFY(isBeforeNaturally(QStringLiteral("9-1"), QStringLiteral("10-0")));
        QVERIFY(!isBeforeNaturally(QStringLiteral("a007"), QStringLiteral("a7")));
        QVERIFY(!isBeforeNaturally(QStringLiteral("a7"), QStringLiteral("a007")));
    }

    void chosenOrderStaysForTheNextTable()
    {
        PlanTableModel model;
        model.showTable(tableOf({number(1), number(2)}));
        model.sort(0, Qt::DescendingOrder);
        model.showTable(tableOf({number(5), number(7), number(6)}));
        QCOMPARE(columnOf(model, 0),
                 (QStringList{QStringLiteral("7"), QStringLiteral("6"), QStringLiteral("5")}));
    }

    void keptIndexFollowsItsRow()
    {
        PlanTableModel model;
        model.showTable(tableOf({number(3), number(1), number(2)}));
        const QPersistentModelIndex kept = model.index(0, 0);
        model.sort(0, Qt::AscendingOrder);
        QCOMPARE(kept.row(), 2);
        QCOMPARE(kept.data().toString(), QStringLiteral("3"));
    }

    void copyIsALineARowInTheOrderShown()
    {
        PlanTableModel model;
        PlanTable table = tableOf({text("b\tc"), text("a\nb")});
        table.columns.push_back({QStringLiteral("second"), [](int row) { return number(row); }});
        model.showTable(table);
        model.sort(0, Qt::AscendingOrder);
        QCOMPARE(tabSeparated(model), QStringLiteral("header\tsecond\na b\t1\nb c\t0\n"));
    }
};

ROTUNDA_GUI_TEST_MAIN(PlanTablesTest)
#include "PlanTablesTest.moc"
