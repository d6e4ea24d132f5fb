#pragma once

#include "planner/search/SlotWindow.h"

#include <QtTest>

#include <memory>
#include <vector>

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

inline char* toString(const std::vector<SlotWindow>& windows)
{
    QByteArray text;
    for (const SlotWindow& each : windows) {
        const std::unique_ptr<char[]> window(toString(each));
        text += window.get();
    }
    return qstrdup(text.constData());
}

} // namespace planner
