#include "tests/support/ChildWork.h"

#include <sys/wait.h>
#include <unistd.h>

int inChild(const std::function<int()>& work, unsigned seconds)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(seconds);
        _exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : endedBySignal;
}
