#include "tests/support/Documents.h"
#include "tests/support/ProgramRun.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QFile>
#include <QtTest>

// The program for many documents, run as a user runs it.
class NarrowWindowsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void anExampleThatTheRulesRefuseIsPlannedAfterwards()
    {
        const QByteArray document = example("busy-plant");
        const ProgramRun result = run(document);
        QCOMPARE(result.code, 0);
        QCOMPARE(result.errors,
                 (QStringList{QStringLiteral("left out: flow element 60 is not of type TT"),
                              QStringLiteral("found: 0 slots of waiting")}));
        const ParsedNetwork before = parsed(document);
        const ParsedNetwork after = parsed(readFile(QStringLiteral("out.xml")));
        synthesis::Found plan;
        for (const planner::TTFlow& flow : after.network.context.flows) {
            plan.flows.push_back({flow.paths.front().schedtxwin, {}, 0});
            QCOMPARE(flow.paths.front().schedtxwin.start, flow.paths.front().schedtxwin.end);
            for (const planner::VirtualLinkPath& path : flow.paths)
                plan.flows.back().receive.push_back(path.schedrxwin);
        }
        QCOMPARE(faultOf(before, plan), QString());
    }

    void allElseStaysByteForByte()
    {
        QCOMPARE(run(example("ring")).code, 0);
        QCOMPARE(withoutWindows(readFile(QStringLiteral("out.xml"))),
                 withoutWindows(example("ring")));
    }

    void aProofIsToldInOneLine_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("line");
        QTest::newRow("interval")
            << QStringLiteral("fails-resolution")
            << QStringLiteral("impossible: 2 transmissions need port 2 of SW1 in slots 1 to 1 "
                              "(200 to 400 us): flows 1, 2");
        QTest::newRow("slot") << QStringLiteral("fails-window-check")
                              << QStringLiteral(
                                     "impossible: flow 2 has no slot to receive for LOGGER: "
                                     "not before 22, not after 19");
    }
    void aProofIsToldInOneLine()
    {
        QFETCH(QString, name);
        QFETCH(QString, line);
        const ProgramRun result = run(example(name.toUtf8().constData()));
        QCOMPARE(result.code, 1);
        QCOMPARE(result.errors, QStringList{line});
        QVERIFY(!QFile::exists(QStringLiteral("out.xml")));
    }

    // Its library of clauses would print what it finds on the way.
    void nothingIsPrintedOnTheOrdinaryOutput()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 500, u("[0,200]"), u("[0,400]"));
        network.addFlow(words("A S Y"), 500, u("[400,600]"), u("[400,800]"));
        for (const QByteArray& document : {documentOf(network.draft), example("busy-plant")})
            QCOMPARE(run(document).output, QByteArray());
    }

    void spentStepsAreNoProof()
    {
        PlantedStyle style;
        style.windows = PlantedStyle::Tight;
        style.flows = 80;
        style.reach = 1;
        const ProgramRun result = run(documentOf(plantedNetwork(style, 1).draft),
                                      {QStringLiteral("--steps"), QStringLiteral("1")});
        QCOMPARE(result.code, 2);
        QCOMPARE(result.errors.size(), 1);
        QVERIFY(result.errors.front().startsWith(
            QStringLiteral("not found: the steps are spent; not placed: flows ")));
        QVERIFY(!QFile::exists(QStringLiteral("out.xml")));
    }

    void whatIsRefusedIsNamed_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("line");
        QTest::newRow("no document") << QByteArray("<a>") << QStringLiteral("refused: ");
        QTest::newRow("damaged") << QByteArray("<a/>")
                                 << QStringLiteral("refused: element \"topology\" is missing");
        QByteArray document = example("fails-resolution");
        QTest::newRow("shared number")
            << document.replace("<flowID>2</flowID>", "<flowID>1</flowID>")
            << QStringLiteral("refused: flow element 1 has the number of another flow");
    }
    void whatIsRefusedIsNamed()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, line);
        const ProgramRun result = run(document);
        QCOMPARE(result.code, 3);
        QVERIFY2(!result.errors.isEmpty() && result.errors.first().startsWith(line),
                 qPrintable(result.errors.join(QLatin1Char('\n'))));
        QVERIFY(!QFile::exists(QStringLiteral("out.xml")));
    }

    void filesAndOptionsThatAreWrongAreRefused()
    {
        QCOMPARE(start({QStringLiteral("none.xml"), QStringLiteral("out.xml")}).code, 3);
        QCOMPARE(start({QStringLiteral("none.xml")}).code, 3);
        writeFile(QStringLiteral("in.xml"), example("ring"));
        QCOMPARE(start({QStringLiteral("in.xml"), QStringLiteral("none/out.xml")}).code, 3);
        QCOMPARE(start({QStringLiteral("in.xml"), QStringLiteral("out.xml"),
                        QStringLiteral("--steps"), QStringLiteral("many")})
                     .code,
                 3);
    }

private:
    static QByteArray example(const char* name)
    {
        return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/vek_input.xml")
                            .arg(QString::fromUtf8(name)));
    }

    static ProgramRun start(const QStringList& arguments)
    {
        return runProgram(QStringLiteral(ROTUNDA_NARROW_WINDOWS), arguments);
    }

    static ProgramRun run(const QByteArray& document, const QStringList& options = {})
    {
        writeFile(QStringLiteral("in.xml"), document);
        return start(QStringList{QStringLiteral("in.xml"), QStringLiteral("out.xml")} + options);
    }

    static QByteArrayList withoutWindows(const QByteArray& document)
    {
        QByteArrayList lines;
        for (const QByteArray& line : document.split('\n')) {
            if (!line.contains("xwin>"))
                lines.append(line);
        }
        return lines;
    }

    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(NarrowWindowsTest)
#include "NarrowWindowsTest.moc"
