// The screen-space arithmetic on which the drag controllers' hovering and picking rest.
// Picking happens in pixels: the controllers multiply the normalised mouse position by the
// viewport size and compare it with gizmo points projected by projectToScreen. Pixel y grows
// upwards, like normalised-device y: the mouse position compared with a projection must be
// measured from the lower left of the view too.
//
// Internal to the library: the header is not installed and the functions are not exported.
#pragma once

#include "frame/mxLibraryStatics.h"
#include "scenegraph/mxGenericTransformation.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include <vector>

namespace mx {
namespace impl {

#pragma GCC visibility push(hidden)

// out = the pixel position of localPoint, a point in the gizmo's frame: carried into world
// space by gizmoWorld, then through viewProjection (16 floats, column-major: m[c*4 + r] is
// row r, column c, as mxCamera::getViewProjectionMatrix gives them) into a width x height
// view, origin at the lower left. No clipping: a point behind the eye gives whatever the
// perspective division gives.
void projectToScreen(const float* viewProjection, const mxGenericTransformation<float>& gizmoWorld,
                     const Wm4::Vector3<float>& localPoint, Wm4::Vector2<float>& out, int width,
                     int height);

// The same for a point already in world space.
void projectWorldToScreen(const float* viewProjection, const Wm4::Vector3<float>& worldPoint,
                          Wm4::Vector2<float>& out, int width, int height);

// The smallest distance from point to a segment of the polyline, or -1 for a polyline of
// fewer than two points.
float distanceToPolyline(const std::vector<Wm4::Vector2<float>>& polyline,
                         const Wm4::Vector2<float>& point);

// Normalises v in place and returns the length it had. A zero vector, or one whose
// reciprocal length is not finite, becomes (0, 0, 0) and gives 0; any other vector, however
// short, is normalised.
float normalizeVector(Wm4::Vector3<float>& v);

// out = the foot of the perpendicular from p to the line through a and b; returns the
// distance from p to that line. For a = b (within Wm4's zero tolerance) out is a.
float closestPointOnLine(const Wm4::Vector2<float>& a, const Wm4::Vector2<float>& b,
                         const Wm4::Vector2<float>& p, Wm4::Vector2<float>& out);

// The distance from p to the segment [a, b], as one segment of distanceToPolyline.
float distanceToSegment(const Wm4::Vector2<float>& a, const Wm4::Vector2<float>& b,
                        const Wm4::Vector2<float>& p);

// Whether the line origin + t * direction meets the plane through point with the given normal
// (Wild Magic's line-plane query, plane constant normal . point). When it does, t is the line
// parameter of the meeting point, 0 for a line lying in the plane; otherwise t is left alone.
// A zero normal makes no plane, so nothing meets it (the query would take every line for one
// lying in it).
bool intersectLineAndPlane(const Wm4::Vector3<float>& origin, const Wm4::Vector3<float>& direction,
                           const Wm4::Vector3<float>& normal, const Wm4::Vector3<float>& point,
                           float& t);

// Whether a normalised mouse position lies in the view: both coordinates in [0, 1], the
// bounds included. NaN is outside.
bool isInsideView(const Wm4::Vector2<float>& mouse);

#pragma GCC visibility pop

} // namespace impl
} // namespace mx
