#pragma once

#include <functional>

/// Whether this system lets a process trace its children, without which none can be killed at a
/// call.
bool canTraceChildren();

/// Runs work in a child process and kills it at its n-th system call, counted from 0.
///
/// True when the child was killed, false when it had ended by itself before.
bool killAtSystemCall(int n, const std::function<void()>& work);
