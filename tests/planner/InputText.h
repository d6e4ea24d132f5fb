#pragma once

#include <QString>
#include <QStringList>

/// Builds the text of an input document part by part, in the order in which the studio writes it.
///
/// Values are texts, as in the document, so that tests can put anything there.
class InputText
{
public:
    InputText& host(const QString& name, int nodeID, int buffernum);
    InputText& switchNode(const QString& name, int nodeID, int buffernum);
    InputText& link(const QString& from, int fromPort, const QString& to, int toPort);
    InputText& virtualLink(int vlid, const QStringList& datapaths);
    /// One listener a pair of name and window, such as {"B", "[0,1000]"}.
    InputText& flow(int flowID, const QString& period, int vlid, const QString& talker,
                    const QString& txwin, const QList<QPair<QString, QString>>& listeners,
                    const QString& type = QStringLiteral("\"TT\""));

    /// The text of a part, for tests that damage it.
    QString hosts, switches, links, virtualLinks, flows;

    QByteArray document() const;
    /// Writes ResourceXML/vek_input.xml under the current directory.
    void save() const;
};

/// A line of hosts A (1) and B (2) around the switches S1 (11), S2 (12), ...; buffernum everywhere.
///
/// Port 1 leads to the left, port 2 to the right; a host has port 1. Virtual link 1 runs from A to
/// B.
InputText lineNetwork(int switches, int buffernum);
