#include "Assumptions.h"

#include <algorithm>

static bool isShorter(const GateList& a, const GateList& b)
{
    return a.entries.size() < b.entries.size();
}

int listsBeyond(const std::vector<GateList>& lists, int limit)
{
    return static_cast<int>(
        std::count_if(lists.begin(), lists.end(), [limit](const GateList& list) {
            return list.entries.size() > static_cast<size_t>(limit);
        }));
}

static QString lengthLine(const std::vector<GateList>& lists, const NodeNames& names, int limit)
{
    const auto longest = std::max_element(lists.begin(), lists.end(), &isShorter);
    if (longest == lists.end())
        return QStringLiteral("List length: no port sends");
    const QString measured = QStringLiteral("List length: the longest has %1 entries, at %2")
                                 .arg(QString::number(longest->entries.size()),
                                      names.interfaceOf(longest->node, longest->port));
    const int beyond = listsBeyond(lists, limit);
    const QString judged =
        beyond == 0 ? QStringLiteral("; a port must hold that many, and the limit is %1").arg(limit)
                    : QStringLiteral("; %1 of %2 lists are beyond the limit of %3")
                          .arg(QString::number(beyond), QString::number(lists.size()),
                               QString::number(limit));
    return measured + judged;
}

QStringList assumptionsOf(const std::vector<GateList>& lists, const NodeNames& names,
                          const verification::Schedule& schedule, int trafficClass, int limit)
{
    return {
        QStringLiteral(
            "One class: all scheduled flows are of traffic class %1, which nothing else uses; "
            "the gates of all others are closed while its gate is open, and open otherwise")
            .arg(trafficClass),
        QStringLiteral(
            "Gate window: a slot of %1 us, whole; frame, gap, line and switch must be through "
            "within it, and no guard band keeps a frame that began before it from running into it")
            .arg(schedule.slotLength_us),
        QStringLiteral(
            "Base time: 0, to be replaced by one instant for all nodes, whose clocks agree; "
            "cycle %1 us")
            .arg(schedule.cycle_us),
        lengthLine(lists, names, limit),
        QStringLiteral(
            "Interfaces: named NODE-PORT; end systems are described like ports of a bridge")};
}
