#pragma once

#include "verification/Schedule.h"

namespace verification
{

/// Reads the text of an element "Instance" in just the order in which it is written, without a
/// tree.
///
/// A tree of each instance is most of what reading a plan costs.
class InstanceText
{
public:
    /// text ends with a null character, behind the instance, and must outlive this.
    explicit InstanceText(const char* text) : m_place(text) {}

    /// Appends the transmission; false, and nothing is appended, for any other form, whether or not
    /// it is damaged.
    bool appendTo(Schedule& schedule);

private:
    bool readInstance(Schedule& schedule);
    bool readHop(ScheduledHop& hop);
    bool readListener(ScheduledListener& listener);
    template <typename ReadOne>
    bool readList(const char* name, ReadOne readOne);
    bool skipTag(const char* begin, const char* name, const char* end);
    bool open(const char* name);
    bool close(const char* name);
    bool isEmpty(const char* name);
    /// Into value, which is 0 before.
    bool number(const char* name, qint64& value);
    bool number(const char* name, int& value);

    const char* m_place;
};

} // namespace verification
