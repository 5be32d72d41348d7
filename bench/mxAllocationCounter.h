// A count of the heap allocations made through the global operator new. Linking
// mxAllocationCounter.cpp into a program replaces the global allocation functions with ones
// that count each call and then allocate with malloc; everything else about them is unchanged.
#pragma once

#include <cstddef>

namespace mx::bench {

// The allocations made since the program started.
std::size_t allocationCount();

} // namespace mx::bench
