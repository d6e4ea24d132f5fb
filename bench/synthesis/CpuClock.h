#pragma once

/// Time that this process has used on a processor, in milliseconds.
double cpuTime_ms();
