#include "bench/synthesis/CpuClock.h"

#include <ctime>

double cpuTime_ms()
{
    return 1000.0 * double(std::clock()) / CLOCKS_PER_SEC;
}
