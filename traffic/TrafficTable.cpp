#include "traffic/TrafficTable.h"

#include <QDockWidget>
#include <QGridLayout>
#include <QPushButton>
#include <QTableWidget>

QDockWidget* createTrafficDock(const QString& title, const QString& objectName, QTableWidget* table,
                               QWidget* parent, TrafficDockButtons& buttons)
{
    auto* dock = new QDockWidget(title, parent);
    dock->setVisible(true);
    dock->setObjectName(objectName);
    auto* content = new QWidget(dock);
    auto* layout = new QGridLayout(content);
    auto* row = new QHBoxLayout;
    buttons.add = new QPushButton(QStringLiteral(u"添加"));
    buttons.remove = new QPushButton(QStringLiteral(u"删除"));
    row->addWidget(buttons.add);
    row->addWidget(buttons.remove);
    row->addStretch();
    layout->addLayout(row, 0, 0);
    layout->addWidget(table, 1, 0);
    dock->setWidget(content);
    return dock;
}
