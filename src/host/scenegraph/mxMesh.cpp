#include "mxMesh.h"

#include <cmath>
#include <limits>

namespace mx {

const mxRtti mxMesh::TYPE("mxCore.mxMesh", &mxBaseGeometry::TYPE);

mxMesh::mxMesh(unsigned int vertexCount, unsigned int triangleCount)
    : mxBaseGeometry(vertexCount, triangleCount * 3u),
      normals(vertexCount, Wm4::Vector3<float>(0.0f, 0.0f, 0.0f)) {}

mxMesh::~mxMesh() = default;

const mxRtti& mxMesh::GetType() const { return TYPE; }

void mxMesh::setTriangle(unsigned int index, unsigned int a, unsigned int b, unsigned int c) {
    if (index >= getTriangleCount()) {
        return;
    }
    setIndex(3u * index, a);
    setIndex(3u * index + 1u, b);
    setIndex(3u * index + 2u, c);
}

void mxMesh::UpdateModelNormals() {
    const std::vector<Wm4::Vector3<float>>& vertices = getVertices();
    const std::vector<unsigned int>& indices = getIndices();
    normals.assign(vertices.size(), Wm4::Vector3<float>(0.0f, 0.0f, 0.0f));
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const unsigned int a = indices[i], b = indices[i + 1], c = indices[i + 2];
        if (a >= vertices.size() || b >= vertices.size() || c >= vertices.size()) {
            continue;
        }
        // The cross product's length is twice the area: larger triangles weigh more.
        const Wm4::Vector3<float> n = (vertices[b] - vertices[a]).Cross(vertices[c] - vertices[a]);
        normals[a] += n;
        normals[b] += n;
        normals[c] += n;
    }
    for (Wm4::Vector3<float>& n : normals) {
        const float length = std::sqrt(n.Dot(n));
        n = length > 0.0f ? n / length : Wm4::Vector3<float>(0.0f, 0.0f, 0.0f);
    }
}

bool mxMesh::intersectRay(const Wm4::Vector3<float>& origin,
                          const Wm4::Vector3<float>& direction, float& t) const {
    const mxGenericTransformation<float>& world = getWorldTransform();
    const std::vector<Wm4::Vector3<float>>& vertices = getVertices();
    const std::vector<unsigned int>& indices = getIndices();
    float nearest = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        if (indices[i] >= vertices.size() || indices[i + 1] >= vertices.size() ||
            indices[i + 2] >= vertices.size()) {
            continue;
        }
        const Wm4::Vector3<float> p0 = world.ApplyForward(vertices[indices[i]], true);
        const Wm4::Vector3<float> p1 = world.ApplyForward(vertices[indices[i + 1]], true);
        const Wm4::Vector3<float> p2 = world.ApplyForward(vertices[indices[i + 2]], true);
        // Moller-Trumbore, both faces.
        const Wm4::Vector3<float> edge1 = p1 - p0;
        const Wm4::Vector3<float> edge2 = p2 - p0;
        const Wm4::Vector3<float> p = direction.Cross(edge2);
        const float determinant = edge1.Dot(p);
        if (std::fabs(determinant) < 1e-12f) {
            continue;
        }
        const float inverse = 1.0f / determinant;
        const Wm4::Vector3<float> s = origin - p0;
        const float u = s.Dot(p) * inverse;
        if (u < 0.0f || u > 1.0f) {
            continue;
        }
        const Wm4::Vector3<float> q = s.Cross(edge1);
        const float v = direction.Dot(q) * inverse;
        if (v < 0.0f || u + v > 1.0f) {
            continue;
        }
        const float hit = edge2.Dot(q) * inverse;
        if (hit >= 0.0f && hit < nearest) {
            nearest = hit;
        }
    }
    if (!(nearest < std::numeric_limits<float>::infinity())) {
        return false;
    }
    t = nearest;
    return true;
}

mxGeometry::Primitive mxMesh::getPrimitive() const { return mxGeometry::PRIMITIVE_TRIANGLES; }

} // namespace mx
