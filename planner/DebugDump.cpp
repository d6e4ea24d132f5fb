#include "planner/DebugDump.h"

#include <QDebug>

namespace planner
{

static void printPath(const VirtualLinkPath& path)
{
    qDebug() << "  talker  :" << path.talkerNodeID << path.talkerOutport;
    qDebug() << "    talker schedtxwin:" << path.schedtxwin.start << path.schedtxwin.end;
    for (const BridgeHop& hop : path.bridges) {
        qDebug() << "  bridge  :" << hop.nodeID << hop.outport;
        qDebug() << "    bridge schedtxwin:" << hop.schedtxwin.start << hop.schedtxwin.end;
    }
    qDebug() << "  listener:" << path.listenerNodeID << path.listenerInport;
    qDebug() << "    listener schedrxwin:" << path.schedrxwin.start << path.schedrxwin.end;
    qDebug() << "    -----------------------";
    qDebug() << "";
}

void printTTStreamInstanceList(const std::list<TTStreamInstance>& instances)
{
    qDebug() << "print TTStreamInstanceList";
    for (const TTStreamInstance& instance : instances) {
        qDebug() << "  flowID:" << instance.flowID;
        qDebug() << "  seq:" << instance.seq;
        for (const VirtualLinkPath& path : instance.paths)
            printPath(path);
    }
}

void printNodeList(const TTPlanner& planner)
{
    qDebug() << "print nodeList";
    for (const Node& node : planner.nodeList) {
        qDebug() << "nodeID:" << node.nodeID;
        for (const NodeOutport& port : node.outports) {
            qDebug() << "outport:" << port.outport;
            printTTStreamInstanceList(port.instances);
        }
    }
}

void printTopologyInfo(const PlanningContext& context)
{
    qDebug() << "printTopologyInfo-------";
    for (const HostInfo& host : context.hosts)
        qDebug() << "host:" << host.name << host.nodeID << host.MTU << host.buffernum;
    for (const SwitchInfo& info : context.switches)
        qDebug() << "switch:" << info.name << info.nodeID << info.portnum << info.MTU
                 << info.buffernum;
    for (const LinkInfo& link : context.links)
        qDebug() << "link:" << link.srcnode << link.srcport << link.dstnode << link.dstport
                 << link.bandwidth;
    qDebug() << "printTopologyInfo end-------";
}

void printVirtualLink(const PlanningContext& context)
{
    qDebug() << "printVirtualLink-------";
    for (const VirtualLink& virtualLink : context.virtualLinks) {
        qDebug() << "vlid:" << virtualLink.vlid;
        for (const VirtualLinkPath& path : virtualLink.paths)
            printPath(path);
    }
    qDebug() << "printVirtualLink end-------";
}

} // namespace planner
