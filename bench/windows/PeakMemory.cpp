#include "bench/PeakMemory.h"

#include <stdexcept>

#include <windows.h>

#include <psapi.h>

std::size_t PeakMemoryKib() {
    PROCESS_MEMORY_COUNTERS counters{};
    if (!K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters)) {
        throw std::runtime_error("the system does not tell the peak memory");
    }
    return counters.PeakWorkingSetSize / 1024;
}
