#include "views/FlowListWindow.h"

#include "views/FlowCaption.h"
#include "views/FlowColorTable.h"
#include "views/ItemDelegate.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QListView>
#include <QStandardItemModel>

FlowListWindow::FlowListWindow(QWidget* parent)
    : QMainWindow(parent),
      listView(new QListView),
      model(new QStandardItemModel(this))
{
    qRegisterMetaType<ItemData>();
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("centralWidget"));
    central->setStyleSheet(QStringLiteral("QWidget#centralWidget{\nbackground-color: white;\n}"));
    auto* layout = new QGridLayout(central);
    layout->setSpacing(6);
    auto* groupBox = new QGroupBox(QStringLiteral(u"端口消息列表"));
    groupBox->setObjectName(QStringLiteral("groupBox"));
    QPalette onWhite = groupBox->palette(); // also where the desktop is dark
    onWhite.setColor(QPalette::WindowText, Qt::black);
    groupBox->setPalette(onWhite);
    auto* groupLayout = new QGridLayout(groupBox);
    groupLayout->setSpacing(6);
    listView->setObjectName(QStringLiteral("listView"));
    listView->setStyleSheet(QStringLiteral(
        "QListView {\n   background-color: transparent;\n\tborder:1px solid #EFEFEF;\n}"));
    listView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    listView->viewport()->setAttribute(Qt::WA_Hover);
    listView->setModel(model);
    listView->setItemDelegate(new ItemDelegate(this));
    groupLayout->addWidget(listView, 0, 0);
    layout->addWidget(groupBox, 0, 0);
    setCentralWidget(central);
}

void FlowListWindow::clearFlowList()
{
    model->clear();
}

static QString slotTextOf(int slot, int mode)
{
    const QString text = mode == FlowListWindow::Receive ? QStringLiteral(u"接收时隙编号: %1")
                                                         : QStringLiteral(u"发送时隙编号: %1");
    return text.arg(slot);
}

void FlowListWindow::fillFlowList(const NodeInfo_Xml& table, int nodeID, int port, int mode)
{
    clearFlowList();
    const auto flows = table.value(nodeID).value(port);
    QList<QStandardItem*> cards;
    for (auto flow = flows.cbegin(); flow != flows.cend(); ++flow) {
        int number = 0;
        for (auto slot = flow->cbegin(); slot != flow->cend(); ++slot, ++number) {
            const ItemData texts{flowCaption(flow.key(), number), slotTextOf(slot.key(), mode)};
            auto* card = new QStandardItem;
            card->setData(flowColor(flow.key()), Qt::UserRole);
            card->setData(QVariant::fromValue(texts), Qt::UserRole + 1);
            cards.append(card);
        }
    }
    model->invisibleRootItem()->appendRows(cards);
}
