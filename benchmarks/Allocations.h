#pragma once

#include <cstddef>

/// How many allocations the process has made: benchmarks report the difference.
std::size_t allocationCount();
