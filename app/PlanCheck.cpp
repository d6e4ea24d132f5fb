#include "app/PlanCheck.h"

using verification::Finding;
using verification::NetworkFlow;

static constexpr size_t mostLogLines = 20;

PlanCheck::PlanCheck(const QStringList& inputPaths, const QStringList& outputPaths)
    : m_records(verification::readPlan(inputPaths, outputPaths)),
      m_result(verification::verifyPlan(m_records))
{
    indexNodes();
    indexFindings();
}

// Of several nodes with one number the first one names it, as in the node list.
void PlanCheck::indexNodes()
{
    for (const verification::NetworkNode& node : m_records.network.nodes) {
        if (!m_names.contains(node.nodeID))
            m_names.insert(node.nodeID, node.name);
    }
}

void PlanCheck::indexFindings()
{
    for (size_t i = 0; i < m_result.findings.size(); ++i) {
        const int node = m_result.findings[i].node;
        if (node != Finding::nowhere)
            m_findingsOfNode[node].push_back(i);
    }
}

const verification::PlanFigures& PlanCheck::figures() const
{
    if (!m_figures)
        m_figures = verification::figuresOf(m_records);
    return *m_figures;
}

QString PlanCheck::nodeName(int nodeID) const
{
    const QString name = m_names.value(nodeID);
    return name.isEmpty() ? QStringLiteral(u"节点%1").arg(nodeID) : name;
}

PlanPlace PlanCheck::talkerPort(int flowID) const
{
    PlanPlace place;
    for (const NetworkFlow& flow : m_records.network.flows) {
        if (flow.flowID != flowID || flow.hops.empty())
            continue;
        place.node = flow.hops.front().node;
        place.port = flow.hops.front().outport;
        place.flowID = flowID;
        break;
    }
    return place;
}

const std::vector<size_t>& PlanCheck::findingsAt(int nodeID) const
{
    static const std::vector<size_t> none;
    const auto found = m_findingsOfNode.constFind(nodeID);
    return found == m_findingsOfNode.cend() ? none : *found;
}

QStringList logLines(const verification::Verification& result)
{
    if (result.findings.empty())
        return {
            QStringLiteral("verification: %1 transmissions, no finding").arg(result.transmissions)};
    QStringList lines;
    const size_t shown = std::min(result.findings.size(), mostLogLines);
    for (size_t i = 0; i < shown; ++i)
        lines.append(QStringLiteral("verification: ") + describe(result.findings[i]));
    if (result.findings.size() > shown)
        lines.append(QStringLiteral("verification: %1 more").arg(result.findings.size() - shown));
    return lines;
}
