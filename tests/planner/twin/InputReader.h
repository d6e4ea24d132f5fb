#pragma once

#include "tests/planner/twin/Records.h"

namespace twin
{

/// Reads every file ResourceXML/vek_input.*; 0, -1 or -2.
qint32 readInputDocument(Context& context);

Path parseDatapath(const Context& context, const QString& text);
quint32 nodeIdOfName(const Context& context, const QString& name);

/// Reads "[start,end]"; what is missing or no number reads as 0.
Window parseSlotWindow(const QString& text);

/// Microseconds to slots of 200 us.
Window windowToSlots(const Window& raw);

} // namespace twin
