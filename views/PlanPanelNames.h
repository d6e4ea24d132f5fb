#pragma once

#include <QString>

/// Names of the widgets of the plan panel, by which they are found in its dock each time.
namespace planPanel
{

inline QString nodes()
{
    return QStringLiteral("nodeInfoWidget");
}
inline QString tableType()
{
    return QStringLiteral("comboboxFlowTableType");
}
inline QString cycleLabel()
{
    return QStringLiteral("schedCycleLabel");
}
inline QString slotLengthLabel()
{
    return QStringLiteral("slotLenLabel");
}
inline QString pages()
{
    return QStringLiteral("stackedWidget");
}

/// The two variants of what follows.
inline QString send()
{
    return QStringLiteral("send");
}
inline QString receive()
{
    return QStringLiteral("rcv");
}

inline QString grid(const QString& variant)
{
    return QStringLiteral("timeSlotInfo_") + variant;
}
inline QString flowList(const QString& variant)
{
    return QStringLiteral("flowListWindow_") + variant;
}

} // namespace planPanel
