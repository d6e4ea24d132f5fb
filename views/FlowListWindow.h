#pragma once

#include "project/NodeInfoXml.h"

#include <QMainWindow>

class QListView;
class QStandardItemModel;

/// Lists every slot of every flow on one port as a card.
class FlowListWindow : public QMainWindow
{
    Q_OBJECT

public:
    enum Mode { Send = 0, Receive = 1 };

    explicit FlowListWindow(QWidget* parent);

    void clearFlowList();

    /// Replaces the cards by those of the port, by ascending flow id and slot.
    ///
    /// table is the send or the receive schedule, mode tells which (0 send, 1 receive). A node or
    /// port that is not in it gives no cards.
    void fillFlowList(const NodeInfo_Xml& table, int nodeID, int port, int mode);

private:
    QListView* listView;
    QStandardItemModel* model;
};
