// A separate shared library whose load-time initialiser copies Wm4::Vector3<float>::UNIT_X:
// it shows that Wild Magic's constants are built before a library that links it runs its
// own load-time code.
#pragma once

#include "wm4/Wm4Vector3.h"

namespace mx {
namespace test {

// The copies made when the probe library was loaded.
const Wm4::Vector3<float>& unitXCopiedAtLoad();
const Wm4::Vector3<float>& unitZCopiedAtLoad();

} // namespace test
} // namespace mx
