// mxCamera: the host's viewpoint, a frame in world space and a view frustum, with the
// view-projection matrix the renderer reads each frame and the pick rays the manipulators cast.
//
// Conventions
// - World space is right-handed. The camera frame is the eye location E and three axes:
//   D (direction of view), U (up) and R (right), with R = D x U. The camera looks along +D.
//   Default frame: E = (0, 0, 0), D = (0, 0, -1), U = (0, 1, 0), R = (1, 0, 0).
// - View space: for a world point X, x = R.(X - E), y = U.(X - E), z = D.(X - E). Depth z is
//   measured along D and is positive in front of the eye.
// - The frustum is [rMin, rMax] along R, [uMin, uMax] along U ("left/right", "bottom/top") and
//   [dMin, dMax] along D ("near/far"). For a perspective camera the R and U intervals are the
//   extent of the near plane (at depth dMin); for an orthographic camera they are the extent
//   of the view box at every depth. Default: 90 degrees vertical field of view, aspect 1, near 1,
//   far 1000, perspective.
// - getViewProjectionMatrix() returns 16 floats in column-major order: element m[c*4 + r] is
//   row r, column c (what glLoadMatrixf and glUniformMatrix4fv with transpose false expect).
//   It maps world points as clip = P * V * (X, 1) with OpenGL's clip conventions:
//   after division by w, x, y and z are in [-1, 1] inside the frustum, with x = -1 at rMin,
//   y = -1 at uMin, z = -1 at dMin and z = +1 at dMax. Perspective: w = z (view depth).
//   Orthographic: w = 1.
// - Pick coordinates are normalised view coordinates measured from the LOWER LEFT corner of
//   the view: (0, 0) is the lower left, (1, 1) the upper right, so x runs from rMin to rMax and
//   y from uMin to uMax. A window's pixel (px, py), counted from the top left, is
//   x = (px + 0.5) / width, y = ((height - py) - 0.5) / height.
//   Projection and pick ray come from the same frustum: a point on the pick ray through (x, y)
//   projects back to NDC (2x - 1, 2y - 1).
//
// The frame is stored as given (no normalisation): callers pass an orthonormal right-handed
// frame. A degenerate frame yields a degenerate (but finite for finite input) matrix; nothing
// crashes. The frustum, on the other hand, is always valid: the setFrustum calls refuse values
// that would make the projection singular.
#pragma once

#include "mxObject.h"

#include "wm4/Wm4Vector3.h"

namespace mx {

class mxCamera : public mxObject {
public:
    static const mxRtti TYPE;

    // A camera with the default frame and frustum; perspective unless told otherwise.
    explicit mxCamera(bool perspective = true);
    ~mxCamera() override;

    const mxRtti& GetType() const override;

    // Sets eye location and axes. Expects an orthonormal right-handed frame with
    // rVector = dVector x uVector; the values are stored as given.
    void setFrame(const Wm4::Vector3<float>& location, const Wm4::Vector3<float>& dVector,
                  const Wm4::Vector3<float>& uVector, const Wm4::Vector3<float>& rVector);
    // Moves the eye, keeping the axes.
    void setLocation(const Wm4::Vector3<float>& location);
    // Sets the axes, keeping the eye. Same expectations as setFrame.
    void setAxes(const Wm4::Vector3<float>& dVector, const Wm4::Vector3<float>& uVector,
                 const Wm4::Vector3<float>& rVector);

    // Places the eye at eye looking at target: D = unit(target - eye), R = unit(D x up),
    // U = R x D. up need not be unit length nor perpendicular to D. Returns false and changes
    // nothing when an input is not finite, when target equals eye, or when up is zero or
    // parallel to D (sine of the angle between them below 1e-6).
    bool lookAt(const Wm4::Vector3<float>& eye, const Wm4::Vector3<float>& target,
                const Wm4::Vector3<float>& up);

    const Wm4::Vector3<float>& getLocation() const { return location; }
    const Wm4::Vector3<float>& getDVector() const { return dVector; }
    const Wm4::Vector3<float>& getUVector() const { return uVector; }
    const Wm4::Vector3<float>& getRVector() const { return rVector; }

    // Sets the frustum. Expects finite values with rMin < rMax, uMin < uMax and
    // 0 < dMin < dMax (the near plane in front of the eye, for either projection, so the
    // projection can be switched at any time). Returns false and keeps the current frustum
    // otherwise.
    bool setFrustum(float rMin, float rMax, float uMin, float uMax, float dMin, float dMax);
    // Sets a symmetric frustum like gluPerspective: uMax = dMin * tan(upFovDegrees / 2),
    // uMin = -uMax, rMax = aspect * uMax, rMin = -rMax. Expects 0 < upFovDegrees < 180,
    // aspect > 0 (width / height) and 0 < dMin < dMax, all finite. Returns false and keeps
    // the current frustum otherwise.
    bool setFrustum(float upFovDegrees, float aspect, float dMin, float dMax);

    // Chooses perspective (true) or orthographic (false) projection; the frustum is kept.
    void setPerspective(bool perspective);
    bool isPerspective() const { return perspective; }

    float getDMin() const { return dMin; }
    float getDMax() const { return dMax; }
    float getUMin() const { return uMin; }
    float getUMax() const { return uMax; }
    float getRMin() const { return rMin; }
    float getRMax() const { return rMax; }

    // The 16 floats of P * V in column-major order (see the conventions above). The pointer
    // stays valid for the camera's life; the values follow every change of frame, frustum or
    // projection. Cheap: the matrix is computed when the camera changes, not here.
    const float* getViewProjectionMatrix() const { return viewProjection; }

    // The world-space ray through normalised view coordinates (x, y), measured from the lower
    // left, each in [0, 1]. Perspective: origin = E, direction = unit(dMin D + r R + u U) with
    // r = rMin + x (rMax - rMin), u = uMin + y (uMax - uMin). Orthographic: origin =
    // E + r R + u U, direction = unit(D). Returns false and leaves origin and direction
    // untouched when x or y is outside [0, 1] or NaN, or when the frame is so degenerate that
    // no finite unit direction exists.
    bool getPickRay(float x, float y, Wm4::Vector3<float>& origin,
                    Wm4::Vector3<float>& direction) const;

private:
    void updateViewProjection();

    Wm4::Vector3<float> location;
    Wm4::Vector3<float> dVector;
    Wm4::Vector3<float> uVector;
    Wm4::Vector3<float> rVector;
    float rMin;
    float rMax;
    float uMin;
    float uMax;
    float dMin;
    float dMax;
    bool perspective;
    float viewProjection[16];
};

} // namespace mx
