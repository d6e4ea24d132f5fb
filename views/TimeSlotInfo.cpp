#include "views/TimeSlotInfo.h"

#include "views/FlowCaption.h"
#include "views/FlowColorTable.h"
#include "widgets/CellWidget.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QProgressBar>
#include <QStyle>
#include <QToolTip>

#include <iterator>
#include <new>
#include <utility>

namespace
{

/// A header's label that is put together when it is read: few of the many columns are ever seen.
///
/// Labels come and go by tens of thousands, so they share blocks of memory, which stay for the next
/// ones.
class ColumnLabel : public QTableWidgetItem
{
public:
    explicit ColumnLabel(int column) : m_column(column) {}

    static void* operator new(std::size_t size);
    static void operator delete(void* label);

    QVariant data(int role) const override
    {
        const QVariant given = QTableWidgetItem::data(role);
        if (given.isValid() || role != Qt::DisplayRole)
            return given;
        return m_column == 0 ? QStringLiteral(u"端口号")
                             : QStringLiteral(u"时隙%1").arg(m_column - 1);
    }

private:
    int m_column;
};

/// Memory for labels that are not there now, each with the next one behind it.
struct FreeLabel {
    FreeLabel* next;
};
FreeLabel* freeLabels = nullptr;

void* ColumnLabel::operator new(std::size_t size)
{
    constexpr std::size_t labelsInABlock = 1024;
    if (!freeLabels) {
        char* block = static_cast<char*>(::operator new(size* labelsInABlock));
        for (std::size_t i = labelsInABlock; i > 0; --i)
            freeLabels = new (block + (i - 1) * size) FreeLabel{freeLabels};
    }
    return std::exchange(freeLabels, freeLabels->next);
}

void ColumnLabel::operator delete(void* label)
{
    freeLabels = new (label) FreeLabel{freeLabels};
}

/// As wide as the label of a slot of four digits needs; half of the usual margins, as columns are
/// many.
int columnWidthFor(const QHeaderView* header)
{
    const int margin = header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
    return header->fontMetrics().horizontalAdvance(QStringLiteral(u"时隙9999")) + margin;
}

} // namespace

TimeSlotInfo::TimeSlotInfo(QWidget* parent)
    : CellTable(parent),
      backgroundColor(Qt::white),
      textColor(10, 10, 10)
{
}

void TimeSlotInfo::setupSlotTable(const PortSchedule& ports, int slotCount)
{
    const int slotColumns = qBound(0, slotCount, mostSlots);
    const QString sheet = QStringLiteral("QTableWidget::item{padding:0px;}");
    if (styleSheet() != sheet) // the same one again would polish all bars anew
        setStyleSheet(sheet);
    verticalHeader()->setVisible(false);
    horizontalHeader()->setDefaultSectionSize(columnWidthFor(horizontalHeader()));
    setColumnCount(slotColumns + 1);
    labelColumns();
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    int row = rowCount();
    rowFlows.resize(row);
    setRowCount(row + ports.size());
    for (auto port = ports.cbegin(); port != ports.cend(); ++port, ++row) {
        rowFlows.append(*port);
        auto* item = new QTableWidgetItem(QStringLiteral(u"端口%1").arg(port.key()));
        item->setTextAlignment(Qt::AlignCenter);
        setItem(row, 0, item);
    }
}

// The header is told once of all new labels.
void TimeSlotInfo::labelColumns()
{
    const QSignalBlocker blocker(model());
    const int count = columnCount();
    int column = 0;
    while (horizontalHeaderItem(column))
        ++column;
    for (; column < count; ++column)
        setHorizontalHeaderItem(column, new ColumnLabel(column));
}

void TimeSlotInfo::setSlotCell(int row, int slot, int flowID)
{
    if (slot < 0 || slot >= columnCount() - 1 || row < 0 || row >= rowCount())
        return;
    auto* bar = new CellWidget<QProgressBar>(viewport());
    bar->setValue(25); // of the usual hundred
    bar->setTextVisible(false);
    setCell(row, slot + 1, bar); // before the style sheet, which every new parent would read anew
    const QString shape =
        QStringLiteral("QProgressBar{background:%1;border-width:0px;border-radius:0px;"
                       "text-align:center;}QProgressBar::chunk{border-radius:0px;}")
            .arg(backgroundColor.name());
    const QString colors =
        QStringLiteral("QProgressBar{color:%1;}QProgressBar::chunk{background:%2;}")
            .arg(textColor.name(), flowColor(flowID).name());
    bar->setStyleSheet(shape + colors);
}

void TimeSlotInfo::showPorts(const PortSchedule& ports, int slotCount)
{
    setUpdatesEnabled(false);
    removeAllRows();
    setupSlotTable(ports, slotCount);
    int row = 0;
    for (const auto& flows : ports) {
        for (auto flow = flows.cbegin(); flow != flows.cend(); ++flow) {
            for (auto slot = flow->cbegin(); slot != flow->cend(); ++slot)
                setSlotCell(row, slot.key(), flow.key());
        }
        ++row;
    }
    setUpdatesEnabled(true);
    updateEditorGeometries();
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
        return CellTable::viewportEvent(event);
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
    CellTable::keyPressEvent(event);
    showToolTip(currentIndex());
}
