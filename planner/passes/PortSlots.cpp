#include "planner/passes/PortSlots.h"

namespace planner
{

namespace
{

void fix(Hop& hop, qint32 slot)
{
    hop.slot = static_cast<quint32>(slot);
    hop.window = {slot, slot};
}

// A talker has one slot on all paths; a switch takes its slot along to the later paths.
void fixOtherPaths(const PortView& port, const PortEntry& entry, qint32 slot)
{
    WindowBoard& board = port.board;
    const PathIndex end = board.firstPath(entry.instance.plus(1));
    for (PathIndex index = entry.path.plus(1); index != end; ++index) {
        const BoardPath& path = board.path(index);
        const HopIndex sender = board.findSwitch(path, port.port);
        if (!entry.isSwitch && board.hop(path.talker).port == port.port)
            fix(board.hop(path.talker), slot);
        if (entry.isSwitch && sender != path.listener())
            fix(board.hop(sender), slot);
    }
}

} // namespace

void assignSlots(const PortView& port, const std::vector<qint32>& slotsGiven)
{
    auto entry = port.entries.begin();
    for (const qint32 slot : slotsGiven) {
        fix(port.board.hop(entry->hop), slot);
        if (!entry->meetsOnce)
            fixOtherPaths(port, *entry, slot);
        ++entry;
    }
}

} // namespace planner
