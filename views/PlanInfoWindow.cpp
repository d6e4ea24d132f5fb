#include "views/PlanInfoWindow.h"

#include "views/FlowListWindow.h"
#include "views/PlanPanelNames.h"
#include "views/TimeSlotInfo.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>

static constexpr int nodeListWidth = 100;

PlanInfoWindow::PlanInfoWindow(QWidget* parent) : QMainWindow(parent)
{
    createToolBars();
    createPages();
}

void PlanInfoWindow::createToolBars()
{
    QToolBar* documents = addToolBar(QStringLiteral(u"导入导出xml"));
    importAction = documents->addAction(QIcon(QStringLiteral(":/images/inport.webp")),
                                        QStringLiteral(u"导入"));
    importAction->setStatusTip(QStringLiteral(u"导入xml"));
    exportAction = documents->addAction(QIcon(QStringLiteral(":/images/outport.webp")),
                                        QStringLiteral(u"导出"));
    exportAction->setStatusTip(QStringLiteral(u"导出xml"));

    QToolBar* tables = addToolBar(QStringLiteral(u"调度表切换"));
    tableType = new QComboBox;
    tableType->setObjectName(planPanel::tableType());
    tableType->addItems({QStringLiteral(u"发送控制表"), QStringLiteral(u"接收控制表")});
    tables->addWidget(tableType);

    QToolBar* info = addToolBar(QStringLiteral(u"信息展示"));
    auto* cycle = new QLabel(QStringLiteral(u"循环周期:"));
    cycle->setObjectName(planPanel::cycleLabel());
    info->addWidget(cycle);
    auto* slotLength = new QLabel(QStringLiteral(u"时隙长度:"));
    slotLength->setObjectName(planPanel::slotLengthLabel());
    info->addWidget(slotLength);
}

QWidget* PlanInfoWindow::createPage(const QString& variant, TimeSlotInfo*& table)
{
    auto* page = new QSplitter(Qt::Vertical);
    table = new TimeSlotInfo(nullptr);
    table->setObjectName(planPanel::grid(variant));
    page->addWidget(table);
    auto* flows = new FlowListWindow(nullptr); // becomes a part of the page only by being added
    flows->setObjectName(planPanel::flowList(variant));
    page->addWidget(flows);
    return page;
}

void PlanInfoWindow::createPages()
{
    auto* central = new QWidget(this);
    auto* layout = new QGridLayout(central);
    auto* splitter = new QSplitter(Qt::Horizontal);
    layout->addWidget(splitter, 0, 0);

    nodeList = new QListWidget;
    nodeList->setObjectName(planPanel::nodes());
    nodeList->setIconSize(QSize(50, 50));
    splitter->addWidget(nodeList);

    auto* pages = new QStackedWidget;
    pages->setObjectName(planPanel::pages());
    pages->addWidget(createPage(planPanel::send(), sendTable));
    pages->addWidget(createPage(planPanel::receive(), receiveTable));
    splitter->addWidget(pages);
    setCentralWidget(central);
    splitter->setSizes({nodeListWidth, splitter->width() - nodeListWidth});
}
