#include "planner/WindowText.h"

#include "planner/PlanningModel.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace planner
{

/// A last slot that is only partly inside a window counts from this many microseconds on.
static constexpr qint32 smallestLastSlot_us = 30;

RawWindow parseSlotWindow(const QString& text)
{
    const QStringList bounds = windowBounds(text);
    RawWindow window;
    window.start = bounds.value(0).toInt(nullptr, 10);
    window.end = bounds.value(1).toInt(nullptr, 10);
    return window;
}

/// Up to the first character of this kind; all of it without one.
static QStringRef upTo(const QStringRef& text, char end)
{
    return text.left(text.indexOf(QLatin1Char(end)));
}

// Cut and not split: a text of millions of commas would fall into as many texts.
QStringList windowBounds(const QString& text)
{
    const int bracket = text.indexOf(QLatin1Char('['));
    if (bracket < 0)
        return {QString()};
    const QStringRef inside = upTo(upTo(text.midRef(bracket + 1), '['), ']');
    const QStringRef first = upTo(inside, ',');
    QStringList bounds{first.toString()};
    if (first.size() < inside.size())
        bounds.append(upTo(inside.mid(first.size() + 1), ',').toString());
    return bounds;
}

bool readWrittenWindow(const char* text, SlotWindow& window)
{
    const char* const end = text + std::strlen(text);
    if (*text != '[')
        return false;
    const std::from_chars_result start = std::from_chars(text + 1, end, window.start);
    if (start.ec != std::errc() || *start.ptr != ',')
        return false;
    const std::from_chars_result last = std::from_chars(start.ptr + 1, end, window.end);
    return last.ec == std::errc() && last.ptr + 1 == end && *last.ptr == ']';
}

SlotWindow windowToSlots(const RawWindow& microseconds)
{
    const double slotLength = slotLength_us;
    const qint32 remainder = microseconds.end % slotLength_us;
    SlotWindow window;
    window.start = static_cast<qint32>(std::ceil(microseconds.start / slotLength));
    if (remainder == 0)
        window.end = microseconds.end / slotLength_us - 1;
    else if (remainder >= smallestLastSlot_us)
        window.end = static_cast<qint32>(std::ceil(microseconds.end / slotLength)) - 1;
    else
        window.end = static_cast<qint32>(std::floor(microseconds.end / slotLength)) - 1;
    return window;
}

SlotWindow windowInSlots(const RawWindow& written)
{
    return {written.end, written.start};
}

std::string windowText(const SlotWindow& window)
{
    return '[' + std::to_string(window.start) + ',' + std::to_string(window.end) + ']';
}

} // namespace planner
