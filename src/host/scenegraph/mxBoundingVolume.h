// mxBoundingVolume: a bounding sphere, centre and radius, in whatever space its owner says
// (model space for a geometry's model bound, world space for a spatial's world bound).
// A radius of 0 is a point; the default volume is the point at the origin.
#pragma once

#include "mxGenericTransformation.h"

#include "wm4/Wm4Vector3.h"

#include <vector>

namespace mx {

class mxBoundingVolume {
public:
    mxBoundingVolume();
    mxBoundingVolume(const Wm4::Vector3<float>& center, float radius);

    const Wm4::Vector3<float>& getCenter() const { return center; }
    float getRadius() const { return radius; }
    void setCenter(const Wm4::Vector3<float>& newCenter) { center = newCenter; }
    void setRadius(float newRadius) { radius = newRadius; }

    bool operator==(const mxBoundingVolume& other) const {
        return center == other.center && radius == other.radius;
    }
    bool operator!=(const mxBoundingVolume& other) const { return !(*this == other); }

    // Becomes the smallest sphere that contains both this sphere and other.
    void growToContain(const mxBoundingVolume& other);

    // Becomes a sphere around the points: centre of their axis-aligned box, radius to the
    // farthest point. No point gives the point at the origin.
    void computeFromPoints(const std::vector<Wm4::Vector3<float>>& points);

    // The image of this sphere under transformation: its centre mapped, its radius scaled by
    // an upper bound of the transformation's stretch (the largest absolute scale of an RS
    // transformation, the Frobenius norm of a general matrix).
    mxBoundingVolume transformedBy(const mxGenericTransformation<float>& transformation) const;

    // Whether point lies inside the sphere grown by tolerance.
    bool contains(const Wm4::Vector3<float>& point, float tolerance = 0.0f) const;

private:
    Wm4::Vector3<float> center;
    float radius;
};

} // namespace mx
