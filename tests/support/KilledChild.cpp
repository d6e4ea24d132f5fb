#include "tests/support/KilledChild.h"

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

bool canTraceChildren()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 ? 0 : 1);
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Nothing of the test program runs in the child but the work: no exit handlers, no other thread.
[[noreturn]] static void runTraced(const std::function<void()>& work)
{
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    work();
    _exit(0);
}

/// Lets the stopped child go on to its next system call; false when it has ended.
static bool goOn(pid_t child)
{
    int status = 0;
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    return waitpid(child, &status, 0) == child && WIFSTOPPED(status);
}

bool killAtSystemCall(int n, const std::function<void()>& work)
{
    const pid_t child = fork();
    if (child == 0)
        runTraced(work);
    int status = 0;
    waitpid(child, &status, 0);
    for (int call = 0; call <= n; ++call) {
        if (!goOn(child)) // into the call
            return false;
        if (call < n && !goOn(child)) // and out of it
            return false;
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return true;
}
