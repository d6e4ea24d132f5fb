#pragma once

#include <functional>

// Work that may never end, or that changes what cannot be changed back, in a process of its own.

/// What inChild() returns for a process that a signal ended, such as one out of time.
constexpr int endedBySignal = -1;

/// Runs work in a child of this process for so many seconds at most; its result, 0 to 255.
///
/// What the work changes in memory is seen by the child alone. Meant for a process with one thread.
int inChild(const std::function<int()>& work, unsigned seconds = 60);
