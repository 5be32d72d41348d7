// Wm4::Vector2: Wild Magic 5's two-component vector under the name the library uses.
#pragma once

#include <Wm5Vector2.h>

namespace Wm4 {

template <class Real> using Vector2 = Wm5::Vector2<Real>;

} // namespace Wm4
