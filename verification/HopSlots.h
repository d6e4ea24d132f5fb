#pragma once

#include "verification/PlanRecords.h"

#include <map>
#include <tuple>
#include <vector>

namespace verification
{

/// The slots of one transmission, sorted to the senders and listeners of its flow.
///
/// Made once for a flow and filled anew for each of its transmissions.
class HopSlots
{
public:
    struct Entry {
        bool known = false;
        bool implied = false; ///< of a talker's port that the document has no row for
        qint64 receive = 0;   ///< meaningless for talkers
        qint64 send = 0;
    };
    struct Arrival {
        bool known = false;
        qint64 slot = 0;
    };

    explicit HopSlots(const NetworkFlow& flow);

    /// Takes the slots of a transmission; those of the one before are gone.
    void fill(const Schedule& schedule, const ScheduledTransmission& transmission);

    const NetworkFlow& flow() const { return *m_flow; }
    /// By place among the flow's hops.
    const std::vector<Entry>& hops() const { return m_hops; }
    /// By place among the flow's listeners.
    const std::vector<Arrival>& arrivals() const { return m_arrivals; }

    /// Rows of the document that are none of the flow's, or the second one for the same.
    const std::vector<const ScheduledHop*>& strayHops() const { return m_strayHops; }
    const std::vector<const ScheduledListener*>& strayListeners() const { return m_strayListeners; }

private:
    int placeOf(const ScheduledHop& hop, size_t row) const;
    int placeOf(const ScheduledListener& listener, size_t row) const;
    void fillHops(const Schedule& schedule, const ScheduledTransmission& transmission);
    void fillListeners(const Schedule& schedule, const ScheduledTransmission& transmission);
    void implyTalkers();

    const NetworkFlow* m_flow;
    std::vector<int> m_expectedHops; ///< place by row of a document in the usual order
    mutable std::map<std::tuple<int, int, int>, int> m_places; ///< made when rows are out of order
    std::vector<Entry> m_hops;
    std::vector<Arrival> m_arrivals;
    std::vector<const ScheduledHop*> m_strayHops;
    std::vector<const ScheduledListener*> m_strayListeners;
};

} // namespace verification
