#include "views/TimeSlotInfo.h"

#include "views/FlowCaption.h"
#include "views/FlowColorTable.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QProgressBar>
#include <QToolTip>

#include <iterator>

TimeSlotInfo::TimeSlotInfo(QWidget* parent)
    : QTableWidget(parent),
      backgroundColor(Qt::white),
      textColor(10, 10, 10)
{
    clear();
}

void TimeSlotInfo::setupSlotTable(const PortSchedule& ports, int slotCount)
{
    const int slotColumns = qBound(0, slotCount, mostSlots);
    setColumnCount(slotColumns + 1);
    setStyleSheet(QStringLiteral("QTableWidget::item{padding:0px;}"));
    QStringList labels{QStringLiteral(u"端口号")};
    labels.reserve(slotColumns + 1);
    for (int slot = 0; slot < slotColumns; ++slot)
        labels.append(QStringLiteral(u"时隙%1").arg(slot));
    setHorizontalHeaderLabels(labels);
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    verticalHeader()->setVisible(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    rowFlows.resize(rowCount());
    for (auto port = ports.cbegin(); port != ports.cend(); ++port) {
        const int row = rowCount();
        rowFlows.append(*port);
        insertRow(row);
        auto* item = new QTableWidgetItem(QStringLiteral(u"端口%1").arg(port.key()));
        item->setTextAlignment(Qt::AlignCenter);
        setItem(row, 0, item);
    }
}

void TimeSlotInfo::setSlotCell(int row, int slot, int flowID)
{
    if (slot < 0 || slot >= columnCount() - 1 || row < 0 || row >= rowCount())
        return;
    auto* bar = new QProgressBar;
    bar->setRange(0, 100);
    bar->setValue(25);
    bar->setTextVisible(false);
    const QString shape =
        QStringLiteral("QProgressBar{background:%1;border-width:0px;border-radius:0px;"
                       "text-align:center;}QProgressBar::chunk{border-radius:0px;}")
            .arg(backgroundColor.name());
    const QString colors =
        QStringLiteral("QProgressBar{color:%1;}QProgressBar::chunk{background:%2;}")
            .arg(textColor.name(), flowColor(flowID).name());
    bar->setStyleSheet(shape + colors);
    setCellWidget(row, slot + 1, bar);
}

// Cells are set in a hidden viewport, so that none is shown, polished, laid out or painted on its
// own; the widget itself stays, and with it the layout around it.
void TimeSlotInfo::showPorts(const PortSchedule& ports, int slotCount)
{
    setUpdatesEnabled(false);
    viewport()->hide();
    clear();
    setRowCount(0);
    setupSlotTable(ports, slotCount);
    int row = 0;
    for (const auto& flows : ports) {
        for (auto flow = flows.cbegin(); flow != flows.cend(); ++flow) {
            for (auto slot = flow->cbegin(); slot != flow->cend(); ++slot)
                setSlotCell(row, slot.key(), flow.key());
        }
        ++row;
    }
    viewport()->show();
    setUpdatesEnabled(true);
}

// ---- Tool tips

QString TimeSlotInfo::toolTipAt(const QModelIndex& cell) const
{
    if (!cell.isValid() || cell.column() == 0 || cell.row() >= rowFlows.size())
        return QString();
    const int slot = cell.column() - 1;
    const auto& flows = rowFlows.at(cell.row());
    QStringList lines;
    for (auto flow = flows.cbegin(); flow != flows.cend(); ++flow) {
        const auto entry = flow->constFind(slot);
        if (entry != flow->cend())
            lines.append(flowCaption(flow.key(), int(std::distance(flow->cbegin(), entry))));
    }
    if (lines.size() > 1)
        lines.append(QStringLiteral(u"多个流共用此时隙"));
    return lines.join(QLatin1Char('\n'));
}

// The bar in a cell leaves its event to the viewport around it, with the position in there.
bool TimeSlotInfo::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QTableWidget::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex cell = indexAt(help->pos());
    QToolTip::showText(help->globalPos(), toolTipAt(cell), viewport(), visualRect(cell));
    return true;
}

void TimeSlotInfo::showToolTip(const QModelIndex& cell)
{
    const QRect rect = visualRect(cell);
    QToolTip::showText(viewport()->mapToGlobal(rect.center()), toolTipAt(cell), viewport(), rect);
}

void TimeSlotInfo::keyPressEvent(QKeyEvent* event)
{
    QTableWidget::keyPressEvent(event);
    showToolTip(currentIndex());
}
