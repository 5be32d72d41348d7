// Wm4::Plane3: Wild Magic 5's plane, the points X with Dot(Normal, X) = Constant.
#pragma once

#include "Wm4Vector3.h"

#include <Wm5Plane3.h>

namespace Wm4 {

template <class Real> using Plane3 = Wm5::Plane3<Real>;

} // namespace Wm4
