// Wm4::Vector3: Wild Magic 5's three-component vector under the name the library uses.
// Its constants ZERO, UNIT_X, UNIT_Y, UNIT_Z and ONE live in libWm5Mathematics and are built
// by that library's own load-time initialisers, before any library that links it.
#pragma once

#include <Wm5Vector3.h>

namespace Wm4 {

template <class Real> using Vector3 = Wm5::Vector3<Real>;

} // namespace Wm4
