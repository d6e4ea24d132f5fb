#pragma once

#include <QString>

/// Name of one slot entry of a flow on a port, such as "流id 10-0"; entries count from 0 in the
/// order of their slots.
inline QString flowCaption(int flowID, int entry)
{
    return QStringLiteral(u"流id %1-%2").arg(flowID).arg(entry);
}
