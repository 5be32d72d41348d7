// The viewer's shapes: every mesh is closed and wound so that its triangles face outwards, its
// model bound holds all its vertices, its size is the one asked for; the ground grid is a set
// of segments in the x-z plane.
//
// Closed means closed as a surface: faces that keep their own copies of a corner (the box's
// faces, the caps of the cylinder and the cone) meet at equal positions, so edges are compared
// by the positions of their ends.
#include "ShapeFactory.h"

#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using viewer::ShapeFactory;
using Vec3 = Wm4::Vector3<float>;
using Key = std::tuple<float, float, float>;

Key KeyOf(const Vec3& v) {
    return Key(v.X(), v.Y(), v.Z());
}

struct Shape {
    std::string name;
    mx::mxPointer<mx::mxMesh> mesh;
};

// The meshes of the demo scene's sizes, with coarse and fine tessellations.
std::vector<Shape> Shapes() {
    return {{"box", ShapeFactory::box(2.0f, 4.0f, 6.0f)},
            {"sphere", ShapeFactory::sphere(0.75f, 32, 16)},
            {"coarse sphere", ShapeFactory::sphere(1.0f, 3, 2)},
            {"cylinder", ShapeFactory::cylinder(0.55f, 1.6f, 32)},
            {"coarse cylinder", ShapeFactory::cylinder(1.0f, 2.0f, 3)},
            {"cone", ShapeFactory::cone(0.7f, 1.4f, 32)},
            {"coarse cone", ShapeFactory::cone(1.0f, 2.0f, 3)},
            {"torus", ShapeFactory::torus(0.7f, 0.25f, 40, 16)},
            {"coarse torus", ShapeFactory::torus(2.0f, 0.5f, 8, 6)}};
}

Vec3 Corner(const mx::mxMesh& mesh, unsigned int triangle, unsigned int corner) {
    return mesh.getVertexPosition(mesh.getIndex(3 * triangle + corner));
}

// Success when every edge, taken by the positions of its ends, borders exactly two triangles,
// which run along it in opposite directions (so that they wind the same way).
::testing::AssertionResult IsClosed(const mx::mxMesh& mesh) {
    std::map<std::pair<Key, Key>, int> directed;
    for (unsigned int t = 0; t < mesh.getTriangleCount(); ++t) {
        for (unsigned int k = 0; k < 3; ++k) {
            ++directed[{KeyOf(Corner(mesh, t, k)), KeyOf(Corner(mesh, t, (k + 1) % 3))}];
        }
    }
    for (const auto& [edge, count] : directed) {
        const auto reverse = directed.find({edge.second, edge.first});
        const int against = reverse == directed.end() ? 0 : reverse->second;
        if (count != 1 || against != 1) {
            const Key& a = edge.first;
            const Key& b = edge.second;
            return ::testing::AssertionFailure()
                   << "the edge from (" << std::get<0>(a) << ", " << std::get<1>(a) << ", "
                   << std::get<2>(a) << ") to (" << std::get<0>(b) << ", " << std::get<1>(b) << ", "
                   << std::get<2>(b) << ") is run along " << count << " times and back " << against
                   << " times";
        }
    }
    return ::testing::AssertionSuccess();
}

// Success when every triangle is proper and its normal (counter-clockwise winding) points
// away from the point outwardFrom gives for its centroid.
::testing::AssertionResult FacesOutwards(const mx::mxMesh& mesh,
                                         const std::function<Vec3(const Vec3&)>& outwardFrom) {
    for (unsigned int t = 0; t < mesh.getTriangleCount(); ++t) {
        const Vec3 a = Corner(mesh, t, 0);
        const Vec3 b = Corner(mesh, t, 1);
        const Vec3 c = Corner(mesh, t, 2);
        const Vec3 normal = (b - a).Cross(c - a);
        const Vec3 centroid = (a + b + c) / 3.0f;
        const Vec3 outwards = centroid - outwardFrom(centroid);
        if (!(normal.Length() > 0.0f) || !(normal.Dot(outwards) > 0.0f)) {
            return ::testing::AssertionFailure()
                   << "triangle " << t << " with centroid (" << centroid.X() << ", " << centroid.Y()
                   << ", " << centroid.Z() << ") faces (" << normal.X() << ", " << normal.Y()
                   << ", " << normal.Z() << ")";
        }
    }
    return ::testing::AssertionSuccess();
}

Vec3 Origin(const Vec3&) {
    return Vec3(0.0f, 0.0f, 0.0f);
}

// The point of a torus's ring (radius ringRadius in the x-z plane) nearest p.
std::function<Vec3(const Vec3&)> NearestOnRing(float ringRadius) {
    return [ringRadius](const Vec3& p) {
        const float length = std::hypot(p.X(), p.Z());
        return Vec3(ringRadius * p.X() / length, 0.0f, ringRadius * p.Z() / length);
    };
}

TEST(ShapeFactoryTest, EveryMeshIsClosed) {
    for (const Shape& shape : Shapes()) {
        EXPECT_GT(shape.mesh->getTriangleCount(), 0u) << shape.name;
        EXPECT_TRUE(IsClosed(*shape.mesh)) << shape.name;
    }
}

TEST(ShapeFactoryTest, ModelBoundEnclosesEveryVertex) {
    for (const Shape& shape : Shapes()) {
        const mx::mxBoundingVolume& bound = shape.mesh->getModelBound();
        for (const Vec3& vertex : shape.mesh->getVertices()) {
            EXPECT_TRUE(bound.contains(vertex, 1e-5f)) << shape.name << ": (" << vertex.X() << ", "
                                                       << vertex.Y() << ", " << vertex.Z() << ")";
        }
    }
}

TEST(ShapeFactoryTest, BoxSphereCylinderAndConeFaceAwayFromTheirCentre) {
    for (const Shape& shape : Shapes()) {
        if (shape.name.find("torus") == std::string::npos) {
            EXPECT_TRUE(FacesOutwards(*shape.mesh, Origin)) << shape.name;
        }
    }
}

TEST(ShapeFactoryTest, TorusFacesAwayFromItsRing) {
    EXPECT_TRUE(FacesOutwards(*ShapeFactory::torus(0.7f, 0.25f, 40, 16), NearestOnRing(0.7f)));
    EXPECT_TRUE(FacesOutwards(*ShapeFactory::torus(2.0f, 0.5f, 8, 6), NearestOnRing(2.0f)));
}

TEST(ShapeFactoryTest, VertexNormalsPointOutOfTheSphere) {
    const mx::mxPointer<mx::mxMesh> sphere = ShapeFactory::sphere(2.0f, 16, 8);
    ASSERT_EQ(sphere->getNormals().size(), sphere->getVertexCount());
    for (unsigned int i = 0; i < sphere->getVertexCount(); ++i) {
        EXPECT_GT(sphere->getNormals()[i].Dot(sphere->getVertexPosition(i)), 0.0f) << i;
    }
}

TEST(ShapeFactoryTest, BoxSpansHalfItsExtentsOnEitherSideOfTheOrigin) {
    const mx::mxPointer<mx::mxMesh> box = ShapeFactory::box(2.0f, 4.0f, 6.0f);
    const float half[3] = {1.0f, 2.0f, 3.0f};
    for (int axis = 0; axis < 3; ++axis) {
        float low = 0.0f;
        float high = 0.0f;
        for (const Vec3& vertex : box->getVertices()) {
            low = std::min(low, vertex[axis]);
            high = std::max(high, vertex[axis]);
            EXPECT_EQ(std::fabs(vertex[axis]), half[axis]) << "a box's corners lie on its faces";
        }
        EXPECT_EQ(low, -half[axis]) << axis;
        EXPECT_EQ(high, half[axis]) << axis;
    }
}

TEST(ShapeFactoryTest, SphereVerticesLieAtTheRadius) {
    const mx::mxPointer<mx::mxMesh> sphere = ShapeFactory::sphere(0.75f, 32, 16);
    for (const Vec3& vertex : sphere->getVertices()) {
        EXPECT_NEAR(vertex.Length(), 0.75f, 1e-6f);
    }
}

TEST(ShapeFactoryTest, CylinderAndConeStandOnTheirBaseAtMinusHalfTheirHeight) {
    const mx::mxPointer<mx::mxMesh> cylinder = ShapeFactory::cylinder(0.5f, 2.0f, 12);
    for (const Vec3& vertex : cylinder->getVertices()) {
        EXPECT_EQ(std::fabs(vertex.Y()), 1.0f);
        EXPECT_LE(std::hypot(vertex.X(), vertex.Z()), 0.5f + 1e-6f);
    }
    const mx::mxPointer<mx::mxMesh> cone = ShapeFactory::cone(0.5f, 2.0f, 12);
    int apexes = 0;
    for (const Vec3& vertex : cone->getVertices()) {
        if (vertex.Y() == 1.0f) {
            ++apexes;
            EXPECT_EQ(vertex.X(), 0.0f);
            EXPECT_EQ(vertex.Z(), 0.0f);
        } else {
            EXPECT_EQ(vertex.Y(), -1.0f);
        }
    }
    EXPECT_EQ(apexes, 1);
}

TEST(ShapeFactoryTest, TorusVerticesLieAtTheTubeRadiusFromTheRing) {
    const mx::mxPointer<mx::mxMesh> torus = ShapeFactory::torus(0.7f, 0.25f, 40, 16);
    const auto ring = NearestOnRing(0.7f);
    for (const Vec3& vertex : torus->getVertices()) {
        EXPECT_NEAR((vertex - ring(vertex)).Length(), 0.25f, 1e-6f);
    }
}

TEST(ShapeFactoryTest, GridIsDrawnAsSegments) {
    const mx::mxPointer<mx::mxLine> grid = ShapeFactory::grid(10.0f, 1.0f);
    EXPECT_EQ(grid->getDrawMethod(), mx::mxLine::DRAW_SEGMENTS);
}

TEST(ShapeFactoryTest, GridHasTwoSegmentsPerLineAcrossAndAlong) {
    // 10 / 1 gives 20 cells and 21 lines each way; 2 / 0.5 gives 8 cells and 9 lines.
    EXPECT_EQ(ShapeFactory::grid(10.0f, 1.0f)->getVertexCount(), 4u * 21u);
    EXPECT_EQ(ShapeFactory::grid(2.0f, 0.5f)->getVertexCount(), 4u * 9u);
    EXPECT_EQ(ShapeFactory::grid(2.0f, 0.5f)->getIndexCount(), 4u * 9u);
}

TEST(ShapeFactoryTest, GridLiesInTheGroundPlaneWithinItsExtent) {
    const mx::mxPointer<mx::mxLine> grid = ShapeFactory::grid(10.0f, 1.0f);
    for (const Vec3& vertex : grid->getVertices()) {
        EXPECT_EQ(vertex.Y(), 0.0f);
        EXPECT_GE(vertex.X(), -10.0f);
        EXPECT_LE(vertex.X(), 10.0f);
        EXPECT_GE(vertex.Z(), -10.0f);
        EXPECT_LE(vertex.Z(), 10.0f);
    }
}

TEST(ShapeFactoryTest, EveryGridSegmentCrossesTheWholeGridAlongXOrZ) {
    const mx::mxPointer<mx::mxLine> grid = ShapeFactory::grid(2.0f, 0.5f);
    int alongX = 0;
    int alongZ = 0;
    for (unsigned int i = 0; i + 1 < grid->getIndexCount(); i += 2) {
        const Vec3 a = grid->getVertexPosition(grid->getIndex(i));
        const Vec3 b = grid->getVertexPosition(grid->getIndex(i + 1));
        if (a.Z() == b.Z() && std::fabs(a.X() - b.X()) == 4.0f) {
            ++alongX;
        } else if (a.X() == b.X() && std::fabs(a.Z() - b.Z()) == 4.0f) {
            ++alongZ;
        } else {
            ADD_FAILURE() << "segment " << i / 2 << " runs from (" << a.X() << ", " << a.Z()
                          << ") to (" << b.X() << ", " << b.Z() << ")";
        }
    }
    EXPECT_EQ(alongX, 9);
    EXPECT_EQ(alongZ, 9);
}

} // namespace
