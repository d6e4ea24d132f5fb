#pragma once

#include "synthesis/NetworkDocument.h"
#include "traffic/FlowInfo.h"

#include <QList>

#include <vector>

/// The flow records whose windows were narrowed, with what they were before.
///
/// A record is known again by all its texts: one that the user removed or entered anew in another
/// way is left alone.
class NarrowedFlows
{
public:
    /// Writes the narrowed windows into the records, and keeps what they replace.
    ///
    /// Returns the rows that changed, ascending. Windows that bound what they did before keep
    /// their texts. The places of the windows must be rows of the list.
    QList<int> adopt(QList<FlowInfo>& flows, const std::vector<synthesis::NarrowedFlow>& windows);

    /// Gives the records that are still there their earlier windows back, and keeps nothing.
    ///
    /// Returns the rows that changed, ascending.
    QList<int> restore(QList<FlowInfo>& flows);

    /// Whether restore() would change a record.
    bool canRestore(const QList<FlowInfo>& flows) const;

    void forget() { m_changes.clear(); }

private:
    struct Change {
        FlowInfo before;
        FlowInfo after;
    };

    void keep(const FlowInfo& before, const FlowInfo& after);

    std::vector<Change> m_changes; ///< those not given back
};

/// The record with the narrowed windows.
FlowInfo narrowed(FlowInfo flow, const synthesis::NarrowedFlow& windows);

/// Whether a window bounds anything else than before.
bool changesAnything(const synthesis::NarrowedFlow& windows);
