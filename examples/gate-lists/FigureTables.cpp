#include "FigureTables.h"

using verification::slotLength_us;

QByteArray latenciesAsCsv(const verification::PlanFigures& figures, const NodeNames& names)
{
    QString text =
        QStringLiteral("flow,talker,listener,transmissions,smallest_us,largest_us,jitter_us\n");
    for (const verification::FlowLatency& latency : figures.latencies) {
        text += QStringLiteral("%1,%2,%3,%4,%5,%6,%7\n")
                    .arg(QString::number(latency.flowID), csvField(names.nameOf(latency.talker)),
                         csvField(names.nameOf(latency.listener)),
                         QString::number(latency.transmissions),
                         QString::number((latency.smallest + 1) * slotLength_us),
                         QString::number((latency.largest + 1) * slotLength_us),
                         QString::number(latency.jitter() * slotLength_us));
    }
    return text.toUtf8();
}

QByteArray loadsAsCsv(const verification::PlanFigures& figures, const NodeNames& names)
{
    QString text = QStringLiteral("node,name,port,used_slots,cycle_slots,load_percent\n");
    for (const verification::PortLoad& load : figures.loads) {
        const double share = load.cycleSlots > 0 ? 100.0 * static_cast<double>(load.usedSlots) /
                                                       static_cast<double>(load.cycleSlots)
                                                 : 0.0;
        text += QStringLiteral("%1,%2,%3,%4,%5,%6\n")
                    .arg(QString::number(load.node), csvField(names.nameOf(load.node)),
                         QString::number(load.port), QString::number(load.usedSlots),
                         QString::number(load.cycleSlots), QString::number(share, 'f', 1));
    }
    return text.toUtf8();
}
