#include "scenegraph/mxCamera.h"
#include "scenegraph/mxPointer.h"

#include "support/mxTestGeometry.h"

#include <Wm5Camera.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using mx::mxCamera;
using Vector3f = Wm4::Vector3<float>;
using mx::test::expectVectorNear;

namespace {

constexpr float cNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float cInfinity = std::numeric_limits<float>::infinity();

void expectVectorEq(const Vector3f& expected, const Vector3f& actual) {
    EXPECT_EQ(expected.X(), actual.X());
    EXPECT_EQ(expected.Y(), actual.Y());
    EXPECT_EQ(expected.Z(), actual.Z());
}

struct Projected {
    double x, y, z, w;
};

// clip = M * (p, 1) with M read column-major, as a renderer would.
Projected project(const float* m, const Vector3f& p) {
    double clip[4];
    for (int row = 0; row < 4; ++row) {
        clip[row] = static_cast<double>(m[0 * 4 + row]) * p.X() +
                    static_cast<double>(m[1 * 4 + row]) * p.Y() +
                    static_cast<double>(m[2 * 4 + row]) * p.Z() + m[3 * 4 + row];
    }
    return {clip[0], clip[1], clip[2], clip[3]};
}

Projected toNdc(const float* m, const Vector3f& p) {
    Projected clip = project(m, p);
    return {clip.x / clip.w, clip.y / clip.w, clip.z / clip.w, 1.0};
}

// Wm5 keeps a process-wide default depth type, read when a camera is constructed. The guard
// selects the OpenGL range our matrix uses and puts the previous default back afterwards, so
// other tests in the same process see Wm5 as they found it.
class OpenGLDepthRange {
public:
    OpenGLDepthRange() : previous(Wm5::Camera::GetDefaultDepthType()) {
        Wm5::Camera::SetDefaultDepthType(Wm5::Camera::PM_DEPTH_MINUS_ONE_TO_ONE);
    }
    ~OpenGLDepthRange() { Wm5::Camera::SetDefaultDepthType(previous); }
    OpenGLDepthRange(const OpenGLDepthRange&) = delete;
    OpenGLDepthRange& operator=(const OpenGLDepthRange&) = delete;

private:
    Wm5::Camera::DepthType previous;
};

struct Frustum {
    float rMin, rMax, uMin, uMax, dMin, dMax;
};

struct Frame {
    Vector3f eye, target, up;
};

// Builds the same camera in Wild Magic 5 and compares the products entry by entry.
void expectMatchesWm5(const mxCamera& camera) {
    Wm5::CameraPtr reference;
    {
        OpenGLDepthRange depthRange;
        reference = new Wm5::Camera(camera.isPerspective());
    }
    ASSERT_EQ(Wm5::Camera::PM_DEPTH_MINUS_ONE_TO_ONE, reference->GetDepthType());

    const Vector3f& e = camera.getLocation();
    const Vector3f& d = camera.getDVector();
    const Vector3f& u = camera.getUVector();
    const Vector3f& r = camera.getRVector();
    reference->SetFrame(Wm5::APoint(e.X(), e.Y(), e.Z()), Wm5::AVector(d.X(), d.Y(), d.Z()),
                        Wm5::AVector(u.X(), u.Y(), u.Z()), Wm5::AVector(r.X(), r.Y(), r.Z()));
    // Wm5 takes the frustum near/far first, the reverse of our order.
    reference->SetFrustum(camera.getDMin(), camera.getDMax(), camera.getUMin(), camera.getUMax(),
                          camera.getRMin(), camera.getRMax());

    // HMatrix is stored row-major, entry (row, column), and multiplies column vectors on
    // its right, so our m[c*4 + r] must equal its (r, c).
    const Wm5::HMatrix& expected = reference->GetProjectionViewMatrix();
    const float* actual = camera.getViewProjectionMatrix();
    float scale = 1.0f;
    for (int i = 0; i < 16; ++i) {
        scale = std::max(scale, std::fabs(actual[i]));
    }
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_NEAR(expected(row, column), actual[column * 4 + row], 2e-6f * scale)
                << "row " << row << " column " << column;
        }
    }
}

const Frame cFrames[] = {
    {Vector3f(0.0f, 0.0f, 0.0f), Vector3f(0.0f, 0.0f, -1.0f), Vector3f(0.0f, 1.0f, 0.0f)},
    {Vector3f(3.0f, 4.0f, 5.0f), Vector3f(0.0f, 0.0f, 0.0f), Vector3f(0.0f, 1.0f, 0.0f)},
    {Vector3f(-7.0f, 2.5f, 1.0f), Vector3f(1.0f, -2.0f, 3.0f), Vector3f(0.2f, 0.3f, 1.0f)},
    {Vector3f(100.0f, -40.0f, 60.0f), Vector3f(-5.0f, 10.0f, 0.0f), Vector3f(0.0f, 0.0f, 1.0f)},
};

const Frustum cFrustums[] = {
    {-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 1000.0f},
    {-0.4f, 0.6f, -0.3f, 0.2f, 0.5f, 50.0f},
    {-8.0f, 8.0f, -4.5f, 4.5f, 0.1f, 300.0f},
    {0.5f, 2.0f, -3.0f, -1.0f, 2.0f, 20.0f},
};

// A camera off every axis, so that R, U and D all have three non-zero components.
mxCamera* makeOffAxisCamera(bool perspective) {
    mxCamera* camera = new mxCamera(perspective);
    EXPECT_TRUE(camera->lookAt(Vector3f(4.0f, -3.0f, 7.0f), Vector3f(-1.0f, 0.5f, -2.0f),
                               Vector3f(0.1f, 1.0f, 0.2f)));
    EXPECT_TRUE(camera->setFrustum(-0.7f, 0.5f, -0.3f, 0.45f, 0.8f, 60.0f));
    return camera;
}

void expectPickRoundTrip(const mxCamera& camera) {
    const float* m = camera.getViewProjectionMatrix();
    for (int i = 0; i <= 10; ++i) {
        for (int j = 0; j <= 10; ++j) {
            const float x = static_cast<float>(i) / 10.0f;
            const float y = static_cast<float>(j) / 10.0f;
            Vector3f origin;
            Vector3f direction;
            ASSERT_TRUE(camera.getPickRay(x, y, origin, direction)) << x << ", " << y;
            EXPECT_NEAR(1.0f, direction.Length(), 1e-6f);
            const Vector3f point = origin + 5.0f * direction;
            const Projected ndc = toNdc(m, point);
            EXPECT_NEAR(x, (ndc.x + 1.0) / 2.0, 1e-4) << x << ", " << y;
            EXPECT_NEAR(y, (ndc.y + 1.0) / 2.0, 1e-4) << x << ", " << y;
        }
    }
}

// The reference view used across the host tests: eye at (0, 0, 10) looking down -Z, 90 degrees
// vertical field of view, aspect 1.
mxCamera* makeStyleCamera(bool perspective) {
    mxCamera* camera = new mxCamera(perspective);
    camera->setFrame(Vector3f(0.0f, 0.0f, 10.0f), Vector3f(0.0f, 0.0f, -1.0f),
                     Vector3f(0.0f, 1.0f, 0.0f), Vector3f(1.0f, 0.0f, 0.0f));
    EXPECT_TRUE(camera->setFrustum(90.0f, 1.0f, 1.0f, 1000.0f));
    return camera;
}

void expectSameMatrix(const float* expected, const float* actual) {
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(expected[i], actual[i]) << "entry " << i;
    }
}

void copyMatrix(const mxCamera& camera, float* out) {
    std::copy(camera.getViewProjectionMatrix(), camera.getViewProjectionMatrix() + 16, out);
}

} // namespace

TEST(mxCameraTest, TypeIsCameraDerivedFromObject) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    EXPECT_STREQ("mxCore.mxCamera", mxCamera::TYPE.getName());
    EXPECT_EQ(&mx::mxObject::TYPE, mxCamera::TYPE.getParent());
    EXPECT_TRUE(camera->IsExactly(mxCamera::TYPE));
    EXPECT_TRUE(camera->IsDerived(mx::mxObject::TYPE));
}

TEST(mxCameraTest, DefaultCameraLooksAlongMinusZ) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    expectVectorEq(Vector3f(0.0f, 0.0f, 0.0f), camera->getLocation());
    expectVectorEq(Vector3f(0.0f, 0.0f, -1.0f), camera->getDVector());
    expectVectorEq(Vector3f(0.0f, 1.0f, 0.0f), camera->getUVector());
    expectVectorEq(Vector3f(1.0f, 0.0f, 0.0f), camera->getRVector());
    EXPECT_TRUE(camera->isPerspective());
}

TEST(mxCameraTest, DefaultFrustumIsNinetyDegreesAspectOneNearOneFarThousand) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    EXPECT_FLOAT_EQ(-1.0f, camera->getRMin());
    EXPECT_FLOAT_EQ(1.0f, camera->getRMax());
    EXPECT_FLOAT_EQ(-1.0f, camera->getUMin());
    EXPECT_FLOAT_EQ(1.0f, camera->getUMax());
    EXPECT_EQ(1.0f, camera->getDMin());
    EXPECT_EQ(1000.0f, camera->getDMax());
}

TEST(mxCameraTest, ConstructorChoosesOrthographic) {
    mx::mxPointer<mxCamera> camera = new mxCamera(false);
    EXPECT_FALSE(camera->isPerspective());
    camera->setPerspective(true);
    EXPECT_TRUE(camera->isPerspective());
}

TEST(mxCameraTest, SetFrameStoresVectorsAsGiven) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    camera->setFrame(Vector3f(1.0f, 2.0f, 3.0f), Vector3f(0.0f, 0.0f, 2.0f),
                     Vector3f(0.0f, 3.0f, 0.0f), Vector3f(-4.0f, 0.0f, 0.0f));
    expectVectorEq(Vector3f(1.0f, 2.0f, 3.0f), camera->getLocation());
    expectVectorEq(Vector3f(0.0f, 0.0f, 2.0f), camera->getDVector());
    expectVectorEq(Vector3f(0.0f, 3.0f, 0.0f), camera->getUVector());
    expectVectorEq(Vector3f(-4.0f, 0.0f, 0.0f), camera->getRVector());
}

TEST(mxCameraTest, SetLocationKeepsAxesAndSetAxesKeepsLocation) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    camera->setLocation(Vector3f(5.0f, 6.0f, 7.0f));
    expectVectorEq(Vector3f(5.0f, 6.0f, 7.0f), camera->getLocation());
    expectVectorEq(Vector3f(0.0f, 0.0f, -1.0f), camera->getDVector());

    camera->setAxes(Vector3f(1.0f, 0.0f, 0.0f), Vector3f(0.0f, 1.0f, 0.0f),
                    Vector3f(0.0f, 0.0f, 1.0f));
    expectVectorEq(Vector3f(5.0f, 6.0f, 7.0f), camera->getLocation());
    expectVectorEq(Vector3f(1.0f, 0.0f, 0.0f), camera->getDVector());
    expectVectorEq(Vector3f(0.0f, 1.0f, 0.0f), camera->getUVector());
    expectVectorEq(Vector3f(0.0f, 0.0f, 1.0f), camera->getRVector());
}

TEST(mxCameraTest, LookAtBuildsOrthonormalRightHandedFrame) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    const Vector3f eye(4.0f, -3.0f, 7.0f);
    const Vector3f target(-1.0f, 0.5f, -2.0f);
    ASSERT_TRUE(camera->lookAt(eye, target, Vector3f(0.0f, 2.0f, 0.0f)));

    Vector3f toTarget = target - eye;
    toTarget.Normalize();
    expectVectorEq(eye, camera->getLocation());
    expectVectorNear(toTarget, camera->getDVector(), 1e-6f);

    const Vector3f& d = camera->getDVector();
    const Vector3f& u = camera->getUVector();
    const Vector3f& r = camera->getRVector();
    EXPECT_NEAR(1.0f, d.Length(), 1e-6f);
    EXPECT_NEAR(1.0f, u.Length(), 1e-6f);
    EXPECT_NEAR(1.0f, r.Length(), 1e-6f);
    EXPECT_NEAR(0.0f, d.Dot(u), 1e-6f);
    EXPECT_NEAR(0.0f, d.Dot(r), 1e-6f);
    EXPECT_NEAR(0.0f, u.Dot(r), 1e-6f);
    expectVectorNear(d.Cross(u), r, 1e-6f);
    // Up stays on the side of the requested up.
    EXPECT_GT(u.Y(), 0.0f);
    // R is horizontal: it is perpendicular to the requested up.
    EXPECT_NEAR(0.0f, r.Y(), 1e-6f);
}

TEST(mxCameraTest, LookAtAlongMinusZWithYUpGivesDefaultAxes) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    ASSERT_TRUE(camera->lookAt(Vector3f(0.0f, 0.0f, 10.0f), Vector3f(0.0f, 0.0f, 0.0f),
                               Vector3f(0.0f, 1.0f, 0.0f)));
    expectVectorEq(Vector3f(0.0f, 0.0f, 10.0f), camera->getLocation());
    expectVectorEq(Vector3f(0.0f, 0.0f, -1.0f), camera->getDVector());
    expectVectorEq(Vector3f(0.0f, 1.0f, 0.0f), camera->getUVector());
    expectVectorEq(Vector3f(1.0f, 0.0f, 0.0f), camera->getRVector());
}

TEST(mxCameraTest, LookAtRefusesBadInputAndChangesNothing) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    ASSERT_TRUE(camera->lookAt(Vector3f(1.0f, 2.0f, 3.0f), Vector3f(0.0f, 0.0f, 0.0f),
                               Vector3f(0.0f, 1.0f, 0.0f)));
    const Vector3f location = camera->getLocation();
    const Vector3f d = camera->getDVector();
    const Vector3f u = camera->getUVector();
    const Vector3f r = camera->getRVector();
    float matrix[16];
    copyMatrix(*camera, matrix);

    const Vector3f eye(5.0f, 5.0f, 5.0f);
    const Vector3f yUp(0.0f, 1.0f, 0.0f);
    // Target on the eye.
    EXPECT_FALSE(camera->lookAt(eye, eye, yUp));
    // Up parallel and antiparallel to the view direction, and zero up.
    EXPECT_FALSE(camera->lookAt(eye, Vector3f(5.0f, 9.0f, 5.0f), yUp));
    EXPECT_FALSE(camera->lookAt(eye, Vector3f(5.0f, -9.0f, 5.0f), yUp));
    EXPECT_FALSE(camera->lookAt(eye, Vector3f(5.0f, 9.0f, 5.0f), Vector3f(0.0f, 1e-20f, 0.0f)));
    EXPECT_FALSE(camera->lookAt(eye, Vector3f(0.0f, 0.0f, 0.0f), Vector3f(0.0f, 0.0f, 0.0f)));
    // Non-finite inputs.
    EXPECT_FALSE(camera->lookAt(Vector3f(cNaN, 0.0f, 0.0f), Vector3f(0.0f, 0.0f, -1.0f), yUp));
    EXPECT_FALSE(camera->lookAt(eye, Vector3f(0.0f, cInfinity, 0.0f), yUp));
    EXPECT_FALSE(camera->lookAt(eye, Vector3f(0.0f, 0.0f, 0.0f), Vector3f(0.0f, cNaN, 0.0f)));

    expectVectorEq(location, camera->getLocation());
    expectVectorEq(d, camera->getDVector());
    expectVectorEq(u, camera->getUVector());
    expectVectorEq(r, camera->getRVector());
    expectSameMatrix(matrix, camera->getViewProjectionMatrix());
}

TEST(mxCameraTest, LookAtAcceptsFarApartFinitePoints) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    const float big = std::numeric_limits<float>::max();
    ASSERT_TRUE(camera->lookAt(Vector3f(-big, 0.0f, 0.0f), Vector3f(big, 0.0f, 0.0f),
                               Vector3f(0.0f, 1.0f, 0.0f)));
    expectVectorEq(Vector3f(1.0f, 0.0f, 0.0f), camera->getDVector());
    expectVectorEq(Vector3f(0.0f, 0.0f, 1.0f), camera->getRVector());
}

TEST(mxCameraTest, SetFrustumStoresTheSixPlanes) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    ASSERT_TRUE(camera->setFrustum(-0.4f, 0.6f, -0.3f, 0.2f, 0.5f, 50.0f));
    EXPECT_EQ(-0.4f, camera->getRMin());
    EXPECT_EQ(0.6f, camera->getRMax());
    EXPECT_EQ(-0.3f, camera->getUMin());
    EXPECT_EQ(0.2f, camera->getUMax());
    EXPECT_EQ(0.5f, camera->getDMin());
    EXPECT_EQ(50.0f, camera->getDMax());
}

TEST(mxCameraTest, FieldOfViewFrustumIsLikeGluPerspective) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    ASSERT_TRUE(camera->setFrustum(60.0f, 1.5f, 0.5f, 100.0f));
    const float top = 0.5f * std::tan(30.0f * 3.14159265f / 180.0f);
    EXPECT_NEAR(top, camera->getUMax(), 1e-6f);
    EXPECT_EQ(-camera->getUMax(), camera->getUMin());
    EXPECT_NEAR(1.5f * top, camera->getRMax(), 1e-6f);
    EXPECT_EQ(-camera->getRMax(), camera->getRMin());
    EXPECT_EQ(0.5f, camera->getDMin());
    EXPECT_EQ(100.0f, camera->getDMax());

    // Same planes as Wild Magic's own gluPerspective equivalent.
    Wm5::CameraPtr reference = new Wm5::Camera(true);
    reference->SetFrustum(60.0f, 1.5f, 0.5f, 100.0f);
    EXPECT_NEAR(reference->GetUMax(), camera->getUMax(), 1e-6f);
    EXPECT_NEAR(reference->GetRMax(), camera->getRMax(), 1e-6f);
    EXPECT_NEAR(reference->GetRMin(), camera->getRMin(), 1e-6f);
    EXPECT_NEAR(reference->GetUMin(), camera->getUMin(), 1e-6f);
}

TEST(mxCameraTest, SetFrustumRefusesDegenerateValuesAndKeepsTheFrustum) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    ASSERT_TRUE(camera->setFrustum(-0.4f, 0.6f, -0.3f, 0.2f, 0.5f, 50.0f));
    float matrix[16];
    copyMatrix(*camera, matrix);

    // Empty or inverted intervals.
    EXPECT_FALSE(camera->setFrustum(1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(1.0f, -1.0f, -1.0f, 1.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(-1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 10.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 10.0f, 1.0f));
    // Near plane on or behind the eye.
    EXPECT_FALSE(camera->setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 0.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, -1.0f, 10.0f));
    // Non-finite values, and extents whose width overflows.
    EXPECT_FALSE(camera->setFrustum(cNaN, 1.0f, -1.0f, 1.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, cInfinity));
    const float big = std::numeric_limits<float>::max();
    EXPECT_FALSE(camera->setFrustum(-big, big, -1.0f, 1.0f, 1.0f, 10.0f));
    // Field of view out of (0, 180), bad aspect, bad planes.
    EXPECT_FALSE(camera->setFrustum(0.0f, 1.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(180.0f, 1.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(cNaN, 1.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(60.0f, 0.0f, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(60.0f, cInfinity, 1.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(60.0f, 1.0f, 0.0f, 10.0f));
    EXPECT_FALSE(camera->setFrustum(60.0f, 1.0f, 10.0f, 1.0f));
    EXPECT_FALSE(camera->setFrustum(60.0f, 1.0f, big, cInfinity));
    // Finite inputs whose extents overflow the float range.
    EXPECT_FALSE(camera->setFrustum(179.999f, 1.0f, 1e37f, 3e38f));

    EXPECT_EQ(-0.4f, camera->getRMin());
    EXPECT_EQ(0.6f, camera->getRMax());
    EXPECT_EQ(-0.3f, camera->getUMin());
    EXPECT_EQ(0.2f, camera->getUMax());
    EXPECT_EQ(0.5f, camera->getDMin());
    EXPECT_EQ(50.0f, camera->getDMax());
    expectSameMatrix(matrix, camera->getViewProjectionMatrix());
}

TEST(mxCameraTest, DefaultMatrixIsColumnMajorPerspective) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    const float* m = camera->getViewProjectionMatrix();
    // Default camera: V is the identity apart from z = -Z, P is gluPerspective(90, 1, 1, 1000).
    const float n = 1.0f;
    const float f = 1000.0f;
    // clang-format off
    // One line per column.
    const float expected[16] = {1.0f, 0.0f, 0.0f, 0.0f,
                                0.0f, 1.0f, 0.0f, 0.0f,
                                0.0f, 0.0f, -(f + n) / (f - n), -1.0f,
                                0.0f, 0.0f, -2.0f * f * n / (f - n), 0.0f};
    // clang-format on
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(expected[i], m[i], 1e-6f) << "entry " << i;
    }
}

TEST(mxCameraTest, NearAndFarPlanesMapToMinusOneAndPlusOne) {
    for (bool perspective : {true, false}) {
        mx::mxPointer<mxCamera> camera = makeOffAxisCamera(perspective);
        const Vector3f& e = camera->getLocation();
        const Vector3f& d = camera->getDVector();
        const Vector3f& u = camera->getUVector();
        const Vector3f& r = camera->getRVector();
        const float* m = camera->getViewProjectionMatrix();

        // Corner (rMin, uMin) and (rMax, uMax) of the near plane.
        const float n = camera->getDMin();
        const Vector3f nearLow = e + n * d + camera->getRMin() * r + camera->getUMin() * u;
        const Vector3f nearHigh = e + n * d + camera->getRMax() * r + camera->getUMax() * u;
        Projected low = toNdc(m, nearLow);
        Projected high = toNdc(m, nearHigh);
        EXPECT_NEAR(-1.0, low.x, 1e-5);
        EXPECT_NEAR(-1.0, low.y, 1e-5);
        EXPECT_NEAR(-1.0, low.z, 1e-5);
        EXPECT_NEAR(1.0, high.x, 1e-5);
        EXPECT_NEAR(1.0, high.y, 1e-5);
        EXPECT_NEAR(-1.0, high.z, 1e-5);

        const Vector3f farCentre = e + camera->getDMax() * d;
        EXPECT_NEAR(1.0, toNdc(m, farCentre).z, 1e-4);

        // w is the view depth in perspective and 1 in orthographic.
        const Projected clip = project(m, e + 3.0f * d);
        EXPECT_NEAR(perspective ? 3.0 : 1.0, clip.w, 1e-5);
    }
}

TEST(mxCameraTest, PerspectiveMatrixMatchesWm5Camera) {
    for (const Frame& frame : cFrames) {
        for (const Frustum& frustum : cFrustums) {
            mx::mxPointer<mxCamera> camera = new mxCamera(true);
            ASSERT_TRUE(camera->lookAt(frame.eye, frame.target, frame.up));
            ASSERT_TRUE(camera->setFrustum(frustum.rMin, frustum.rMax, frustum.uMin, frustum.uMax,
                                           frustum.dMin, frustum.dMax));
            expectMatchesWm5(*camera);
        }
    }
}

TEST(mxCameraTest, OrthographicMatrixMatchesWm5Camera) {
    for (const Frame& frame : cFrames) {
        for (const Frustum& frustum : cFrustums) {
            mx::mxPointer<mxCamera> camera = new mxCamera(false);
            ASSERT_TRUE(camera->lookAt(frame.eye, frame.target, frame.up));
            ASSERT_TRUE(camera->setFrustum(frustum.rMin, frustum.rMax, frustum.uMin, frustum.uMax,
                                           frustum.dMin, frustum.dMax));
            expectMatchesWm5(*camera);
        }
    }
}

TEST(mxCameraTest, DefaultCamerasMatchWm5Camera) {
    mx::mxPointer<mxCamera> perspective = new mxCamera(true);
    expectMatchesWm5(*perspective);
    mx::mxPointer<mxCamera> orthographic = new mxCamera(false);
    expectMatchesWm5(*orthographic);
}

TEST(mxCameraTest, MatrixFollowsEveryChange) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    const float* m = camera->getViewProjectionMatrix();

    camera->setLocation(Vector3f(1.0f, 2.0f, 3.0f));
    expectMatchesWm5(*camera);
    camera->setAxes(Vector3f(1.0f, 0.0f, 0.0f), Vector3f(0.0f, 1.0f, 0.0f),
                    Vector3f(0.0f, 0.0f, 1.0f));
    expectMatchesWm5(*camera);
    ASSERT_TRUE(camera->setFrustum(-2.0f, 1.0f, -1.0f, 0.5f, 0.25f, 40.0f));
    expectMatchesWm5(*camera);
    camera->setPerspective(false);
    expectMatchesWm5(*camera);
    ASSERT_TRUE(camera->setFrustum(45.0f, 2.0f, 1.0f, 10.0f));
    expectMatchesWm5(*camera);
    ASSERT_TRUE(camera->lookAt(Vector3f(9.0f, 9.0f, 9.0f), Vector3f(0.0f, 0.0f, 0.0f),
                               Vector3f(0.0f, 0.0f, 1.0f)));
    expectMatchesWm5(*camera);
    camera->setFrame(Vector3f(0.0f, -5.0f, 0.0f), Vector3f(0.0f, 1.0f, 0.0f),
                     Vector3f(0.0f, 0.0f, 1.0f), Vector3f(1.0f, 0.0f, 0.0f));
    expectMatchesWm5(*camera);

    // The matrix lives in the camera: the pointer read at the start still shows it.
    EXPECT_EQ(m, camera->getViewProjectionMatrix());
}

TEST(mxCameraTest, StyleCameraCentreRayIsExactlyMinusZ) {
    mx::mxPointer<mxCamera> camera = makeStyleCamera(true);
    Vector3f origin;
    Vector3f direction;
    ASSERT_TRUE(camera->getPickRay(0.5f, 0.5f, origin, direction));
    expectVectorEq(Vector3f(0.0f, 0.0f, 10.0f), origin);
    expectVectorEq(Vector3f(0.0f, 0.0f, -1.0f), direction);

    // The lower-left corner ray goes through the near-plane corner (-1, -1) at depth 1.
    ASSERT_TRUE(camera->getPickRay(0.0f, 0.0f, origin, direction));
    const float third = 1.0f / std::sqrt(3.0f);
    expectVectorNear(Vector3f(-third, -third, -third), direction, 1e-6f);
    // Upper right.
    ASSERT_TRUE(camera->getPickRay(1.0f, 1.0f, origin, direction));
    expectVectorNear(Vector3f(third, third, -third), direction, 1e-6f);

    // The world origin is at the centre of the view.
    const Projected centre = toNdc(camera->getViewProjectionMatrix(), Vector3f::ZERO);
    EXPECT_NEAR(0.0, centre.x, 1e-7);
    EXPECT_NEAR(0.0, centre.y, 1e-7);
}

TEST(mxCameraTest, StyleCameraOrthographicRaysRunAlongMinusZ) {
    mx::mxPointer<mxCamera> camera = makeStyleCamera(false);
    Vector3f origin;
    Vector3f direction;
    ASSERT_TRUE(camera->getPickRay(0.5f, 0.5f, origin, direction));
    expectVectorEq(Vector3f(0.0f, 0.0f, 10.0f), origin);
    expectVectorEq(Vector3f(0.0f, 0.0f, -1.0f), direction);

    ASSERT_TRUE(camera->getPickRay(0.0f, 1.0f, origin, direction));
    expectVectorEq(Vector3f(-1.0f, 1.0f, 10.0f), origin);
    expectVectorEq(Vector3f(0.0f, 0.0f, -1.0f), direction);
}

TEST(mxCameraTest, PickedPointsProjectBackPerspective) {
    mx::mxPointer<mxCamera> camera = makeOffAxisCamera(true);
    expectPickRoundTrip(*camera);
}

TEST(mxCameraTest, PickedPointsProjectBackOrthographic) {
    mx::mxPointer<mxCamera> camera = makeOffAxisCamera(false);
    expectPickRoundTrip(*camera);
}

TEST(mxCameraTest, PickedPointsProjectBackWithFieldOfViewFrustum) {
    for (bool perspective : {true, false}) {
        mx::mxPointer<mxCamera> camera = new mxCamera(perspective);
        ASSERT_TRUE(camera->lookAt(Vector3f(-6.0f, 8.0f, 3.0f), Vector3f(0.5f, 0.0f, -1.0f),
                                   Vector3f(0.0f, 1.0f, 0.0f)));
        ASSERT_TRUE(camera->setFrustum(35.0f, 16.0f / 9.0f, 0.1f, 500.0f));
        expectPickRoundTrip(*camera);
    }
}

TEST(mxCameraTest, PerspectivePickRayStartsAtEyeAndPassesThroughNearPlane) {
    mx::mxPointer<mxCamera> camera = makeOffAxisCamera(true);
    Vector3f origin;
    Vector3f direction;
    ASSERT_TRUE(camera->getPickRay(0.25f, 0.75f, origin, direction));
    expectVectorEq(camera->getLocation(), origin);

    const float r = camera->getRMin() + 0.25f * (camera->getRMax() - camera->getRMin());
    const float u = camera->getUMin() + 0.75f * (camera->getUMax() - camera->getUMin());
    Vector3f expected = camera->getDMin() * camera->getDVector() + r * camera->getRVector() +
                        u * camera->getUVector();
    expected.Normalize();
    expectVectorNear(expected, direction, 1e-6f);
}

TEST(mxCameraTest, PickRayAcceptsTheEdgesOfTheView) {
    mx::mxPointer<mxCamera> camera = new mxCamera();
    Vector3f origin;
    Vector3f direction;
    EXPECT_TRUE(camera->getPickRay(0.0f, 0.0f, origin, direction));
    EXPECT_TRUE(camera->getPickRay(1.0f, 0.0f, origin, direction));
    EXPECT_TRUE(camera->getPickRay(0.0f, 1.0f, origin, direction));
    EXPECT_TRUE(camera->getPickRay(1.0f, 1.0f, origin, direction));
}

TEST(mxCameraTest, PickRayRefusesPointsOutsideTheViewAndNaN) {
    for (bool perspective : {true, false}) {
        mx::mxPointer<mxCamera> camera = makeOffAxisCamera(perspective);
        const Vector3f sentinelOrigin(11.0f, 12.0f, 13.0f);
        const Vector3f sentinelDirection(21.0f, 22.0f, 23.0f);
        const float outside[][2] = {
            {-0.001f, 0.5f}, {1.001f, 0.5f}, {0.5f, -0.001f},   {0.5f, 1.001f},
            {cNaN, 0.5f},    {0.5f, cNaN},   {cInfinity, 0.5f}, {0.5f, -cInfinity},
        };
        for (const auto& point : outside) {
            Vector3f origin = sentinelOrigin;
            Vector3f direction = sentinelDirection;
            EXPECT_FALSE(camera->getPickRay(point[0], point[1], origin, direction))
                << point[0] << ", " << point[1];
            expectVectorEq(sentinelOrigin, origin);
            expectVectorEq(sentinelDirection, direction);
        }
    }
}

TEST(mxCameraTest, DegenerateFrameDoesNotCrash) {
    for (bool perspective : {true, false}) {
        mx::mxPointer<mxCamera> camera = new mxCamera(perspective);
        camera->setFrame(Vector3f(1.0f, 2.0f, 3.0f), Vector3f::ZERO, Vector3f::ZERO,
                         Vector3f::ZERO);
        const float* m = camera->getViewProjectionMatrix();
        for (int i = 0; i < 16; ++i) {
            EXPECT_TRUE(std::isfinite(m[i])) << "entry " << i;
        }
        Vector3f origin(7.0f, 7.0f, 7.0f);
        Vector3f direction(8.0f, 8.0f, 8.0f);
        // No direction can be formed from zero axes.
        EXPECT_FALSE(camera->getPickRay(0.5f, 0.5f, origin, direction));
        expectVectorEq(Vector3f(7.0f, 7.0f, 7.0f), origin);
        expectVectorEq(Vector3f(8.0f, 8.0f, 8.0f), direction);

        // A non-finite frame gives a non-finite matrix, but still no crash and no ray.
        camera->setFrame(Vector3f(cNaN, 0.0f, 0.0f), Vector3f(0.0f, 0.0f, -1.0f),
                         Vector3f(0.0f, 1.0f, 0.0f), Vector3f(1.0f, 0.0f, 0.0f));
        EXPECT_FALSE(camera->getPickRay(0.5f, 0.5f, origin, direction));
        const float big = std::numeric_limits<float>::max();
        camera->setFrame(Vector3f(big, big, big), Vector3f(1.0f, 1.0f, 1.0f),
                         Vector3f(0.0f, 1.0f, 0.0f), Vector3f(1.0f, 0.0f, 0.0f));
        EXPECT_NE(nullptr, camera->getViewProjectionMatrix());
    }
}
