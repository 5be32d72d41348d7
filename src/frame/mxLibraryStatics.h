// The library's load-time objects shared between its sources. They are defined together in
// mxLibraryStatics.cpp so that they are built in a fixed order when the library is loaded.
#pragma once

#include "system/LibInitCounter.h"
#include "wm4/Wm4Vector3.h"

namespace mx {
namespace impl {

// Counts nested initialize/terminate pairs ("3dmanip").
extern LibInitCounter msLibraryInitCounter;

// The unit axes X, Y, Z, indexed by axis 0, 1, 2.
extern const Wm4::Vector3<float> csUnitAxes[3];

} // namespace impl
} // namespace mx
