#include "app/NarrowedFlows.h"

#include "project/RecordFields.h"

#include <algorithm>

using synthesis::NarrowedFlow;
using synthesis::NarrowedListener;
using synthesis::NarrowedWindow;

static bool isChanged(const NarrowedWindow& window)
{
    return window.before.low != window.after.low || window.before.high != window.after.high;
}

static void narrow(QString& low, QString& high, const NarrowedWindow& window)
{
    if (!isChanged(window))
        return;
    low = QString::number(window.after.low);
    high = QString::number(window.after.high);
}

bool changesAnything(const NarrowedFlow& windows)
{
    return isChanged(windows.send) ||
           std::any_of(windows.listeners.begin(), windows.listeners.end(),
                       [](const NarrowedListener& each) { return isChanged(each.window); });
}

FlowInfo narrowed(FlowInfo flow, const NarrowedFlow& windows)
{
    narrow(flow.sendWindowLow, flow.sendWindowHigh, windows.send);
    for (const NarrowedListener& listener : windows.listeners) {
        DstNodeInfo& node = flow.dstNodes[static_cast<int>(listener.place)];
        narrow(node.rcvWindowLow, node.rcvWindowHigh, listener.window);
    }
    return flow;
}

QList<int> NarrowedFlows::adopt(QList<FlowInfo>& flows, const std::vector<NarrowedFlow>& windows)
{
    QList<int> rows;
    for (const NarrowedFlow& each : windows) {
        if (!changesAnything(each))
            continue;
        const int row = static_cast<int>(each.place);
        const FlowInfo after = narrowed(flows.at(row), each);
        keep(flows.at(row), after);
        flows[row] = after;
        rows.append(row);
    }
    return rows;
}

// A flow that is narrowed a second time keeps the windows that the user gave.
void NarrowedFlows::keep(const FlowInfo& before, const FlowInfo& after)
{
    for (Change& change : m_changes) {
        if (areEqual(change.after, before)) {
            change.after = after;
            return;
        }
    }
    m_changes.push_back({before, after});
}

QList<int> NarrowedFlows::restore(QList<FlowInfo>& flows)
{
    QList<int> rows;
    for (int row = 0; row < flows.size(); ++row) {
        const auto change =
            std::find_if(m_changes.begin(), m_changes.end(), [&flows, row](const Change& each) {
                return areEqual(each.after, flows.at(row));
            });
        if (change == m_changes.end())
            continue;
        flows[row] = change->before;
        m_changes.erase(change);
        rows.append(row);
    }
    forget();
    return rows;
}

bool NarrowedFlows::canRestore(const QList<FlowInfo>& flows) const
{
    return std::any_of(m_changes.begin(), m_changes.end(), [&flows](const Change& change) {
        return std::any_of(flows.begin(), flows.end(), [&change](const FlowInfo& flow) {
            return areEqual(change.after, flow);
        });
    });
}
