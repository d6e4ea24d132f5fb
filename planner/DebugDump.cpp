#include "planner/DebugDump.h"
#include "planner/PlanningLog.h"

namespace planner
{

static void printPath(const VirtualLinkPath& path)
{
    qCDebug(planningLog) << "  talker  :" << path.talkerNodeID << path.talkerOutport;
    qCDebug(planningLog) << "    talker schedtxwin:" << path.schedtxwin.start
                         << path.schedtxwin.end;
    for (const BridgeHop& hop : path.bridges) {
        qCDebug(planningLog) << "  bridge  :" << hop.nodeID << hop.outport;
        qCDebug(planningLog) << "    bridge schedtxwin:" << hop.schedtxwin.start
                             << hop.schedtxwin.end;
    }
    qCDebug(planningLog) << "  listener:" << path.listenerNodeID << path.listenerInport;
    qCDebug(planningLog) << "    listener schedrxwin:" << path.schedrxwin.start
                         << path.schedrxwin.end;
    qCDebug(planningLog) << "    -----------------------";
    qCDebug(planningLog) << "";
}

static void printInstance(const TTStreamInstance& instance)
{
    qCDebug(planningLog) << "  flowID:" << instance.flowID;
    qCDebug(planningLog) << "  seq:" << instance.seq;
    for (const VirtualLinkPath& path : instance.paths)
        printPath(path);
}

static void printBanner()
{
    qCDebug(planningLog) << "print TTStreamInstanceList";
}

void printTTStreamInstanceList(const std::list<TTStreamInstance>& instances)
{
    if (!planningLog().isDebugEnabled())
        return;
    printBanner();
    for (const TTStreamInstance& instance : instances)
        printInstance(instance);
}

void printNodeList(const TTPlanner& planner)
{
    qCDebug(planningLog) << "print nodeList";
    for (const Node& node : planner.nodeList) {
        qCDebug(planningLog) << "nodeID:" << node.nodeID;
        for (const NodeOutport& port : node.outports) {
            qCDebug(planningLog) << "outport:" << port.outport;
            printBanner();
            for (const InstanceCopy& instance : port.instances)
                printInstance(*instance);
        }
    }
}

void printTopologyInfo(const PlanningContext& context)
{
    qCDebug(planningLog) << "printTopologyInfo-------";
    for (const HostInfo& host : context.hosts)
        qCDebug(planningLog) << "host:" << host.name << host.nodeID << host.MTU << host.buffernum;
    for (const SwitchInfo& info : context.switches)
        qCDebug(planningLog) << "switch:" << info.name << info.nodeID << info.portnum << info.MTU
                             << info.buffernum;
    for (const LinkInfo& link : context.links)
        qCDebug(planningLog) << "link:" << link.srcnode << link.srcport << link.dstnode
                             << link.dstport << link.bandwidth;
    qCDebug(planningLog) << "printTopologyInfo end-------";
}

void printVirtualLink(const PlanningContext& context)
{
    qCDebug(planningLog) << "printVirtualLink-------";
    for (const VirtualLink& virtualLink : context.virtualLinks) {
        qCDebug(planningLog) << "vlid:" << virtualLink.vlid;
        for (const VirtualLinkPath& path : virtualLink.paths)
            printPath(path);
    }
    qCDebug(planningLog) << "printVirtualLink end-------";
}

} // namespace planner
