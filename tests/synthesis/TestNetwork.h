#pragma once

#include "tests/planner/twin/NetworkDraft.h"

/// A line of hosts A, B and switches S, T, with a host Y at S and a host Z at T: small enough to
/// count slots by hand.
class TestNetwork
{
public:
    TestNetwork();

    /// Adds a flow along the names, with windows in microseconds; its number is the next one.
    DraftFlow& addFlow(const QStringList& path, quint32 period, const QString& txwin,
                       const QString& rxwin);
    /// Adds a listener with its path to the last flow.
    void addListener(const QStringList& path, const QString& rxwin);
    /// Adds two frames that leave together at this time, in microseconds, and have to arrive before
    /// one could wait out of the other's way.
    void addOverlappingPair(int start_us, quint32 period);

    NetworkDraft draft;
};
