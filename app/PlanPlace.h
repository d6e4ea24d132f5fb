#pragma once

#include "verification/Finding.h"

#include <optional>

/// A place in the tables of the loaded schedule. Parts that are not meant are left as they are.
struct PlanPlace {
    int node = verification::Finding::nowhere;
    int port = verification::Finding::nowhere;
    qint64 slot = verification::Finding::noSlot; ///< counted from the cycle's start
    std::optional<int> flowID;                   ///< without a slot: the first one of this flow
    bool receives = false; ///< rather in the receive table than in the send table

    bool hasNode() const { return node != verification::Finding::nowhere; }
    bool hasPort() const { return port != verification::Finding::nowhere; }
    bool hasSlot() const { return slot != verification::Finding::noSlot; }
};
