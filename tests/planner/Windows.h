#pragma once

#include "planner/search/SlotWindow.h"

#include <QtTest>

// Windows in tests: written as in documents, start first, and told by a comparison that fails.

inline planner::SlotWindow window(qint32 start, qint32 end)
{
    return {end, start};
}

namespace planner
{

inline char* toString(const SlotWindow& window)
{
    const QByteArray text =
        '[' + QByteArray::number(window.start) + ',' + QByteArray::number(window.end) + ']';
    return qstrdup(text.constData());
}

} // namespace planner
