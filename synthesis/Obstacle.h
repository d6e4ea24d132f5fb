#pragma once

#include "planner/PlanningModel.h"

#include <cstddef>
#include <vector>

// What keeps a flow from being planned, known before anything is searched.
namespace synthesis
{

/// Why a flow takes no part in a plan, or why no plan can be searched because of it.
enum class Obstacle {
    // The flow is left out; the others are searched.
    OtherType,          ///< not of type TT
    WrongTalker,        ///< its talker is not that of its virtual link: reading stops here
    UnknownListener,    ///< a listener ends no path of its virtual link: reading stops here
    BehindDisagreement, ///< stands behind one of the two above and is dropped with it
    LeadingZero,        ///< number 0 at the head of the list, which the documents lose
    // Nothing is searched.
    PeriodZero,      ///< the whole document is refused
    NoPath,          ///< its virtual link has no path: the whole document is refused
    SharedNumber,    ///< another flow has its number, and the rules merge the two
    NoBuffers,       ///< the switches' buffer number is 0, which leaves a frame no slot to go on
    PeriodBelowSlot, ///< the period is shorter than a slot: its transmissions fall together
    CycleTooLong     ///< the common cycle of the periods is more than can be planned or searched
};

/// Whether nothing can be searched while a flow has this obstacle.
bool preventsSearch(Obstacle obstacle);

/// A flow with its obstacle.
struct ObstructedFlow {
    std::size_t flow = 0; ///< place from 0; of which list, the user of the record says
    Obstacle obstacle = Obstacle::OtherType;
};

/// The obstacles that show in the flows as they were read, by place in PlanningContext::flows.
///
/// In order of the flows, one at most for each; those of the document's text alone (types, names,
/// what was dropped) are not among them. The windows must be as readInputDocument() leaves them.
std::vector<ObstructedFlow> obstaclesOf(const planner::PlanningContext& context);

} // namespace synthesis
