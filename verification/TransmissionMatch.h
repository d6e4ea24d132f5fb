#pragma once

#include "verification/PlanRecords.h"

#include <vector>

namespace verification
{

/// Which flow, and which of its transmissions, each transmission of a schedule is.
///
/// Several transmissions of one flowID and seq, from flows that share a number or from a flow of
/// more than 65536 transmissions, are told apart by their order in both documents.
struct TransmissionMatch {
    struct Place {
        int flow = nobody; ///< place in the flows of the network
        qint64 number = 0; ///< of the transmission in its flow, from 0
    };
    std::vector<Place> places; ///< by transmission of the schedule

    static constexpr int nobody = -1;
};

TransmissionMatch matchTransmissions(const PlanRecords& plan);

/// Least common multiple of the periods (us) of all flows that take part in the cycle; 0 without
/// one, and the largest number there is when it is larger.
qint64 commonCycle(const Network& network);

/// How many transmissions of a flow the cycle of the schedule holds; at least one of a flow that is
/// taken.
qint64 transmissionsAsked(const PlanRecords& plan, const NetworkFlow& flow);

} // namespace verification
