#pragma once

#include <QByteArray>
#include <QStringList>

#include <vector>

// A network in the terms of the input document, before it becomes text.

struct DraftNode {
    QString name;
    bool isSwitch = false;
    int nodeID = 0;
    int buffernum = 0;
    int ports = 0; ///< ports given to links so far
};

struct DraftLink {
    int a = 0; ///< index of the node
    int b = 0;
    int portA = 0;
    int portB = 0;
};

struct DraftVirtualLink {
    int vlid = 0;
    std::vector<QStringList> paths; ///< node names, talker first, listener last
};

struct DraftListener {
    QString name;
    QString rxwin;
};

struct DraftFlow {
    QString type = QStringLiteral(u"\"TT\"");
    int flowID = 0;
    quint32 period = 1000; ///< microseconds
    int size = 100;
    int vlid = 0;
    QString talker;
    QString txwin;
    std::vector<DraftListener> listeners;
};

struct NetworkDraft {
    std::vector<DraftNode> nodes;
    std::vector<DraftLink> links;
    std::vector<DraftVirtualLink> virtualLinks;
    std::vector<DraftFlow> flows;
};

/// The input document, one leaf a line.
QByteArray documentOf(const NetworkDraft& draft);
