#pragma once

#include "GateLists.h"

#include <QByteArray>
#include <QStringList>

#include <map>

// Gate control lists in the forms that others read.

/// Names by nodeID.
class NodeNames
{
public:
    explicit NodeNames(const verification::Network& network);

    /// The node's own name; its number when the document has none.
    QString nameOf(int node) const;

    /// NAME-PORT, unique in the plan; nodeNUMBER-PORT for a name that is shared or would need
    /// quotes.
    QString interfaceOf(int node, int port) const;

private:
    std::map<int, QString> m_names;
    std::map<QString, int> m_uses;
};

/// What the formats need to know beside the lists.
struct GateSetting {
    int trafficClass = 7; ///< 0 to 7
    qint64 cycle_us = 0;
    QStringList assumptions; ///< lines that stand as remarks where the form has such
};

/// A field of a CSV line, in quotes when it needs them.
QString csvField(const QString& text);

/// A line an entry: interface, index, gate states (bit by class), nanoseconds.
QByteArray gatesAsCsv(const std::vector<GateList>& lists, const NodeNames& names,
                      const GateSetting& setting);

/// Scheduled traffic of IEEE 802.1Q, as its YANG modules have it in JSON.
QByteArray gatesAsJson(const std::vector<GateList>& lists, const NodeNames& names,
                       const GateSetting& setting);

/// A line a port for the queueing discipline taprio.
QByteArray gatesAsTaprio(const std::vector<GateList>& lists, const NodeNames& names,
                         const GateSetting& setting);
