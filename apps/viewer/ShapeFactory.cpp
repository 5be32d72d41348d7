#include "ShapeFactory.h"

#include <cmath>
#include <vector>

namespace viewer {

using Vector3 = Wm4::Vector3<float>;

namespace {

constexpr float csTwoPi = 6.28318530717958647692f;
constexpr float csPi = 3.14159265358979323846f;

// Collects vertices and triangles, then makes the mesh in one go.
struct MeshBuilder {
    std::vector<Vector3> vertices;
    std::vector<unsigned int> triangles;

    unsigned int add(float x, float y, float z) {
        vertices.emplace_back(x, y, z);
        return static_cast<unsigned int>(vertices.size() - 1);
    }
    // Counter-clockwise seen from the front.
    void triangle(unsigned int a, unsigned int b, unsigned int c) {
        triangles.insert(triangles.end(), {a, b, c});
    }
    void quad(unsigned int a, unsigned int b, unsigned int c, unsigned int d) {
        triangle(a, b, c);
        triangle(a, c, d);
    }
    mx::mxPointer<mx::mxMesh> make() const {
        const unsigned int triangleCount = static_cast<unsigned int>(triangles.size() / 3);
        mx::mxPointer<mx::mxMesh> mesh(
            new mx::mxMesh(static_cast<unsigned int>(vertices.size()), triangleCount));
        for (unsigned int i = 0; i < vertices.size(); ++i) {
            mesh->setVertexPosition(i, vertices[i]);
        }
        for (unsigned int t = 0; t < triangleCount; ++t) {
            mesh->setTriangle(t, triangles[3 * t], triangles[3 * t + 1], triangles[3 * t + 2]);
        }
        mesh->UpdateMS(true, true, 0);
        return mesh;
    }
};

// A ring of slices points of radius at height y, around y; returns the first index.
unsigned int ring(MeshBuilder& builder, float radius, float y, int slices) {
    const unsigned int first = static_cast<unsigned int>(builder.vertices.size());
    for (int i = 0; i < slices; ++i) {
        const float a = csTwoPi * static_cast<float>(i) / static_cast<float>(slices);
        builder.add(radius * std::cos(a), y, -radius * std::sin(a));
    }
    return first;
}

// A disc closing a ring: facing up (+y) or down.
void cap(MeshBuilder& builder, unsigned int ringStart, int slices, float y, bool up) {
    const unsigned int centre = builder.add(0.0f, y, 0.0f);
    for (int i = 0; i < slices; ++i) {
        const unsigned int a = ringStart + static_cast<unsigned int>(i);
        const unsigned int b = ringStart + static_cast<unsigned int>((i + 1) % slices);
        if (up) {
            builder.triangle(centre, a, b);
        } else {
            builder.triangle(centre, b, a);
        }
    }
}

} // namespace

mx::mxPointer<mx::mxMesh> ShapeFactory::box(float width, float height, float depth) {
    const float x = width / 2.0f;
    const float y = height / 2.0f;
    const float z = depth / 2.0f;
    MeshBuilder builder;
    // Each face has its own four corners, so flat shading stays per face.
    auto face = [&builder](Vector3 a, Vector3 b, Vector3 c, Vector3 d) {
        const unsigned int i = builder.add(a.X(), a.Y(), a.Z());
        builder.add(b.X(), b.Y(), b.Z());
        builder.add(c.X(), c.Y(), c.Z());
        builder.add(d.X(), d.Y(), d.Z());
        builder.quad(i, i + 1, i + 2, i + 3);
    };
    face({-x, -y, z}, {x, -y, z}, {x, y, z}, {-x, y, z});     // front (+z)
    face({x, -y, -z}, {-x, -y, -z}, {-x, y, -z}, {x, y, -z}); // back
    face({x, -y, z}, {x, -y, -z}, {x, y, -z}, {x, y, z});     // right (+x)
    face({-x, -y, -z}, {-x, -y, z}, {-x, y, z}, {-x, y, -z}); // left
    face({-x, y, z}, {x, y, z}, {x, y, -z}, {-x, y, -z});     // top (+y)
    face({-x, -y, -z}, {x, -y, -z}, {x, -y, z}, {-x, -y, z}); // bottom
    return builder.make();
}

mx::mxPointer<mx::mxMesh> ShapeFactory::sphere(float radius, int slices, int stacks) {
    MeshBuilder builder;
    const unsigned int top = builder.add(0.0f, radius, 0.0f);
    std::vector<unsigned int> rings;
    for (int s = 1; s < stacks; ++s) {
        const float polar = csPi * static_cast<float>(s) / static_cast<float>(stacks);
        rings.push_back(ring(builder, radius * std::sin(polar), radius * std::cos(polar), slices));
    }
    const unsigned int bottom = builder.add(0.0f, -radius, 0.0f);
    for (int i = 0; i < slices; ++i) {
        const unsigned int j = static_cast<unsigned int>((i + 1) % slices);
        const unsigned int k = static_cast<unsigned int>(i);
        builder.triangle(top, rings.front() + k, rings.front() + j);
        for (std::size_t r = 0; r + 1 < rings.size(); ++r) {
            builder.quad(rings[r] + k, rings[r + 1] + k, rings[r + 1] + j, rings[r] + j);
        }
        builder.triangle(bottom, rings.back() + j, rings.back() + k);
    }
    return builder.make();
}

mx::mxPointer<mx::mxMesh> ShapeFactory::cylinder(float radius, float height, int slices) {
    MeshBuilder builder;
    const float y = height / 2.0f;
    const unsigned int lower = ring(builder, radius, -y, slices);
    const unsigned int upper = ring(builder, radius, y, slices);
    for (int i = 0; i < slices; ++i) {
        const unsigned int k = static_cast<unsigned int>(i);
        const unsigned int j = static_cast<unsigned int>((i + 1) % slices);
        builder.quad(lower + k, lower + j, upper + j, upper + k);
    }
    cap(builder, ring(builder, radius, y, slices), slices, y, true);
    cap(builder, ring(builder, radius, -y, slices), slices, -y, false);
    return builder.make();
}

mx::mxPointer<mx::mxMesh> ShapeFactory::cone(float radius, float height, int slices) {
    MeshBuilder builder;
    const float y = height / 2.0f;
    const unsigned int base = ring(builder, radius, -y, slices);
    const unsigned int apex = builder.add(0.0f, y, 0.0f);
    for (int i = 0; i < slices; ++i) {
        builder.triangle(base + static_cast<unsigned int>(i),
                         base + static_cast<unsigned int>((i + 1) % slices), apex);
    }
    cap(builder, ring(builder, radius, -y, slices), slices, -y, false);
    return builder.make();
}

mx::mxPointer<mx::mxMesh> ShapeFactory::torus(float ringRadius, float tubeRadius, int ringSegments,
                                              int tubeSegments) {
    MeshBuilder builder;
    for (int i = 0; i < ringSegments; ++i) {
        const float a = csTwoPi * static_cast<float>(i) / static_cast<float>(ringSegments);
        for (int j = 0; j < tubeSegments; ++j) {
            const float b = csTwoPi * static_cast<float>(j) / static_cast<float>(tubeSegments);
            const float r = ringRadius + tubeRadius * std::cos(b);
            builder.add(r * std::cos(a), tubeRadius * std::sin(b), -r * std::sin(a));
        }
    }
    auto at = [ringSegments, tubeSegments](int i, int j) {
        return static_cast<unsigned int>((i % ringSegments) * tubeSegments + (j % tubeSegments));
    };
    for (int i = 0; i < ringSegments; ++i) {
        for (int j = 0; j < tubeSegments; ++j) {
            builder.quad(at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1));
        }
    }
    return builder.make();
}

mx::mxPointer<mx::mxLine> ShapeFactory::grid(float extent, float spacing) {
    const int cells = static_cast<int>(std::lround(2.0f * extent / spacing));
    const int linesPerDirection = cells + 1;
    const int vertexCount = 4 * linesPerDirection;
    mx::mxPointer<mx::mxLine> line(new mx::mxLine(vertexCount, vertexCount, false));
    unsigned int v = 0;
    for (int i = 0; i < linesPerDirection; ++i) {
        const float c = -extent + spacing * static_cast<float>(i);
        // One line along x and one along z through c.
        for (const auto& [a, b] :
             {std::pair<Vector3, Vector3>{{-extent, 0.0f, c}, {extent, 0.0f, c}},
              std::pair<Vector3, Vector3>{{c, 0.0f, -extent}, {c, 0.0f, extent}}}) {
            line->setVertexPosition(v, a);
            line->setIndex(v, v);
            ++v;
            line->setVertexPosition(v, b);
            line->setIndex(v, v);
            ++v;
        }
    }
    line->UpdateMS(true, false, 0);
    return line;
}

} // namespace viewer
