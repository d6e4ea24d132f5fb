#pragma once

#include "app/SynthesisForm.h"

#include "tests/app/PlannedStudio.h"
#include "tests/support/Documents.h"
#include "tests/support/Text.h"
#include "tests/support/ViewMenus.h"

#include <QLabel>
#include <QTableWidget>

/// A studio in which windows are searched, with shorthand for the form.
struct SynthesisStudio : PlannedStudio {
    static QString solve() { return QStringLiteral(u"在窗口内求解…"); }
    static QString giveBack() { return QStringLiteral(u"恢复原窗口"); }

    void openExample(const QString& name)
    {
        openProject(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/%1.rotpro").arg(name));
        probe.flowDock()->raise();
    }

    QTableWidget* flows() const { return probe.flowTable(); }

    /// The context menu at the first flow.
    QMenu* openFlowMenu()
    {
        probe.flowDock()->raise();
        openMenuByMouse(*flows(), flows()->model()->index(0, 2));
        return openMenu();
    }

    void choose(const QString& entry) { chooseByMouse(openFlowMenu(), entry); }

    /// Whether the entry can be chosen; closes the menu again.
    bool offers(const QString& entry)
    {
        QMenu* menu = openFlowMenu();
        if (!menu)
            return false;
        bool isOffered = false;
        for (const QAction* action : menu->actions())
            isOffered = isOffered || (action->text() == entry && action->isEnabled());
        menu->close();
        return isOffered;
    }

    SynthesisForm* form() const { return probe.synthesisForm(); }

    template <typename Widget>
    Widget* formPart(const char* name) const
    {
        return form()->findChild<Widget*>(QString::fromUtf8(name));
    }

    QPushButton* button(const char* name) const { return formPart<QPushButton>(name); }
    QString summary() const { return formPart<QLabel>("summaryLabel")->text(); }

    bool isSearching() const { return !button("cancelButton")->isHidden(); }

    /// The texts of a table of the form, a line a row.
    QStringList rows(const char* name) const
    {
        const auto* table = formPart<QTableWidget>(name);
        QStringList lines;
        for (int row = 0; row < table->rowCount() && !table->isHidden(); ++row) {
            QStringList texts;
            for (int column = 0; column < table->columnCount(); ++column)
                texts.append(table->item(row, column)->text());
            lines.append(texts.join(QLatin1Char(' ')));
        }
        return lines;
    }

    /// The rows of the flow table that are selected from side to side.
    QList<int> selectedFlows() const
    {
        QList<int> found;
        for (const QModelIndex& index : flows()->selectionModel()->selectedRows())
            found.append(index.row());
        std::sort(found.begin(), found.end());
        return found;
    }

    QStringList shownWindows(int row) const
    {
        QStringList texts{flows()->item(row, 6)->text()};
        const auto* listeners = qobject_cast<QComboBox*>(flows()->cellWidget(row, 7));
        return texts + entries(listeners);
    }

    QByteArray document() const
    {
        probe.generateInput();
        return readFile(QStringLiteral("ResourceXML/vek_input.xml"));
    }

    /// Plans what is drawn; the boxes that were shown.
    QStringList planDrawn()
    {
        DialogAnswers answers;
        answers.expectMessageBox();
        clickToolBar(QStringLiteral(u"调度规划"));
        clickButton(probe.flowScheduleForm(), "RotundaButton");
        return answers.seen();
    }

    /// Hosts A, B, C on S1 and S2, with virtual links 1 from A to B and to C, 2 from C to B.
    void drawNetwork()
    {
        drawSmallNetwork();
        defineVLine("1", {words("A S1 S2 B"), words("A S1 S2 C")});
        defineVLine("2", {words("C S2 B")});
    }

    /// A flow of 10,000 us; the listeners' windows are those of B and, on virtual link 1, of C.
    void addFlow(const char* type, const char* id, const char* vLine, const char* talker,
                 const char* sendHigh, const std::vector<const char*>& rcvHighs)
    {
        FlowInfo flow{
            QString::fromUtf8(type), QString::fromUtf8(id),       QStringLiteral("10000"),
            QStringLiteral("64"),    QString::fromUtf8(vLine),    QString::fromUtf8(talker),
            QStringLiteral("0"),     QString::fromUtf8(sendHigh), {}};
        for (const char* high : rcvHighs)
            flow.dstNodes.append(
                {flow.dstNodes.isEmpty() ? QStringLiteral("B") : QStringLiteral("C"),
                 QStringLiteral("0"), QString::fromUtf8(high)});
        probe.addFlow(flow);
    }
};
