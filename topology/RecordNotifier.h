#pragma once

#include <QObject>

class Arrow;
class DiagramItem;

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

signals:
    void nodeGone(DiagramItem* node);
    void linkGone(Arrow* link);

private:
    RecordNotifier() = default;
};
