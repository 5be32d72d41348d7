#include "mxBoundingVolume.h"

#include <algorithm>
#include <cmath>

namespace mx {

mxBoundingVolume::mxBoundingVolume() : center(0.0f, 0.0f, 0.0f), radius(0.0f) {}

mxBoundingVolume::mxBoundingVolume(const Wm4::Vector3<float>& center, float radius)
    : center(center), radius(radius) {}

void mxBoundingVolume::growToContain(const mxBoundingVolume& other) {
    const Wm4::Vector3<float> offset = other.center - center;
    const float distance = std::sqrt(offset.Dot(offset));
    if (distance + other.radius <= radius) {
        return; // other already inside
    }
    if (distance + radius <= other.radius) {
        *this = other; // this inside other
        return;
    }
    // The enclosing sphere spans from this sphere's far side to other's far side along the
    // line of centres.
    const float newRadius = 0.5f * (distance + radius + other.radius);
    if (distance > 0.0f) {
        center += offset * ((newRadius - radius) / distance);
    }
    radius = newRadius;
}

void mxBoundingVolume::computeFromPoints(const std::vector<Wm4::Vector3<float>>& points) {
    if (points.empty()) {
        *this = mxBoundingVolume();
        return;
    }
    Wm4::Vector3<float> low = points.front();
    Wm4::Vector3<float> high = points.front();
    for (const Wm4::Vector3<float>& point : points) {
        for (int i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], point[i]);
            high[i] = std::max(high[i], point[i]);
        }
    }
    center = (low + high) * 0.5f;
    float squared = 0.0f;
    for (const Wm4::Vector3<float>& point : points) {
        const Wm4::Vector3<float> offset = point - center;
        squared = std::max(squared, offset.Dot(offset));
    }
    radius = std::sqrt(squared);
}

mxBoundingVolume
mxBoundingVolume::transformedBy(const mxGenericTransformation<float>& transformation) const {
    float stretch = 1.0f;
    if (transformation.IsRSMatrix()) {
        const Wm4::Vector3<float>& scale = transformation.GetScale();
        stretch = std::max({std::fabs(scale.X()), std::fabs(scale.Y()), std::fabs(scale.Z())});
    } else {
        const Wm4::Matrix3<float>& matrix = transformation.GetMatrix();
        float squared = 0.0f;
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                squared += matrix[r][c] * matrix[r][c];
            }
        }
        stretch = std::sqrt(squared);
    }
    return mxBoundingVolume(transformation.ApplyForward(center, true), radius * stretch);
}

bool mxBoundingVolume::contains(const Wm4::Vector3<float>& point, float tolerance) const {
    const Wm4::Vector3<float> offset = point - center;
    return std::sqrt(offset.Dot(offset)) <= radius + tolerance;
}

} // namespace mx
