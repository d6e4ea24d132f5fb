#pragma once

#include "planner/PortIndex.h"

#include <limits>
#include <vector>

namespace planner
{

/// A place on the way of an instance where it sends, or at the end of the way receives.
struct Stop {
    /// Port of a listener, which has none to send on.
    static constexpr quint32 noPort = std::numeric_limits<quint32>::max();

    SlotWindow window;
    quint32 slot = 0;      ///< that was given by the last resolution of the port
    quint32 port = noPort; ///< place of the sending port in the PortIndex
};

inline bool operator==(const Stop& a, const Stop& b)
{
    return a.window == b.window && a.slot == b.slot && a.port == b.port;
}

/// One path of an instance as a range of stops: the talker, the switches, the listener.
struct Way {
    quint32 talker = 0; ///< number of the stop
    quint32 hops = 0;   ///< count of switches

    quint32 firstHop() const { return talker + 1; }
    quint32 listener() const { return talker + 1 + hops; }
};

/// The windows of all instances, side by side, while conflicts are being resolved.
///
/// A pass reads and narrows the windows of many instances all over the master list; here those of
/// one instance share a cache line or two. Instances, ways and stops are numbered in the order of
/// the list.
class WindowBoard
{
public:
    /// Takes the windows from the list, whose instances the ports group.
    void rebuild(const std::list<TTStreamInstance>& instances, const PortIndex& ports);

    /// Writes windows and slots back to the list from which they were taken.
    void giveBack(std::list<TTStreamInstance>& instances) const;

    quint32 instanceCount() const { return static_cast<quint32>(m_firstWays.size()) - 1; }

    Stop& stop(quint32 number) { return m_stops[number]; }
    const Stop& stop(quint32 number) const { return m_stops[number]; }
    const std::vector<Stop>& stops() const { return m_stops; }

    /// The ways of an instance: from firstWay() of it to that of the next one.
    quint32 firstWay(quint32 instance) const { return m_firstWays[instance]; }
    const Way& way(quint32 number) const { return m_ways[number]; }

    /// The stops of all ways of an instance lie between firstStop() of it and of the next one.
    quint32 firstStop(quint32 instance) const;

    /// The first switch of the way that sends on the port, or the way's listener.
    quint32 findHop(const Way& way, quint32 port) const;

private:
    std::vector<Stop> m_stops;
    std::vector<Way> m_ways;
    std::vector<quint32> m_firstWays{0}; ///< by instance, and one more at the end
};

} // namespace planner
