// mxMesh: triangle geometry with per-vertex normals, drawn shaded in its colour. Triangles
// are index triples; the front face winds counter-clockwise.
#pragma once

#include "mxBaseGeometry.h"

namespace mx {

class mxMesh : public mxBaseGeometry {
public:
    static const mxRtti TYPE;

    // vertexCount vertices at the origin and triangleCount triangles (0, 0, 0).
    mxMesh(unsigned int vertexCount, unsigned int triangleCount);
    ~mxMesh() override;
    const mxRtti& GetType() const override;

    unsigned int getTriangleCount() const { return getIndexCount() / 3u; }
    // Sets triangle index to the vertices a, b, c; out of range does nothing.
    void setTriangle(unsigned int index, unsigned int a, unsigned int b, unsigned int c);

    // Area-weighted average of the adjacent triangles' normals, unit length ((0, 0, 0) for
    // a vertex in no proper triangle).
    void UpdateModelNormals() override;
    const std::vector<Wm4::Vector3<float>>& getNormals() const { return normals; }

    // The nearest hit of the world-space ray origin + t * direction (t >= 0) with the mesh's
    // triangles in their world placement; false when the ray misses.
    bool intersectRay(const Wm4::Vector3<float>& origin, const Wm4::Vector3<float>& direction,
                      float& t) const;

protected:
    mxGeometry::Primitive getPrimitive() const override;

private:
    std::vector<Wm4::Vector3<float>> normals;
};

} // namespace mx
