#include "mxPickingHelpers.h"

#include "wm4/Wm4IntrLine3Plane3.h"
#include "wm4/Wm4Line3.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Plane3.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace mx {
namespace impl {

namespace {

// e / |e|, or (0, 0) for a segment too short to have a direction.
Wm4::Vector2<float> unitOrZero(const Wm4::Vector2<float>& e) {
    const float length = e.Length();
    if (length > Wm4::Math<float>::ZERO_TOLERANCE) {
        return e / length;
    }
    return Wm4::Vector2<float>(0.0f, 0.0f);
}

// The squared distance from p to the segment [a, b]. A dot product of exactly 0 counts as
// lying off the segment, so a point on the perpendicular through an end measures to that end,
// and a degenerate segment (a = b) measures to a without dividing.
float squaredDistanceToSegment(const Wm4::Vector2<float>& a, const Wm4::Vector2<float>& b,
                               const Wm4::Vector2<float>& p) {
    const Wm4::Vector2<float> d = p - a;
    const Wm4::Vector2<float> e = b - a;
    if (d.Dot(e) <= 0.0f) {
        return d.SquaredLength(); // before a
    }
    if ((b - p).Dot(e) <= 0.0f) {
        return (p - b).SquaredLength(); // beyond b
    }
    const Wm4::Vector2<float> u = unitOrZero(e);
    const Wm4::Vector2<float> foot = a + d.Dot(u) * u;
    return (p - foot).SquaredLength();
}

} // namespace

void projectToScreen(const float* viewProjection, const mxGenericTransformation<float>& gizmoWorld,
                     const Wm4::Vector3<float>& localPoint, Wm4::Vector2<float>& out, int width,
                     int height) {
    projectWorldToScreen(viewProjection, gizmoWorld.ApplyForward(localPoint, true), out, width,
                         height);
}

void projectWorldToScreen(const float* viewProjection, const Wm4::Vector3<float>& w,
                          Wm4::Vector2<float>& out, int width, int height) {
    const float* m = viewProjection;
    // Clip x, y and w; z is not needed.
    const float cx = m[0] * w.X() + m[4] * w.Y() + m[8] * w.Z() + m[12];
    const float cy = m[1] * w.X() + m[5] * w.Y() + m[9] * w.Z() + m[13];
    const float cw = m[3] * w.X() + m[7] * w.Y() + m[11] * w.Z() + m[15];
    // Normalised device coordinates [-1, 1] to pixels [0, size], y not flipped.
    out.X() = static_cast<float>((cx / cw + 1.0) * 0.5 * static_cast<float>(width));
    out.Y() = static_cast<float>((cy / cw + 1.0) * 0.5 * static_cast<float>(height));
}

float distanceToPolyline(const std::vector<Wm4::Vector2<float>>& polyline,
                         const Wm4::Vector2<float>& point) {
    if (polyline.size() < 2) {
        return -1.0f;
    }
    float best = -1.0f;
    for (std::size_t i = 0; i + 1 < polyline.size(); ++i) {
        const float dist = std::sqrt(squaredDistanceToSegment(polyline[i], polyline[i + 1], point));
        best = best == -1.0f ? dist : std::min(best, dist);
    }
    return best;
}

float normalizeVector(Wm4::Vector3<float>& v) {
    const float length = std::sqrt(v.X() * v.X() + v.Y() * v.Y() + v.Z() * v.Z());
    if (length == 0.0f) {
        v = Wm4::Vector3<float>(0.0f, 0.0f, 0.0f);
        return 0.0f;
    }
    // Only an exact zero or an infinite reciprocal gives the zero vector: a very short vector
    // is still normalised.
    const float reciprocal = 1.0f / length;
    if (!(static_cast<double>(reciprocal) <= std::numeric_limits<double>::max())) {
        v = Wm4::Vector3<float>(0.0f, 0.0f, 0.0f);
        return 0.0f;
    }
    v.X() *= reciprocal;
    v.Y() *= reciprocal;
    v.Z() *= reciprocal;
    return length;
}

float closestPointOnLine(const Wm4::Vector2<float>& a, const Wm4::Vector2<float>& b,
                         const Wm4::Vector2<float>& p, Wm4::Vector2<float>& out) {
    const Wm4::Vector2<float> u = unitOrZero(b - a);
    const float t = (p - a).Dot(u);
    out = a + t * u;
    return (p - out).Length();
}

float distanceToSegment(const Wm4::Vector2<float>& a, const Wm4::Vector2<float>& b,
                        const Wm4::Vector2<float>& p) {
    return std::sqrt(squaredDistanceToSegment(a, b, p));
}

bool intersectLineAndPlane(const Wm4::Vector3<float>& origin, const Wm4::Vector3<float>& direction,
                           const Wm4::Vector3<float>& normal, const Wm4::Vector3<float>& point,
                           float& t) {
    if (normal == Wm4::Vector3<float>::ZERO) {
        return false;
    }
    const Wm4::Line3<float> line(origin, direction);
    const Wm4::Plane3<float> plane(normal, normal.Dot(point));
    Wm4::IntrLine3Plane3<float> query(line, plane);
    if (!query.Find()) {
        return false;
    }
    t = query.GetLineT();
    return true;
}

bool isInsideView(const Wm4::Vector2<float>& mouse) {
    // The comparisons are false for NaN.
    return mouse.X() >= 0.0f && mouse.X() <= 1.0f && mouse.Y() >= 0.0f && mouse.Y() <= 1.0f;
}

} // namespace impl
} // namespace mx
