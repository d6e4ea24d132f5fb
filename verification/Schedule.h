#pragma once

#include <QtGlobal>

#include <vector>

// The output document as it stands, before anything is judged.
namespace verification
{

/// A sender of a transmission; of a talker inport and receiveSlot mean nothing.
struct ScheduledHop {
    int node = 0;
    int inport = 0;
    int outport = 0;
    qint64 receiveSlot = 0;
    qint64 sendSlot = 0;

    static constexpr int noPort = -1; ///< in place of the inport of a talker
};

struct ScheduledListener {
    int node = 0;
    int inport = 0;
    qint64 slot = 0;
};

/// One transmission; its hops and listeners are ranges in the lists of the schedule.
struct ScheduledTransmission {
    int flowID = 0;
    int seq = 0;
    bool hasTalker = false; ///< whether its first hop is the talker
    size_t firstHop = 0;
    size_t hopCount = 0;
    size_t firstListener = 0;
    size_t listenerCount = 0;
};

/// Everything that an output document says, in document order.
struct Schedule {
    qint64 cycle_us = 0;
    qint64 slotLength_us = 0;
    std::vector<ScheduledTransmission> transmissions;
    std::vector<ScheduledHop> hops;
    std::vector<ScheduledListener> listeners;
};

} // namespace verification
