#include "tests/project/ProjectBytes.h"
#include "tests/support/Text.h"

#include <QBuffer>

#include <algorithm>
#include <cstring>

template <typename Unsigned>
static QByteArray bigEndian(Unsigned value)
{
    QByteArray bytes;
    for (int shift = 8 * (int(sizeof value) - 1); shift >= 0; shift -= 8)
        bytes.append(static_cast<char>(value >> shift & 0xFF));
    return bytes;
}

ProjectBytes& ProjectBytes::number(qint32 value)
{
    return raw(bigEndian(static_cast<quint32>(value)));
}

ProjectBytes& ProjectBytes::real(double value)
{
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return raw(bigEndian(bits));
}

ProjectBytes& ProjectBytes::text(const QString& value)
{
    if (value.isNull())
        return number(-1);
    number(2 * value.size());
    for (const QChar unit : value)
        raw(bigEndian(unit.unicode()));
    return *this;
}

ProjectBytes& ProjectBytes::raw(const QByteArray& value)
{
    m_bytes.append(value);
    return *this;
}

ProjectBytes& ProjectBytes::links(const QList<FileArrowInfo>& links)
{
    number(links.size());
    for (const FileArrowInfo& link : links) {
        text(link.lineName).text(link.srcNode).text(link.dstNode);
        text(link.srcPort).text(link.dstPort).text(link.bandWidth);
    }
    return *this;
}

ProjectBytes& ProjectBytes::nodes(const QList<FileNodeInfo>& nodes)
{
    number(nodes.size());
    for (const FileNodeInfo& node : nodes) {
        number(node.type).real(node.position.x()).real(node.position.y());
        text(node.nodeName).text(node.nodeId).text(node.nodeMac);
        text(node.portNum).text(node.mtu).text(node.bufferNum);
    }
    return *this;
}

ProjectBytes& ProjectBytes::vLines(const QList<FileVLineInfo>& vLines)
{
    number(vLines.size());
    for (const FileVLineInfo& vLine : vLines) {
        text(vLine.vLineId).number(vLine.vLinePaths.size());
        for (const QStringList& path : vLine.vLinePaths) {
            number(path.size());
            for (const QString& name : path)
                text(name);
        }
    }
    return *this;
}

ProjectBytes& ProjectBytes::flows(const QList<FlowInfo>& flows)
{
    number(flows.size());
    for (const FlowInfo& flow : flows) {
        text(flow.flowType).text(flow.flowId).text(flow.flowPeriod).text(flow.flowSize);
        text(flow.vLineId).text(flow.srcNode);
        text(flow.sendWindowLow).text(flow.sendWindowHigh).number(flow.dstNodes.size());
        for (const DstNodeInfo& node : flow.dstNodes)
            text(node.dstNodeName).text(node.rcvWindowLow).text(node.rcvWindowHigh);
    }
    return *this;
}

QByteArray bytesOf(const Project& project)
{
    return ProjectBytes()
        .links(project.links)
        .nodes(project.nodes)
        .vLines(project.vLines)
        .flows(project.flows)
        .bytes();
}

Project projectFrom(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return readProject(buffer);
}

QByteArray written(const Project& project)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeProject(buffer, project);
    return buffer.data();
}

Project smallProject()
{
    Project project;
    project.links = {{u("l1"), u("A"), u("S"), u("0"), u("0"), u("1000")},
                     {u("l2"), u("S"), u("B"), u("1"), u("0"), QString()}};
    project.nodes = {
        {0, {100.5, 50}, u("A"), u("0"), u("2:0:0:0:0:1"), QString(), u("1500"), u("4")},
        {0, {500, 50}, u("B"), u("1"), QString(), QString(), QString(), u("")},
        {1, {300, -20}, u("S"), u("2"), u("2:0:0:0:0:3"), u("8"), u("1500"), u("4")}};
    project.vLines = {{u("1"), {{u("A"), u("S"), u("B")}, {u("A"), QString(), u("节点")}}},
                      {u(""), {}}};
    project.flows = {{u("TT"),
                      u("1"),
                      u("10000"),
                      u("64"),
                      u("1"),
                      u("A"),
                      u("0"),
                      u("2000"),
                      {{u("B"), u("400"), u("4000")}, {QString(), u(""), u("x")}}},
                     {u("RC"), QString(), u(""), u("1"), u("1"), u("B"), u("0"), u("1"), {}}};
    return project;
}

static QString randomText(RandomSource& random)
{
    if (random.chance(10))
        return QString();
    if (random.chance(10))
        return QLatin1String("");
    if (random.chance(10))
        return u("节点\U0001F600");
    return QString::number(random.below(5000));
}

static QString randomNodeName(RandomSource& random, int nodes)
{
    return random.chance(5) ? randomText(random)
                            : QStringLiteral("N%1").arg(random.below(nodes + 1));
}

static void appendNode(Project& project, RandomSource& random, int number)
{
    FileNodeInfo node;
    node.type = random.below(2);
    node.position = {random.below(40000) / 8.0, random.below(40000) / 8.0};
    node.nodeName = random.chance(90) ? QStringLiteral("N%1").arg(number) : randomText(random);
    node.nodeId = randomText(random);
    node.nodeMac = randomText(random);
    node.portNum = randomText(random);
    node.mtu = randomText(random);
    node.bufferNum = randomText(random);
    project.nodes.append(node);
}

static void appendLink(Project& project, RandomSource& random, int nodes)
{
    project.links.append({randomText(random), randomNodeName(random, nodes),
                          randomNodeName(random, nodes), randomText(random), randomText(random),
                          randomText(random)});
}

static void appendVLine(Project& project, RandomSource& random, int nodes)
{
    FileVLineInfo vLine;
    vLine.vLineId = randomText(random);
    for (int paths = random.below(4); paths > 0; --paths) {
        QStringList path;
        for (int hops = random.below(6); hops > 0; --hops)
            path.append(randomNodeName(random, nodes));
        vLine.vLinePaths.append(path);
    }
    project.vLines.append(vLine);
}

static void appendFlow(Project& project, RandomSource& random, int nodes)
{
    FlowInfo flow;
    flow.flowType = random.pick({u("TT"), u("RC"), u("BE"), QString()});
    for (QString* field : {&flow.flowId, &flow.flowPeriod, &flow.flowSize, &flow.vLineId,
                           &flow.sendWindowLow, &flow.sendWindowHigh})
        *field = randomText(random);
    flow.srcNode = randomNodeName(random, nodes);
    for (int listeners = random.below(4); listeners > 0; --listeners)
        flow.dstNodes.append(
            {randomNodeName(random, nodes), randomText(random), randomText(random)});
    project.flows.append(flow);
}

Project randomProject(RandomSource& random)
{
    Project project;
    const int nodes = random.below(12);
    for (int i = 0; i < nodes; ++i)
        appendNode(project, random, i);
    for (int links = random.below(15); links > 0; --links)
        appendLink(project, random, nodes);
    for (int vLines = random.below(5); vLines > 0; --vLines)
        appendVLine(project, random, nodes);
    for (int flows = random.below(5); flows > 0; --flows)
        appendFlow(project, random, nodes);
    return project;
}

QByteArray mutated(QByteArray bytes, RandomSource& random)
{
    for (int changes = random.between(1, 4); changes > 0 && !bytes.isEmpty(); --changes) {
        const int at = random.below(bytes.size());
        const int length = std::min(random.between(1, 8), bytes.size() - at);
        switch (random.below(5)) {
        case 0:
            bytes[at] = static_cast<char>(random.below(256));
            break;
        case 1: // counts and lengths are four bytes, mostly zero
            bytes.replace(at, std::min(4, length),
                          bigEndian(random.pick({0xFFFFFFFFU, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU,
                                                 1U, 2U, 3U, 0x01000000U})));
            break;
        case 2:
            bytes.insert(at, bytes.mid(at, length));
            break;
        case 3:
            bytes.remove(at, length);
            break;
        default:
            bytes[at] = static_cast<char>(bytes.at(at) ^ 1 << random.below(8));
            break;
        }
    }
    return bytes;
}
