// Wm4::Math: Wild Magic 5's scalar helpers and constants. Everything is inherited from
// Wm5::Math; the one name that differs, WM4_PI, refers to Wm5::Math<Real>::PI itself (a
// reference, so there is one constant and no copy to initialise at load time).
#pragma once

#include <Wm5Math.h>

namespace Wm4 {

template <class Real> class Math : public Wm5::Math<Real> {
public:
    // pi in Real precision; the same object as Wm5::Math<Real>::PI.
    static constexpr const Real& WM4_PI = Wm5::Math<Real>::PI;
};

} // namespace Wm4
