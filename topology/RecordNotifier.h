#pragma once

#include <QObject>
#include <QSet>

class Arrow;
class DiagramItem;

/// Nodes that are gone: good for comparing pointers with, never to be followed.
using GoneNodes = QSet<const DiagramItem*>;

/// Tells whoever holds a node or a link by pointer that it is going.
///
/// Nodes and links are graphics items without signals of their own, and they go in many ways:
/// deleted by the user, with a cleared scene, with the window. Whoever keeps a pointer across
/// events connects here and drops it. The pointer handed over must not be followed any more.
class RecordNotifier : public QObject
{
    Q_OBJECT

public:
    static RecordNotifier& instance();

    /// For the node's destructor.
    void announce(const DiagramItem* node);

    /// While it lives, nodes that go are told of together, at its end; until then nobody may look
    /// at what holds them.
    ///
    /// Everyone told walks all that he holds, which for one node after the other would be the
    /// square of a large drawing. Does not nest.
    class Together
    {
    public:
        Together();
        ~Together();
        Together(const Together&) = delete;
        Together& operator=(const Together&) = delete;
    };

signals:
    void nodesGone(const GoneNodes& nodes);
    void linkGone(Arrow* link);

private:
    RecordNotifier() = default;

    GoneNodes m_waiting;
    bool m_waits = false;
};
