#pragma once

#include "synthesis/NetworkDocument.h"

// What the user reads about a search for windows, in Chinese.

/// Why a flow takes no part, in a few words.
QString textOf(synthesis::Obstacle obstacle);

/// How a search ended: nodes by name, flows by number, slots in microseconds too.
///
/// Ends that are not alike never share a sentence: a plan, two kinds of proof that there is none,
/// steps that were spent, a search that was stopped or refused.
QString summaryOf(const synthesis::InputNetwork& network, const synthesis::Outcome& outcome);

/// The flows that stand in the way of a plan, by place in the document, ascending; none with a
/// plan.
std::vector<std::size_t> flowsInTheWay(const synthesis::InputNetwork& network,
                                       const synthesis::Outcome& outcome);
