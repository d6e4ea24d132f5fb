#include "traffic/AddDstNodeForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/ShowVLineInfoForm.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include "tests/driver/Studio.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/topology/EditorWalker.h"

#include <QDockWidget>
#include <QTableWidget>

// A random walk through drawing and traffic dialogs at once: nodes go while forms hold them.

/// Mixes the actions of the drawing with those of virtual links and flows.
class StudioWalker
{
public:
    explicit StudioWalker(quint32 seed) : m_drawing(studio.editor, seed)
    {
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        studio.clickToolBar(QStringLiteral(u"流量配置"));
    }

    const char* step()
    {
        static const Action actions[] = {
            {"open virtual link form", &StudioWalker::openVLineForm},
            {"open path form", &StudioWalker::openPathForm},
            {"open node choice", &StudioWalker::openChoice},
            {"choose node", &StudioWalker::chooseNode},
            {"choose node", &StudioWalker::chooseNode},
            {"confirm path", &StudioWalker::confirmPath},
            {"confirm path", &StudioWalker::confirmPath},
            {"delete node of path", &StudioWalker::deletePathNode},
            {"confirm virtual link", &StudioWalker::confirmVLine},
            {"close a form", &StudioWalker::closeAForm},
            {"open flow form", &StudioWalker::openFlowForm},
            {"change flow's link", &StudioWalker::changeFlowLink},
            {"edit listener", &StudioWalker::editListener},
            {"edit listener", &StudioWalker::editListener},
            {"confirm flow", &StudioWalker::confirmFlow},
            {"delete rows", &StudioWalker::deleteRows},
            {"show path", &StudioWalker::showPath},
            {"toggle dock", &StudioWalker::toggleADock},
            {"write input document", &StudioWalker::writeInput},
        };
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (m_drawing.pick(5) < 2)
            return m_drawing.step();
        const Action& action = actions[m_drawing.pick(int(std::size(actions)))];
        (this->*action.run)();
        return action.name;
    }

    /// What is wrong; empty when drawing, tables and lists are whole.
    QString fault()
    {
        const QString drawing = findFault(studio.editor);
        if (!drawing.isEmpty())
            return drawing;
        const QList<DiagramItem*> nodes = studio.editor.nodes();
        for (const VLineInfo& vLine : studio.probe.vLineInfoList()) {
            for (const VLineItems& path : vLine.vLinePaths) {
                for (DiagramItem* node : path) {
                    if (node && !nodes.contains(node))
                        return QStringLiteral("a path holds a node that is gone");
                }
            }
        }
        if (studio.probe.vLineTable()->rowCount() != studio.probe.vLineInfoList().size())
            return QStringLiteral("the table of virtual links differs from its list");
        if (studio.probe.flowTable()->rowCount() != studio.probe.flowInfoList().size())
            return QStringLiteral("the table of flows differs from its list");
        return QString();
    }

    Studio studio;

private:
    struct Action {
        const char* name;
        void (StudioWalker::*run)();
    };

    VLineEditorForm* vLineForm() { return studio.probe.vLineEditorForm(); }

    template <typename Form>
    static Form* openChild(QWidget* parent)
    {
        if (parent) {
            for (Form* form : parent->findChildren<Form*>()) {
                if (form->isVisible())
                    return form;
            }
        }
        return nullptr;
    }

    AddVLineForm* pathForm() { return openChild<AddVLineForm>(vLineForm()); }
    VLineNodeSelectForm* choice() { return openChild<VLineNodeSelectForm>(pathForm()); }

    void openVLineForm() { studio.openVLineEditor(); }

    void openPathForm()
    {
        if (vLineForm())
            studio.openPath(vLineForm());
    }

    void openChoice()
    {
        if (pathForm())
            studio.openNodeChoice(pathForm());
    }

    void chooseNode()
    {
        openChoice();
        if (VLineNodeSelectForm* form = choice()) {
            QComboBox* list = comboBox(form, "comboBox_vLineNode");
            if (list->count() > 0)
                list->setCurrentIndex(m_drawing.pick(list->count()));
            clickButton(form, "confirmButton");
        }
    }

    void confirmPath()
    {
        if (pathForm())
            clickButton(pathForm(), "confirmButton");
    }

    void deletePathNode()
    {
        if (pathForm())
            clickButton(pathForm(), "delNodeButton");
    }

    void confirmVLine()
    {
        if (!vLineForm())
            return;
        const bool hasPath = comboBox(vLineForm(), "comboBox_VLineInfo")->count() > 0;
        if (!hasPath && m_drawing.pick(6))
            return; // is refused and loses the form, so not too often
        if (m_drawing.pick(4))
            typeText(vLineForm(), "lineEdit_VLineId", QString::number(m_drawing.pick(5)));
        clickButton(vLineForm(), "confirmButton");
    }

    void closeAForm()
    {
        if (m_drawing.pick(3))
            return;
        QDialog* const forms[] = {vLineForm(), pathForm(), choice(), studio.probe.flowEditorForm(),
                                  studio.probe.showVLineInfoForm()};
        if (QDialog* form = forms[m_drawing.pick(5)])
            QTest::keyClick(form, Qt::Key_Escape);
    }

    void openFlowForm() { studio.openFlowEditor(); }

    void changeFlowLink()
    {
        if (FlowEditorForm* form = studio.probe.flowEditorForm()) {
            QComboBox* list = comboBox(form, "comboBox_vLineId");
            if (list->count() > 0)
                list->setCurrentIndex(m_drawing.pick(list->count()));
        }
    }

    void editListener()
    {
        FlowEditorForm* form = studio.probe.flowEditorForm();
        if (!form)
            return;
        clickButton(form, "addDstButton");
        if (auto* listener = openChild<AddDstNodeForm>(form)) {
            typeText(listener, "lineEdit_rcvWindowLow", "0");
            typeText(listener, "lineEdit_rcvWindowHigh", "4000");
            clickButton(listener, m_drawing.pick(4) ? "confirmButton" : "cancelButton");
        }
    }

    void confirmFlow()
    {
        FlowEditorForm* form = studio.probe.flowEditorForm();
        if (!form)
            return;
        for (const char* field : {"lineEdit_flowId", "lineEdit_flowPeriod", "lineEdit_flowSize",
                                  "lineEdit_sendWindowLow", "lineEdit_sendWindowHigh"}) {
            if (m_drawing.pick(20))
                lineEdit(form, field)->setText(QStringLiteral("1000"));
        }
        clickButton(form, "confirmButton");
    }

    void deleteRows()
    {
        const bool flows = m_drawing.pick(2);
        QTableWidget* table = flows ? studio.probe.flowTable() : studio.probe.vLineTable();
        QDockWidget* dock = flows ? studio.probe.flowDock() : studio.probe.vLineDock();
        table->clearSelection();
        for (int row = 0; row < table->rowCount(); ++row) {
            if (m_drawing.pick(12) == 0) {
                table->setRangeSelected(
                    QTableWidgetSelectionRange(row, 0, row, table->columnCount() - 1), true);
            }
        }
        QTest::mouseClick(Studio::dockButton(dock, QStringLiteral(u"删除")), Qt::LeftButton);
    }

    void showPath()
    {
        QTableWidget* table = studio.probe.vLineTable();
        if (table->rowCount() == 0)
            return;
        table->setCurrentCell(m_drawing.pick(table->rowCount()), 0);
        const int row = m_drawing.pick(table->rowCount());
        emit qobject_cast<QComboBox*>(table->cellWidget(row, 2))->activated(m_drawing.pick(3));
    }

    void toggleADock()
    {
        studio.clickToolBar(m_drawing.pick(2) ? QStringLiteral(u"虚链路配置")
                                              : QStringLiteral(u"流量配置"));
    }

    void writeInput() { studio.probe.generateInput(); }

    EditorWalker m_drawing;
};

class StudioWalkTest : public QObject
{
    Q_OBJECT

private slots:
    void studioIsWholeAfterEachOfManyActions_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed : {11U, 12U, 13U})
            QTest::addRow("seed %u", seed) << seed;
    }

    void studioIsWholeAfterEachOfManyActions()
    {
        QFETCH(quint32, seed);
        const TemporaryFolder folder;
        const LogCapture log;
        DialogAnswers refusals; // closes the boxes of refused forms
        StudioWalker walker(seed);
        int mostLinks = 0;
        int mostFlows = 0;
        for (int step = 0; step < 7000; ++step) {
            const char* action = walker.step();
            const QString fault = walker.fault();
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("step %1, %2: %3")
                                                     .arg(step)
                                                     .arg(QLatin1String(action))
                                                     .arg(fault)));
            mostLinks = std::max(mostLinks, walker.studio.probe.vLineInfoList().size());
            mostFlows = std::max(mostFlows, walker.studio.probe.flowInfoList().size());
        }
        QVERIFY2(
            mostLinks > 3 && mostFlows > 3,
            qPrintable(QStringLiteral("only %1 links and %2 flows").arg(mostLinks).arg(mostFlows)));
    }
};

ROTUNDA_GUI_TEST_MAIN(StudioWalkTest)
#include "StudioWalkTest.moc"
