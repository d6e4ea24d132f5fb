#include "tests/app/PlanPair.h"

InputText lineInput(const QList<int>& flowIDs)
{
    InputText input = lineNetwork(2, 4);
    for (const int flowID : flowIDs)
        input.flow(flowID, QStringLiteral("2000"), 1, QStringLiteral("A"),
                   QStringLiteral("[0,2000]"), {{QStringLiteral("B"), QStringLiteral("[0,2000]")}});
    return input;
}

static QString switchElement(int nodeID, int received, int sent)
{
    return QStringLiteral("<bridge><nodeID>%1</nodeID><inport>1</inport><rxslotID>%2</rxslotID>"
                          "<outport>2</outport><txslotID>%3</txslotID></bridge>")
        .arg(nodeID)
        .arg(received)
        .arg(sent);
}

static QString instanceElement(const LineTransmission& sent)
{
    return QStringLiteral("<Instance><flowID>%1</flowID><seq>%2</seq><path_slot>"
                          "<talker><nodeID>1</nodeID><outport>1</outport><txslotID>%3</txslotID>"
                          "</talker><bridges>%4%5</bridges><listeners><listener><nodeID>2</nodeID>"
                          "<inport>1</inport><rxslotID>%6</rxslotID></listener></listeners>"
                          "</path_slot></Instance>")
        .arg(QString::number(sent.flowID), QString::number(sent.seq), QString::number(sent.fromA),
             switchElement(11, sent.fromA, sent.fromS1),
             switchElement(12, sent.fromS1, sent.fromS2), QString::number(sent.fromS2));
}

QByteArray lineSchedule(const QList<LineTransmission>& transmissions)
{
    QString flows;
    for (const LineTransmission& transmission : transmissions)
        flows += QStringLiteral("<flow>%1</flow>").arg(instanceElement(transmission));
    return QStringLiteral("<vek_output><schedCycle>2000</schedCycle><slotLen>200</slotLen>"
                          "<flows>%1</flows></vek_output>")
        .arg(flows)
        .toUtf8();
}

QList<LineTransmission> soundTransmissions()
{
    return {{10, 0, 0, 1, 2}, {25, 0, 3, 4, 5}};
}

QList<LineTransmission> clashingTransmissions()
{
    return {{10, 0, 0, 1, 5}, {25, 0, 3, 4, 5}};
}
