#pragma once

#include "planner/search/Index.h"

#include <limits>

// Numbers on a WindowBoard; instances, paths and hops are counted in the order of the list.
namespace planner
{

using InstanceIndex = Index<struct InstanceKind>;
using PathIndex = Index<struct PathKind>; ///< among the paths of all instances
using HopIndex = Index<struct HopKind>;   ///< among the hops of all paths
using PortIndex = Index<struct PortKind>; ///< in the order of a nodeList, over all nodes

/// Port of a listener, which has none to send on, and of senders that nobody asks about.
constexpr PortIndex noPort{std::numeric_limits<quint32>::max()};

} // namespace planner
