#pragma once

#include <cstddef>

/// The most memory that this process has held so far, in KiB.
std::size_t PeakMemoryKib();
