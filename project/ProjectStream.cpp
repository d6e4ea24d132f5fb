#include "project/ProjectStream.h"

#include <QIODevice>

static_assert(QDataStream::Qt_DefaultCompiledVersion >= QDataStream::Qt_5_13,
              "strings, points and doubles have the form of Qt 5.14");

StreamStatusKeeper::StreamStatusKeeper(QDataStream& stream) : m_stream(stream)
{
    if (stream.device()->isTransactionStarted())
        return;
    m_before = stream.status();
    stream.resetStatus();
}

StreamStatusKeeper::~StreamStatusKeeper()
{
    if (m_before == QDataStream::Ok)
        return;
    m_stream.resetStatus();
    m_stream.setStatus(m_before);
}

// The rest is passed over, so that what follows a false count runs dry too, as it would have done
// after reading that many records.
int readCount(QDataStream& stream, qint64 smallestRecord)
{
    qint32 count = 0;
    stream >> count;
    if (count >= 0 && count <= stream.device()->bytesAvailable() / smallestRecord)
        return count;
    stream.device()->seek(stream.device()->size());
    stream.setStatus(QDataStream::ReadPastEnd);
    return 0;
}

// ---- Texts, and the paths of virtual links

void writeRecord(QDataStream& stream, const QString& text)
{
    stream << text;
}

void readRecord(QDataStream& stream, QString& text)
{
    stream >> text;
}

void writeRecord(QDataStream& stream, const QStringList& path)
{
    writeList<QString>(stream, path);
}

void readRecord(QDataStream& stream, QStringList& path)
{
    readList<QString>(stream, path);
}

// ---- Links

void writeRecord(QDataStream& stream, const FileArrowInfo& link)
{
    stream << link.lineName << link.srcNode << link.dstNode << link.srcPort << link.dstPort
           << link.bandWidth;
}

void readRecord(QDataStream& stream, FileArrowInfo& link)
{
    stream >> link.lineName >> link.srcNode >> link.dstNode >> link.srcPort >> link.dstPort >>
        link.bandWidth;
}

// ---- Nodes

void writeRecord(QDataStream& stream, const FileNodeInfo& node)
{
    stream << node.type << node.position << node.nodeName << node.nodeId << node.nodeMac
           << node.portNum << node.mtu << node.bufferNum;
}

void readRecord(QDataStream& stream, FileNodeInfo& node)
{
    stream >> node.type >> node.position >> node.nodeName >> node.nodeId >> node.nodeMac >>
        node.portNum >> node.mtu >> node.bufferNum;
}

// ---- Virtual links

void writeRecord(QDataStream& stream, const FileVLineInfo& vLine)
{
    stream << vLine.vLineId;
    writeList(stream, vLine.vLinePaths);
}

void readRecord(QDataStream& stream, FileVLineInfo& vLine)
{
    stream >> vLine.vLineId;
    readList(stream, vLine.vLinePaths);
}

// ---- Flows

void writeRecord(QDataStream& stream, const DstNodeInfo& listener)
{
    stream << listener.dstNodeName << listener.rcvWindowLow << listener.rcvWindowHigh;
}

void readRecord(QDataStream& stream, DstNodeInfo& listener)
{
    stream >> listener.dstNodeName >> listener.rcvWindowLow >> listener.rcvWindowHigh;
}

void writeRecord(QDataStream& stream, const FlowInfo& flow)
{
    stream << flow.flowType << flow.flowId << flow.flowPeriod << flow.flowSize << flow.vLineId
           << flow.srcNode << flow.sendWindowLow << flow.sendWindowHigh;
    writeList(stream, flow.dstNodes);
}

void readRecord(QDataStream& stream, FlowInfo& flow)
{
    stream >> flow.flowType >> flow.flowId >> flow.flowPeriod >> flow.flowSize >> flow.vLineId >>
        flow.srcNode >> flow.sendWindowLow >> flow.sendWindowHigh;
    readList(stream, flow.dstNodes);
}
