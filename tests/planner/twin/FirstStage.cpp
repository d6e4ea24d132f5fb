#include "tests/planner/twin/FirstStage.h"

#include "tests/planner/twin/InputReader.h"
#include "tests/planner/twin/WindowsDocument.h"

#include <QDebug>

#include <algorithm>

namespace twin
{

namespace
{

qint32 bridgeCount(const Path& path)
{
    return static_cast<qint32>(path.bridges.size());
}

quint32 greatestCommonDivisor(quint32 a, quint32 b)
{
    while (b != 0) {
        const quint32 rest = a % b;
        a = b;
        b = rest;
    }
    return a;
}

quint32 computeClusterCycle(Context& context)
{
    std::vector<quint32> periods;
    for (const Flow& flow : context.flows)
        periods.push_back(flow.period);
    lcmReduce(context, periods);
    return static_cast<quint32>(context.clusterCycle);
}

void limitReceiveWindows(Context& context)
{
    const qint32 B = context.switchBufferNum;
    for (Flow& flow : context.flows) {
        for (Path& path : flow.paths) {
            const qint32 h = bridgeCount(path);
            Window& rx = path.schedrxwin;
            rx.end = std::min(rx.end, plus(path.schedtxwin.end, times(B, h)));
            rx.start = std::max(rx.start, plus(path.schedtxwin.start, h));
        }
    }
}

qint32 limitSendWindows(Context& context)
{
    const qint32 B = context.switchBufferNum;
    for (Flow& flow : context.flows) {
        qint32 S = 0;
        qint32 E = 0;
        bool first = true;
        for (const Path& path : flow.paths) {
            const qint32 h = bridgeCount(path);
            const qint32 start =
                std::max(path.schedtxwin.start, minus(path.schedrxwin.start, times(B, h)));
            const qint32 end = std::min(path.schedtxwin.end, minus(path.schedrxwin.end, h));
            S = first ? start : std::max(S, start);
            E = first ? end : std::min(E, end);
            first = false;
        }
        if (E < S) {
            qDebug() << S << E;
            qDebug() << "TIMEWINDOW_UNREASONABLE";
            return -3;
        }
        for (Path& path : flow.paths) {
            path.schedtxwin.start = S;
            path.schedtxwin.end = E;
        }
    }
    return 0;
}

void deriveWindowsOfPath(qint32 B, Path& path)
{
    const qint32 h = bridgeCount(path);
    const Window& rx = path.schedrxwin;
    const Window* previous = nullptr;
    qint32 i = 0;
    for (Hop& hop : path.bridges) {
        Window& window = hop.schedtxwin;
        if (i == 0) {
            window.start =
                std::max(plus(path.schedtxwin.start, 1), minus(rx.start, times(B, h - 1)));
            window.end = std::min(minus(rx.end, h - 1), plus(path.schedtxwin.end, B));
        } else {
            window.start = std::max(plus(previous->start, 1), minus(rx.start, times(B, h - 1 - i)));
            window.end = std::min(plus(previous->end, 4), minus(rx.end, h - 1 - i));
        }
        previous = &window;
        ++i;
    }
}

void joinSharedPorts(Flow& flow)
{
    for (auto P = flow.paths.begin(); P != flow.paths.end(); ++P) {
        for (Hop& b : P->bridges) {
            for (auto Q = P; Q != flow.paths.end(); ++Q) {
                for (const Hop& c : Q->bridges) {
                    if (c.nodeID != b.nodeID || c.outport != b.outport)
                        continue;
                    b.schedtxwin.end = std::min(b.schedtxwin.end, c.schedtxwin.end);
                    b.schedtxwin.start = std::max(b.schedtxwin.start, c.schedtxwin.start);
                }
            }
        }
    }
}

void deriveBridgeWindows(Context& context)
{
    for (Flow& flow : context.flows) {
        for (Path& path : flow.paths)
            deriveWindowsOfPath(context.switchBufferNum, path);
    }
    for (Flow& flow : context.flows)
        joinSharedPorts(flow);
}

/// A talker and a listener are hops as well as each bridge between them.
bool tooManyHops(const Context& context)
{
    quint64 hops = 0;
    for (const Flow& flow : context.flows) {
        for (const Path& path : flow.paths)
            hops += context.clusterCycle / flow.period * (path.bridges.size() + 2);
    }
    return hops > 16777216;
}

void shift(Window& window, qint32 distance)
{
    window.start = plus(window.start, distance);
    window.end = plus(window.end, distance);
}

} // namespace

// No round can produce a zero: a 32-bit period has at most 31 factors of two, no common multiple
// gains one, and the cut to 32 bits loses none. So the divisor is never zero either.
quint32 lcmReduce(Context& context, const std::vector<quint32>& periods)
{
    qDebug() << periods;
    const size_t n = periods.size();
    if (n == 1) {
        context.clusterCycle = periods[0];
        return static_cast<quint32>(context.clusterCycle);
    }
    if (n == 0)
        return static_cast<quint32>(context.clusterCycle);
    std::vector<quint32> combined(n - 1);
    for (size_t i = 0; i + 1 < n; ++i) {
        const quint32 a = periods[i];
        const quint32 b = periods[i + 1];
        const quint64 product = quint64(a) * b;
        context.clusterCycle = product / greatestCommonDivisor(a, b);
        combined[i] = static_cast<quint32>(context.clusterCycle);
    }
    lcmReduce(context, combined);
    return static_cast<quint32>(context.clusterCycle);
}

qint32 checkTimeWindows(Context& context)
{
    limitReceiveWindows(context);
    const qint32 code = limitSendWindows(context);
    if (code != 0)
        return code;
    deriveBridgeWindows(context);
    return 0;
}

void expandInstances(Context& context)
{
    for (const Flow& flow : context.flows) {
        const quint64 count = context.clusterCycle / flow.period;
        const quint32 p = flow.period / 200;
        for (quint64 number = 0; number < count; ++number) {
            Instance instance;
            instance.flowID = flow.flowID;
            instance.vlid = flow.vlid;
            instance.size = flow.size;
            instance.period = p;
            instance.seq = static_cast<quint16>(number);
            instance.paths = flow.paths;
            const qint32 distance = times(static_cast<qint64>(number), p);
            for (Path& path : instance.paths) {
                shift(path.schedtxwin, distance);
                for (Hop& hop : path.bridges)
                    shift(hop.schedtxwin, distance);
                shift(path.schedrxwin, distance);
            }
            context.instances.push_back(instance);
        }
    }
}

qint32 preProcess(Context& context)
{
    context = Context();
    qint32 code = readInputDocument(context);
    if (code < 0)
        return code;
    context.clusterCycle = computeClusterCycle(context);
    qDebug() << "clusterCycle:" << context.clusterCycle;
    code = checkTimeWindows(context);
    if (code != 0)
        return code;
    if (tooManyHops(context))
        return -1;
    expandInstances(context);
    printInstances(context.instances);
    writeWindowsDocument(QStringLiteral(u"vek_hs.xml"), context.clusterCycle, context.instances);
    return 0;
}

} // namespace twin
