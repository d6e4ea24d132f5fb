#pragma once

#include "planner/search/SlotWindow.h"

#include <QStringList>

#include <string>

// Windows as texts of documents: "[start,end]".
namespace planner
{

/// A window as a text has it, in the unit of the text: microseconds in the input document, slots in
/// the intermediate one.
struct RawWindow {
    qint32 end = 0;
    qint32 start = 0;
};

inline bool operator==(const RawWindow& a, const RawWindow& b)
{
    return a.end == b.end && a.start == b.start;
}

/// Reads the text [start,end]; what is missing or no number reads as 0.
RawWindow parseSlotWindow(const QString& text);

/// The first two texts between the brackets, which "," parts; only one without it.
QStringList windowBounds(const QString& text);

/// Reads a text in just the form that windowText() writes; false for any other one.
bool readWrittenWindow(const char* text, SlotWindow& window);

/// Converts a window of microseconds to the slots it covers; a last slot counts from 30 us on.
SlotWindow windowToSlots(const RawWindow& microseconds);

/// Takes a window that was written in slots as it stands.
SlotWindow windowInSlots(const RawWindow& written);

/// The window as "[start,end]" in slots.
std::string windowText(const SlotWindow& window);

} // namespace planner
