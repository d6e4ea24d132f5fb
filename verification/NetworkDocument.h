#pragma once

#include "verification/DocumentReading.h"
#include "verification/Network.h"

#include <QHash>
#include <QStringList>

#include <map>
#include <unordered_map>

namespace verification
{

/// Reads input documents by the rules that the planning follows, and keeps what it would drop.
///
/// Names and links of one document hold for those behind it, too.
class NetworkDocument
{
public:
    /// Reports of missing parts go to damage, which must outlive this.
    explicit NetworkDocument(std::vector<Finding>& damage);

    /// Reads a document, given its first element.
    void read(const tinyxml2::XMLElement& root);

    /// All that was read so far, by the marks of Network.
    Network network() const;

private:
    using Element = DocumentReading::Element;

    /// One direction of a link.
    struct Link {
        int outport = 0;
        int inport = 0;
        qint64 bandwidth_Mbps = 0;
    };
    /// A path of node numbers; unknownName where a name is no node's.
    using NodePath = std::vector<int>;
    static constexpr int unknownName = -1;

    void readTopology(Element topology);
    void readNode(Element element, const char* nameElement, bool isSwitch);
    void readLink(Element element);
    void readVirtualLink(Element element);
    void readFlows(Element flows);
    void readFlow(Element element, bool& dropped);
    FlowState stateOf(Element element, NetworkFlow& flow);
    bool applyListeners(Element listeners, NetworkFlow& flow);

    int nodeOfName(const QString& name) const;
    NetworkFlow treeOf(const std::vector<NodePath>& paths) const;
    quint16 number16(Element parent, const char* name);
    SlotRange window(Element parent, const char* name);

    DocumentReading m_reading;
    std::vector<NetworkNode> m_hosts;
    std::vector<NetworkNode> m_switches;
    QHash<QString, int> m_hostIds;
    QHash<QString, int> m_switchIds;
    std::map<std::pair<int, int>, Link> m_links; ///< by sending and receiving node
    /// The ways of each virtual link as a flow without a name would have them.
    std::unordered_map<int, NetworkFlow> m_virtualLinks;
    std::vector<NetworkFlow> m_flows;
    bool m_onlyZeroSoFar = true; ///< no flow with a number has been taken yet
};

} // namespace verification
