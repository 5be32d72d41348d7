// Wm4::IntrLine3Plane3: Wild Magic 5's line-plane intersection query, with GetLineT() for
// Wild Magic 5's GetLineParameter().
//
// Like Wm5::IntrLine3Plane3 it keeps references to the line and the plane it is given: both
// must outlive the query, so never pass temporaries.
//
// Wild Magic 5 leaves its line parameter unset when Find() finds nothing (a line parallel to
// the plane and off it) and before the first Find(); GetLineT() is 0 then, so callers that
// read it without looking at Find()'s answer get a defined value.
#pragma once

#include "Wm4Line3.h"
#include "Wm4Plane3.h"

#include <Wm5IntrLine3Plane3.h>

namespace Wm4 {

template <class Real> class IntrLine3Plane3 : public Wm5::IntrLine3Plane3<Real> {
public:
    IntrLine3Plane3(const Line3<Real>& line, const Plane3<Real>& plane)
        : Wm5::IntrLine3Plane3<Real>(line, plane) {}

    // Deleted so that a temporary line or plane cannot be bound by mistake. They take const
    // rvalue references so that they also catch const temporaries, which a plain && would
    // leave to the const& constructor above.
    IntrLine3Plane3(const Line3<Real>&& line, const Plane3<Real>& plane) = delete;
    IntrLine3Plane3(const Line3<Real>& line, const Plane3<Real>&& plane) = delete;

    bool Find() override {
        const bool found = Wm5::IntrLine3Plane3<Real>::Find();
        lineT = found ? this->GetLineParameter() : Real(0);
        return found;
    }

    // The line parameter of the intersection point found by the last Find(): the point is
    // Origin + t * Direction. 0 when that Find() found nothing, or before any Find().
    Real GetLineT() const { return lineT; }

private:
    Real lineT = Real(0);
};

} // namespace Wm4
