#pragma once

#include "planner/TTPlanner.h"
#include "planner/passes/DuplicateInstances.h"
#include "planner/passes/PortDegrees.h"
#include "planner/passes/RepetitionWatch.h"

namespace planner
{

/// Holds the records of a planner while conflicts are resolved pass by pass.
///
/// For its life it alone answers for the windows of the planner: it takes them up from the master
/// list at its beginning and gives them back at its end, to the master list and to a nodeList that
/// is as if it had been built anew after each pass. In between both lists rest and are not to be
/// read or changed. What makes passes fast (a board of all windows, numbers of the ports, degrees
/// of touched ports only, records that share their number) is reached through here alone.
class Passes
{
public:
    /// Takes up the master list; what nodeList holds is dropped. The planner is not owned.
    explicit Passes(TTPlanner& planner);
    ~Passes();
    Passes(const Passes&) = delete;
    Passes& operator=(const Passes&) = delete;

    quint16 hopBufferNum() const { return m_planner.hopBufferNum; }
    qint32 maxRxSlot() const { return m_planner.maxRxSlot; }

    /// Begins a pass: nothing counts as revised any more.
    void begin();

    /// The port whose windows overlap most.
    WorstPort measure() { return m_degrees.measure(m_groups); }

    /// A port that measure() has returned; valid until the next renew().
    PortView view(const WorstPort& port);

    /// Ends the passes at a port where a resolution found only these slots, in the port's order.
    ///
    /// They show in the copies of nodeList at that port and nowhere else.
    void leaveUnresolved(const WorstPort& port, const std::vector<qint32>& slotsGiven);

    /// Calls revise(instance) for each instance at the port, and follows up what has changed.
    template <typename Revise>
    void reviseEach(const PortView& port, const Revise& revise);

    /// Lets the other records with the flowID and seq of a revised instance follow it.
    void overwriteDuplicates();

    /// Brings the grouping up to date with what the pass has changed.
    void renew();

    /// Whether the windows are as they were before an earlier pass, so that passes would not end.
    bool isBack() { return m_watch.isBack(m_groups.board, m_revised); }

    /// Number of passes begun.
    quint64 count() const { return m_watch.passes(); }

private:
    void remember(InstanceIndex instance);
    void touchChanged(InstanceIndex instance);
    void giveBackWindows();
    void giveBackDegrees();
    void giveBackUnresolved();

    TTPlanner& m_planner;
    PortGroups m_groups;
    PortDegrees m_degrees;
    DuplicateInstances m_duplicates;
    RepetitionWatch m_watch;
    std::vector<InstanceIndex> m_revised; ///< by the present pass
    std::vector<Hop> m_before;            ///< the hops of an instance ahead of its revision
    WorstPort m_unresolved;               ///< degree 0 unless a resolution has failed
    std::vector<qint32> m_slotsGiven;     ///< there
    bool m_isOutdated = false; ///< whether records were overwritten that may lead over other ports
};

template <typename Revise>
void Passes::reviseEach(const PortView& port, const Revise& revise)
{
    m_degrees.touch(port.port);
    for (const PortEntry& entry : port.entries) {
        remember(entry.instance);
        revise(entry.instance);
        touchChanged(entry.instance);
        m_revised.push_back(entry.instance);
    }
}

} // namespace planner
