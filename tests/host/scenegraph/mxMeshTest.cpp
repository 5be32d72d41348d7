#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

using mx::mxBuffer;
using mx::mxGeometry;
using mx::mxMesh;
using mx::mxNode;
using mx::mxPointer;
using mx::test::expectVectorNear;
using Vec3 = Wm4::Vector3<float>;

namespace {

// Vertex coordinates of order 10: a few ulps of that.
constexpr float csTolerance = 1e-5f;

// The unit square in the plane z = z0, two counter-clockwise triangles seen from +z.
mxPointer<mxMesh> makeSquare(float z0 = 0.0f) {
    mxPointer<mxMesh> mesh = new mxMesh(4u, 2u);
    mesh->setVertexPosition(0, Vec3(0.0f, 0.0f, z0));
    mesh->setVertexPosition(1, Vec3(1.0f, 0.0f, z0));
    mesh->setVertexPosition(2, Vec3(1.0f, 1.0f, z0));
    mesh->setVertexPosition(3, Vec3(0.0f, 1.0f, z0));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->setTriangle(1, 0, 2, 3);
    return mesh;
}

// Rotation by angle about the z axis (column vectors).
Wm4::Matrix3<float> rotationAboutZ(float angle) {
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    return Wm4::Matrix3<float>(c, -s, 0.0f, s, c, 0.0f, 0.0f, 0.0f, 1.0f);
}

} // namespace

TEST(mxMeshTest, TypeIsMesh) {
    mxPointer<mxMesh> mesh = new mxMesh(3u, 1u);
    EXPECT_TRUE(mesh->IsExactly(mxMesh::TYPE));
    EXPECT_STREQ("mxCore.mxMesh", mesh->GetType().getName());
}

TEST(mxMeshTest, NewMeshHasItsVerticesAtTheOriginAndZeroTriangles) {
    mxPointer<mxMesh> mesh = new mxMesh(5u, 2u);
    EXPECT_EQ(5u, mesh->getVertexCount());
    EXPECT_EQ(2u, mesh->getTriangleCount());
    EXPECT_EQ(6u, mesh->getIndexCount());
    for (unsigned int i = 0; i < 5u; ++i) {
        expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), mesh->getVertexPosition(i), csTolerance);
    }
    EXPECT_EQ((std::vector<unsigned int>(6u, 0u)), mesh->getIndices());
    EXPECT_EQ(5u, mesh->getNormals().size());
}

TEST(mxMeshTest, SetTriangleWritesItsThreeIndices) {
    mxPointer<mxMesh> mesh = new mxMesh(4u, 2u);
    mesh->setTriangle(1, 3, 1, 2);
    EXPECT_EQ((std::vector<unsigned int>{0u, 0u, 0u, 3u, 1u, 2u}), mesh->getIndices());
}

TEST(mxMeshTest, SetTriangleOutOfRangeDoesNothing) {
    mxPointer<mxMesh> mesh = new mxMesh(4u, 2u);
    const std::uint64_t version = mesh->getModelVersion();
    mesh->setTriangle(2, 1, 2, 3);
    EXPECT_EQ((std::vector<unsigned int>(6u, 0u)), mesh->getIndices());
    EXPECT_EQ(version, mesh->getModelVersion());
    EXPECT_EQ(2u, mesh->getTriangleCount());
}

TEST(mxMeshTest, NormalsOfAFlatQuadAreItsPlaneNormal) {
    mxPointer<mxMesh> mesh = makeSquare(2.0f);
    mesh->UpdateMS(false, true, -2);
    ASSERT_EQ(4u, mesh->getNormals().size());
    for (const Vec3& normal : mesh->getNormals()) {
        expectVectorNear(Vec3(0.0f, 0.0f, 1.0f), normal, csTolerance);
    }
}

TEST(mxMeshTest, NormalsFollowTheWinding) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->setTriangle(0, 0, 2, 1);
    mesh->setTriangle(1, 0, 3, 2);
    mesh->UpdateModelNormals();
    for (const Vec3& normal : mesh->getNormals()) {
        expectVectorNear(Vec3(0.0f, 0.0f, -1.0f), normal, csTolerance);
    }
}

TEST(mxMeshTest, NormalsOfATiltedQuadAreUnitLength) {
    mxPointer<mxMesh> mesh = new mxMesh(4u, 2u);
    // The square in the plane x + z = 0 (normal along (1, 0, 1) for this winding).
    mesh->setVertexPosition(0, Vec3(0.0f, 0.0f, 0.0f));
    mesh->setVertexPosition(1, Vec3(0.0f, 3.0f, 0.0f));
    mesh->setVertexPosition(2, Vec3(-3.0f, 3.0f, 3.0f));
    mesh->setVertexPosition(3, Vec3(-3.0f, 0.0f, 3.0f));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->setTriangle(1, 0, 2, 3);
    mesh->UpdateModelNormals();
    const float half = std::sqrt(0.5f);
    for (const Vec3& normal : mesh->getNormals()) {
        expectVectorNear(Vec3(half, 0.0f, half), normal, csTolerance);
    }
}

TEST(mxMeshTest, VertexInNoTriangleHasAZeroNormal) {
    mxPointer<mxMesh> mesh = new mxMesh(4u, 1u);
    mesh->setVertexPosition(1, Vec3(1.0f, 0.0f, 0.0f));
    mesh->setVertexPosition(2, Vec3(0.0f, 1.0f, 0.0f));
    mesh->setVertexPosition(3, Vec3(5.0f, 5.0f, 5.0f));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->UpdateModelNormals();
    expectVectorNear(Vec3(0.0f, 0.0f, 1.0f), mesh->getNormals()[0], csTolerance);
    expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), mesh->getNormals()[3], csTolerance);
}

TEST(mxMeshTest, DegenerateTriangleGivesZeroNormals) {
    mxPointer<mxMesh> mesh = new mxMesh(3u, 1u);
    mesh->setVertexPosition(1, Vec3(1.0f, 0.0f, 0.0f));
    mesh->setVertexPosition(2, Vec3(2.0f, 0.0f, 0.0f));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->UpdateModelNormals();
    for (const Vec3& normal : mesh->getNormals()) {
        expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), normal, csTolerance);
    }
}

TEST(mxMeshTest, UpdateMSWithoutNormalsLeavesThemAlone) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->UpdateMS(true, false, 0);
    for (const Vec3& normal : mesh->getNormals()) {
        expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), normal, csTolerance);
    }
}

TEST(mxMeshTest, TriangleNamingAMissingVertexIsSkippedForNormals) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->setTriangle(1, 0, 2, 7);
    mesh->UpdateModelNormals();
    expectVectorNear(Vec3(0.0f, 0.0f, 1.0f), mesh->getNormals()[0], csTolerance);
    expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), mesh->getNormals()[3], csTolerance);
}

TEST(mxMeshTest, RayHitsTheSquareAtTheRightDistance) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->UpdateGS();
    float t = -1.0f;
    ASSERT_TRUE(mesh->intersectRay(Vec3(0.25f, 0.5f, 5.0f), Vec3(0.0f, 0.0f, -1.0f), t));
    EXPECT_NEAR(5.0f, t, 1e-5f);
}

TEST(mxMeshTest, RayHitsTheBackFaceToo) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->UpdateGS();
    float t = -1.0f;
    ASSERT_TRUE(mesh->intersectRay(Vec3(0.75f, 0.25f, -3.0f), Vec3(0.0f, 0.0f, 1.0f), t));
    EXPECT_NEAR(3.0f, t, 1e-5f);
}

TEST(mxMeshTest, TIsMeasuredInUnitsOfTheDirection) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->UpdateGS();
    float t = -1.0f;
    ASSERT_TRUE(mesh->intersectRay(Vec3(0.5f, 0.5f, 6.0f), Vec3(0.0f, 0.0f, -2.0f), t));
    EXPECT_NEAR(3.0f, t, 1e-5f);
}

TEST(mxMeshTest, RayHitsTheNearestOfStackedTriangles) {
    // Two parallel squares, at z = 0 and z = 2; the ray comes down from z = 10.
    mxPointer<mxMesh> mesh = new mxMesh(8u, 4u);
    for (unsigned int layer = 0; layer < 2u; ++layer) {
        const float z = 2.0f * static_cast<float>(layer);
        const unsigned int base = 4u * layer;
        mesh->setVertexPosition(base + 0, Vec3(0.0f, 0.0f, z));
        mesh->setVertexPosition(base + 1, Vec3(1.0f, 0.0f, z));
        mesh->setVertexPosition(base + 2, Vec3(1.0f, 1.0f, z));
        mesh->setVertexPosition(base + 3, Vec3(0.0f, 1.0f, z));
    }
    // The lower square first, so the nearest hit is not simply the first one found.
    mesh->setTriangle(0, 0, 1, 2);
    mesh->setTriangle(1, 0, 2, 3);
    mesh->setTriangle(2, 4, 5, 6);
    mesh->setTriangle(3, 4, 6, 7);
    mesh->UpdateGS();
    float t = -1.0f;
    ASSERT_TRUE(mesh->intersectRay(Vec3(0.3f, 0.6f, 10.0f), Vec3(0.0f, 0.0f, -1.0f), t));
    EXPECT_NEAR(8.0f, t, 1e-5f);
    // From below, the lower square is the nearer one.
    ASSERT_TRUE(mesh->intersectRay(Vec3(0.3f, 0.6f, -1.0f), Vec3(0.0f, 0.0f, 1.0f), t));
    EXPECT_NEAR(1.0f, t, 1e-5f);
}

TEST(mxMeshTest, RayStartingBetweenTrianglesIgnoresTheOneBehindIt) {
    mxPointer<mxMesh> mesh = new mxMesh(6u, 2u);
    mesh->setVertexPosition(0, Vec3(-1.0f, -1.0f, 0.0f));
    mesh->setVertexPosition(1, Vec3(1.0f, -1.0f, 0.0f));
    mesh->setVertexPosition(2, Vec3(0.0f, 1.0f, 0.0f));
    mesh->setVertexPosition(3, Vec3(-1.0f, -1.0f, 4.0f));
    mesh->setVertexPosition(4, Vec3(1.0f, -1.0f, 4.0f));
    mesh->setVertexPosition(5, Vec3(0.0f, 1.0f, 4.0f));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->setTriangle(1, 3, 4, 5);
    mesh->UpdateGS();
    float t = -1.0f;
    ASSERT_TRUE(mesh->intersectRay(Vec3(0.0f, 0.0f, 1.0f), Vec3(0.0f, 0.0f, 1.0f), t));
    EXPECT_NEAR(3.0f, t, 1e-5f);
}

TEST(mxMeshTest, RayHitsATransformedMeshInWorldSpace) {
    mxPointer<mxMesh> mesh = makeSquare();
    // Scaled by 2, turned a quarter about z, lifted to z = 4 and moved to x = 10: the square
    // covers x in [8, 10], y in [0, 2] at z = 4.
    mx::mxGenericTransformation<float>& local = mesh->editLocalTransform(true);
    local.SetRotate(rotationAboutZ(1.57079632679f));
    local.SetUniformScale(2.0f);
    local.SetTranslate(Vec3(10.0f, 0.0f, 4.0f));
    mesh->UpdateGS();
    float t = -1.0f;
    ASSERT_TRUE(mesh->intersectRay(Vec3(9.0f, 1.5f, 10.0f), Vec3(0.0f, 0.0f, -1.0f), t));
    EXPECT_NEAR(6.0f, t, 1e-4f);
    // The model-space position of the square is empty in world space.
    float untouched = 123.0f;
    EXPECT_FALSE(mesh->intersectRay(Vec3(0.5f, 0.5f, 10.0f), Vec3(0.0f, 0.0f, -1.0f), untouched));
    EXPECT_EQ(123.0f, untouched);
}

TEST(mxMeshTest, RayHitsAMeshPlacedUnderAParentNode) {
    mxPointer<mxNode> parent = new mxNode();
    mxPointer<mxMesh> mesh = makeSquare();
    ASSERT_EQ(0, parent->attachChild(mesh.get()));
    parent->editLocalTransform(true).SetTranslate(Vec3(0.0f, 0.0f, -2.0f));
    mesh->editLocalTransform(true).SetTranslate(Vec3(3.0f, 0.0f, 0.0f));
    parent->UpdateGS();
    float t = -1.0f;
    ASSERT_TRUE(mesh->intersectRay(Vec3(3.5f, 0.5f, 0.0f), Vec3(0.0f, 0.0f, -1.0f), t));
    EXPECT_NEAR(2.0f, t, 1e-5f);
    EXPECT_FALSE(mesh->intersectRay(Vec3(0.5f, 0.5f, 0.0f), Vec3(0.0f, 0.0f, -1.0f), t));
}

TEST(mxMeshTest, RayPassingBesideTheMeshMissesAndLeavesTUntouched) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->UpdateGS();
    float t = 42.0f;
    EXPECT_FALSE(mesh->intersectRay(Vec3(1.5f, 0.5f, 5.0f), Vec3(0.0f, 0.0f, -1.0f), t));
    EXPECT_EQ(42.0f, t);
}

TEST(mxMeshTest, RayPointingAwayMissesAndLeavesTUntouched) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->UpdateGS();
    float t = 42.0f;
    EXPECT_FALSE(mesh->intersectRay(Vec3(0.5f, 0.5f, 5.0f), Vec3(0.0f, 0.0f, 1.0f), t));
    EXPECT_EQ(42.0f, t);
}

TEST(mxMeshTest, RayParallelToTheMeshMisses) {
    mxPointer<mxMesh> mesh = makeSquare();
    mesh->UpdateGS();
    float t = 42.0f;
    EXPECT_FALSE(mesh->intersectRay(Vec3(-1.0f, 0.5f, 0.0f), Vec3(1.0f, 0.0f, 0.0f), t));
    EXPECT_EQ(42.0f, t);
}

TEST(mxMeshTest, MeshWithoutProperTrianglesIsNeverHit) {
    mxPointer<mxMesh> empty = new mxMesh(0u, 0u);
    float t = 42.0f;
    EXPECT_FALSE(empty->intersectRay(Vec3(0.0f, 0.0f, 1.0f), Vec3(0.0f, 0.0f, -1.0f), t));
    mxPointer<mxMesh> broken = makeSquare();
    broken->setTriangle(0, 0, 1, 9);
    broken->setTriangle(1, 9, 2, 3);
    EXPECT_FALSE(broken->intersectRay(Vec3(0.5f, 0.5f, 1.0f), Vec3(0.0f, 0.0f, -1.0f), t));
    EXPECT_EQ(42.0f, t);
}

TEST(mxMeshTest, GeneratedGeometryIsTriangles) {
    mxPointer<mxMesh> mesh = makeSquare();
    mxGeometry* geometry = mesh->getGeneratedGeometry();
    ASSERT_NE(nullptr, geometry);
    EXPECT_EQ(mxGeometry::PRIMITIVE_TRIANGLES, geometry->getPrimitive());
    ASSERT_NE(nullptr, geometry->getGeneratedBuffer(0));
    ASSERT_NE(nullptr, geometry->getGeneratedBuffer(1));
    EXPECT_EQ(4u, geometry->getGeneratedBuffer(0)->getElementCount());
    const mxBuffer* indices = geometry->getGeneratedBuffer(1);
    ASSERT_EQ(6u, indices->getElementCount());
    const std::uint32_t* data = static_cast<const std::uint32_t*>(indices->getData());
    EXPECT_EQ((std::vector<std::uint32_t>{0u, 1u, 2u, 0u, 2u, 3u}),
              std::vector<std::uint32_t>(data, data + 6));
}

TEST(mxMeshTest, SquareIsRenderableAndDanglingIndexIsNot) {
    mxPointer<mxMesh> mesh = makeSquare();
    EXPECT_TRUE(mesh->checkRenderable(false));
    mesh->setTriangle(1, 0, 2, 4);
    EXPECT_FALSE(mesh->checkRenderable(false));
}
