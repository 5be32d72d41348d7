// Wm4::Line3: Wild Magic 5's line, Origin + t * Direction.
#pragma once

#include "Wm4Vector3.h"

#include <Wm5Line3.h>

namespace Wm4 {

template <class Real> using Line3 = Wm5::Line3<Real>;

} // namespace Wm4
