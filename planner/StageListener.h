#pragma once

#include <functional>

namespace planner
{

/// The parts of the two stages, in their order; those of a pass come again and again.
enum class StagePart {
    ReadInput,
    Windows,
    Expand,
    LogInstances,
    WriteWindows,
    ReadWindows,
    Group,
    Degrees,
    Resolve,
    Revise,
    Watch,
    GiveBack,
    Finalise,
    WriteSchedule
};

/// Is told each time a part has ended. It must not touch the records of the stage.
using StageListener = std::function<void(StagePart)>;

inline void tell(const StageListener& listener, StagePart part)
{
    if (listener)
        listener(part);
}

} // namespace planner
