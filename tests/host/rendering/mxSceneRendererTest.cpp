#include "rendering/mxSceneRenderer.h"

#include "support/mxRecordingRenderer.h"

#include "scenegraph/mxCamera.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxScene.h"

#include <gtest/gtest.h>

#include <vector>

using mx::mxBaseGeometry;
using mx::mxBoundingVolume;
using mx::mxCamera;
using mx::mxLine;
using mx::mxMesh;
using mx::mxNode;
using mx::mxPointer;
using mx::mxSceneRenderer;
using mx::mxSpatial;
using mx::test::mxRecordingRenderer;
using Vector = Wm4::Vector3<float>;

namespace {

using Drawn = std::vector<mxBaseGeometry*>;

// A triangle around the origin of its model space (bound radius about 0.6), placed at
// position.
mxMesh* makeTriangle(const Vector& position) {
    mxMesh* mesh = new mxMesh(3, 1);
    mesh->setVertexPosition(0, Vector(-0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(1, Vector(0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(2, Vector(0.0f, 0.5f, 0.0f));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->editLocalTransform(true).SetTranslate(position);
    return mesh;
}

// A two-point polyline from -0.5 to +0.5 along x, placed at position.
mxLine* makeSegment(const Vector& position) {
    mxLine* line = new mxLine(2u);
    line->setVertexPosition(0, Vector(-0.5f, 0.0f, 0.0f));
    line->setVertexPosition(1, Vector(0.5f, 0.0f, 0.0f));
    line->editLocalTransform(true).SetTranslate(position);
    return line;
}

// The default camera (eye at the origin looking along -Z, 90 degrees, near 1, far 1000)
// sees depth along -Z: a point at (x, y, -d) is at depth d.
class mxSceneRendererTest : public ::testing::Test {
protected:
    void TearDown() override { mx::mxRendererInterface::SetHardwareRenderer(nullptr); }

    // Brings the scene up to date and draws it.
    void render() {
        root->UpdateGS();
        renderer.renderScene(root.get(), camera, 640, 480);
    }

    mxPointer<mxNode> root = new mx::mxScene();
    mxCamera camera;
    mxRecordingRenderer device;
    mxSceneRenderer renderer{&device};
};

} // namespace

TEST_F(mxSceneRendererTest, DrawsAGeometryInViewWithinOneFrame) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    render();
    EXPECT_EQ((std::vector<mxRecordingRenderer::CallKind>{
                  mxRecordingRenderer::BEGIN_FRAME, mxRecordingRenderer::SET_VIEW,
                  mxRecordingRenderer::PREPARE_BUFFER, mxRecordingRenderer::PREPARE_BUFFER,
                  mxRecordingRenderer::DRAW_MESH, mxRecordingRenderer::END_FRAME}),
              device.getCallKinds());
    const mxRecordingRenderer::Call& view = device.getCalls()[1];
    EXPECT_EQ(&camera, view.camera);
    EXPECT_EQ(640, view.viewportWidth);
    EXPECT_EQ(480, view.viewportHeight);
    EXPECT_EQ(Drawn{mesh.get()}, device.getDrawnGeometries());
    EXPECT_EQ(Drawn{mesh.get()}, renderer.getLastDrawn());
}

TEST_F(mxSceneRendererTest, PreparesBothGeneratedBuffersBeforeEachDraw) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    mxPointer<mxLine> line = makeSegment(Vector(0.0f, 1.0f, -10.0f));
    root->attachChild(mesh.get());
    root->attachChild(line.get());
    render();

    const std::vector<mxRecordingRenderer::Call>& calls = device.getCalls();
    ASSERT_EQ(9u, calls.size());
    const mx::mxGeometry* meshBuffers = mesh->getGeneratedGeometry();
    const mx::mxGeometry* lineBuffers = line->getGeneratedGeometry();
    const mx::mxGeometry* expected[] = {meshBuffers, lineBuffers};
    for (std::size_t geometry = 0; geometry < 2; ++geometry) {
        const std::size_t first = 2 + 3 * geometry;
        for (int buffer = 0; buffer < 2; ++buffer) {
            const mxRecordingRenderer::Call& call = calls[first + buffer];
            ASSERT_EQ(mxRecordingRenderer::PREPARE_BUFFER, call.kind);
            ASSERT_NE(nullptr, call.buffer);
            EXPECT_EQ(expected[geometry]->getGeneratedBuffer(buffer), call.buffer);
            EXPECT_EQ(call.buffer->getVersion(), call.version);
            EXPECT_FALSE(call.force);
        }
    }
    EXPECT_EQ(mxRecordingRenderer::DRAW_MESH, calls[4].kind);
    EXPECT_EQ(mesh.get(), calls[4].geometry);
    EXPECT_EQ(mxRecordingRenderer::DRAW_LINE, calls[7].kind);
    EXPECT_EQ(line.get(), calls[7].geometry);
}

TEST_F(mxSceneRendererTest, GeneratedBuffersHoldTheModelData) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    render();
    const mx::mxBuffer* vertices = device.getCalls()[2].buffer;
    const mx::mxBuffer* indices = device.getCalls()[3].buffer;
    ASSERT_EQ(mx::mxBuffer::VERTEX, vertices->getKind());
    ASSERT_EQ(3u, vertices->getElementCount());
    EXPECT_EQ(0.5f, static_cast<const float*>(vertices->getData())[3]);
    ASSERT_EQ(mx::mxBuffer::INDEX, indices->getKind());
    ASSERT_EQ(3u, indices->getElementCount());
    EXPECT_EQ(2u, static_cast<const std::uint32_t*>(indices->getData())[2]);
}

TEST_F(mxSceneRendererTest, DrawsMeshesBeforeLinesEachInWalkOrder) {
    mxPointer<mxLine> firstLine = makeSegment(Vector(0.0f, 0.0f, -10.0f));
    mxPointer<mxNode> group = new mxNode();
    mxPointer<mxMesh> innerMesh = makeTriangle(Vector(1.0f, 0.0f, -10.0f));
    mxPointer<mxLine> innerLine = makeSegment(Vector(0.0f, 2.0f, -10.0f));
    mxPointer<mxMesh> lastMesh = makeTriangle(Vector(-1.0f, 0.0f, -10.0f));
    root->attachChild(firstLine.get());
    root->attachChild(group.get());
    group->attachChild(innerLine.get());
    group->attachChild(innerMesh.get());
    root->attachChild(lastMesh.get());
    render();
    const Drawn expected{innerMesh.get(), lastMesh.get(), firstLine.get(), innerLine.get()};
    EXPECT_EQ(expected, device.getDrawnGeometries());
    EXPECT_EQ(expected, renderer.getLastDrawn());
}

TEST_F(mxSceneRendererTest, CullingModeAlwaysSkipsTheObjectAndItsSubtree) {
    mxPointer<mxNode> group = new mxNode();
    mxPointer<mxMesh> inGroup = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    mxPointer<mxMesh> hidden = makeTriangle(Vector(1.0f, 0.0f, -10.0f));
    mxPointer<mxMesh> shown = makeTriangle(Vector(-1.0f, 0.0f, -10.0f));
    root->attachChild(group.get());
    group->attachChild(inGroup.get());
    root->attachChild(hidden.get());
    root->attachChild(shown.get());
    group->setCullingMode(mxSpatial::CULL_ALWAYS);
    inGroup->setCullingMode(mxSpatial::CULL_NEVER);
    hidden->setCullingMode(mxSpatial::CULL_ALWAYS);
    render();
    EXPECT_EQ(Drawn{shown.get()}, device.getDrawnGeometries());
}

TEST_F(mxSceneRendererTest, CullingModeAlwaysOnTheRootDrawsNothing) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    root->setCullingMode(mxSpatial::CULL_ALWAYS);
    render();
    EXPECT_TRUE(device.getDrawnGeometries().empty());
    EXPECT_TRUE(renderer.getLastDrawn().empty());
}

TEST_F(mxSceneRendererTest, DynamicCullingSkipsObjectsOutsideAPerspectiveView) {
    mxPointer<mxMesh> behind = makeTriangle(Vector(0.0f, 0.0f, 10.0f));
    mxPointer<mxMesh> beyondFar = makeTriangle(Vector(0.0f, 0.0f, -1100.0f));
    mxPointer<mxMesh> right = makeTriangle(Vector(30.0f, 0.0f, -10.0f));
    mxPointer<mxMesh> below = makeTriangle(Vector(0.0f, -30.0f, -10.0f));
    mxPointer<mxMesh> beforeNear = makeTriangle(Vector(0.0f, 0.0f, -0.2f));
    mxPointer<mxMesh> inside = makeTriangle(Vector(5.0f, 5.0f, -10.0f));
    for (mxMesh* mesh : {behind.get(), beyondFar.get(), right.get(), below.get(),
                         beforeNear.get(), inside.get()}) {
        root->attachChild(mesh);
    }
    render();
    EXPECT_EQ(Drawn{inside.get()}, device.getDrawnGeometries());
}

TEST_F(mxSceneRendererTest, DynamicCullingKeepsObjectsStraddlingTheViewBoundary) {
    // The right side plane is x = depth; the far plane is at depth 1000, the near one at 1.
    mxPointer<mxMesh> rightEdge = makeTriangle(Vector(10.3f, 0.0f, -10.0f));
    mxPointer<mxMesh> farEdge = makeTriangle(Vector(0.0f, 0.0f, -1000.3f));
    mxPointer<mxMesh> nearEdge = makeTriangle(Vector(0.0f, 0.0f, -0.7f));
    root->attachChild(rightEdge.get());
    root->attachChild(farEdge.get());
    root->attachChild(nearEdge.get());
    render();
    EXPECT_EQ((Drawn{rightEdge.get(), farEdge.get(), nearEdge.get()}),
              device.getDrawnGeometries());
}

TEST_F(mxSceneRendererTest, DynamicCullingSkipsObjectsOutsideAnOrthographicView) {
    // The orthographic view box is [-1, 1] x [-1, 1] at every depth from 1 to 1000.
    camera.setPerspective(false);
    mxPointer<mxMesh> aside = makeTriangle(Vector(5.0f, 0.0f, -10.0f));
    mxPointer<mxMesh> above = makeTriangle(Vector(0.0f, 3.0f, -10.0f));
    mxPointer<mxMesh> behind = makeTriangle(Vector(0.0f, 0.0f, 10.0f));
    mxPointer<mxMesh> beyondFar = makeTriangle(Vector(0.0f, 0.0f, -1100.0f));
    mxPointer<mxMesh> straddling = makeTriangle(Vector(-1.3f, 0.0f, -500.0f));
    mxPointer<mxMesh> inside = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    for (mxMesh* mesh :
         {aside.get(), above.get(), behind.get(), beyondFar.get(), straddling.get(),
          inside.get()}) {
        root->attachChild(mesh);
    }
    render();
    EXPECT_EQ((Drawn{straddling.get(), inside.get()}), device.getDrawnGeometries());
}

TEST_F(mxSceneRendererTest, DynamicCullingOfANodeSkipsItsWholeSubtree) {
    mxPointer<mxNode> group = new mxNode();
    mxPointer<mxMesh> child = makeTriangle(Vector(0.0f, 0.0f, 10.0f));
    root->attachChild(group.get());
    group->attachChild(child.get());
    child->setCullingMode(mxSpatial::CULL_NEVER);
    render();
    EXPECT_TRUE(device.getDrawnGeometries().empty());
}

TEST_F(mxSceneRendererTest, CullingModeNeverDrawsObjectsOutOfView) {
    mxPointer<mxMesh> behind = makeTriangle(Vector(0.0f, 0.0f, 10.0f));
    mxPointer<mxLine> aside = makeSegment(Vector(500.0f, 0.0f, -10.0f));
    root->attachChild(behind.get());
    root->attachChild(aside.get());
    behind->setCullingMode(mxSpatial::CULL_NEVER);
    aside->setCullingMode(mxSpatial::CULL_NEVER);
    render();
    EXPECT_EQ((Drawn{behind.get(), aside.get()}), device.getDrawnGeometries());
}

TEST_F(mxSceneRendererTest, GeometryWithNothingToDrawIsSkipped) {
    mxPointer<mxMesh> noTriangle = new mxMesh(3, 0);
    mxPointer<mxMesh> badIndex = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    badIndex->setTriangle(0, 0, 1, 7);
    noTriangle->setCullingMode(mxSpatial::CULL_NEVER);
    badIndex->setCullingMode(mxSpatial::CULL_NEVER);
    root->attachChild(noTriangle.get());
    root->attachChild(badIndex.get());
    render();
    EXPECT_TRUE(device.getDrawnGeometries().empty());
    EXPECT_EQ(0, device.countCalls(mxRecordingRenderer::PREPARE_BUFFER));
}

TEST_F(mxSceneRendererTest, RefusedBufferSkipsThatGeometryOnly) {
    mxPointer<mxMesh> first = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    mxPointer<mxMesh> second = makeTriangle(Vector(1.0f, 0.0f, -10.0f));
    root->attachChild(first.get());
    root->attachChild(second.get());
    // The fourth buffer is the second mesh's index buffer.
    device.refusePrepareBufferFrom(4);
    render();
    EXPECT_EQ(Drawn{first.get()}, device.getDrawnGeometries());
    EXPECT_EQ(Drawn{first.get()}, renderer.getLastDrawn());
    EXPECT_EQ(mxRecordingRenderer::END_FRAME, device.getCallKinds().back());
}

TEST_F(mxSceneRendererTest, RefusedVertexBufferSkipsTheDraw) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    mxPointer<mxLine> line = makeSegment(Vector(0.0f, 1.0f, -10.0f));
    root->attachChild(mesh.get());
    root->attachChild(line.get());
    device.refusePrepareBufferFrom(1);
    render();
    EXPECT_TRUE(device.getDrawnGeometries().empty());
    EXPECT_TRUE(renderer.getLastDrawn().empty());
    EXPECT_EQ(mxRecordingRenderer::BEGIN_FRAME, device.getCallKinds().front());
    EXPECT_EQ(mxRecordingRenderer::END_FRAME, device.getCallKinds().back());
}

TEST_F(mxSceneRendererTest, LastDrawnFollowsTheLatestRender) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    render();
    ASSERT_EQ(Drawn{mesh.get()}, renderer.getLastDrawn());
    mesh->setCullingMode(mxSpatial::CULL_ALWAYS);
    render();
    EXPECT_TRUE(renderer.getLastDrawn().empty());
}

TEST_F(mxSceneRendererTest, NullRootDrawsNothing) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    render();
    device.clear();
    renderer.renderScene(nullptr, camera, 640, 480);
    EXPECT_TRUE(device.getCalls().empty());
    EXPECT_TRUE(renderer.getLastDrawn().empty());
}

TEST_F(mxSceneRendererTest, WithoutAnyHardwareRendererNothingIsDrawn) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    root->UpdateGS();
    ASSERT_EQ(nullptr, mx::mxRendererInterface::GetHardwareRenderer());
    mxSceneRenderer orphan;
    orphan.renderScene(root.get(), camera, 640, 480);
    EXPECT_TRUE(orphan.getLastDrawn().empty());
}

TEST_F(mxSceneRendererTest, WithoutOwnHardwareRendererDrawsThroughTheCurrentOne) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    root->UpdateGS();
    mxSceneRenderer shared;
    mx::mxRendererInterface::SetHardwareRenderer(&device);
    shared.renderScene(root.get(), camera, 640, 480);
    EXPECT_EQ(Drawn{mesh.get()}, device.getDrawnGeometries());

    // The current renderer is asked for at each call.
    mxRecordingRenderer other;
    mx::mxRendererInterface::SetHardwareRenderer(&other);
    shared.renderScene(root.get(), camera, 640, 480);
    EXPECT_EQ(1u, device.getDrawnGeometries().size());
    EXPECT_EQ(Drawn{mesh.get()}, other.getDrawnGeometries());

    mx::mxRendererInterface::SetHardwareRenderer(nullptr);
    shared.renderScene(root.get(), camera, 640, 480);
    EXPECT_TRUE(shared.getLastDrawn().empty());
    EXPECT_EQ(1u, other.getDrawnGeometries().size());
}

TEST_F(mxSceneRendererTest, OwnHardwareRendererWinsOverTheCurrentOne) {
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    mxRecordingRenderer current;
    mx::mxRendererInterface::SetHardwareRenderer(&current);
    render();
    EXPECT_EQ(Drawn{mesh.get()}, device.getDrawnGeometries());
    EXPECT_TRUE(current.getCalls().empty());
}

TEST(mxSceneRendererIsInViewTest, PerspectiveCameraSeesSpheresInFrontWithinItsAngle) {
    const mxCamera camera;
    EXPECT_TRUE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, -5), 1.0f)));
    EXPECT_TRUE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(4, -4, -5), 0.1f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, 5), 1.0f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(7, 0, -5), 1.0f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, -7, -5), 1.0f)));
    EXPECT_FALSE(
        mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, -1002), 1.0f)));
    // A sphere around the eye reaches past the near plane.
    EXPECT_TRUE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, 0), 2.0f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, 0), 0.5f)));
}

TEST(mxSceneRendererIsInViewTest, OrthographicCameraSeesItsBoxOnly) {
    mxCamera camera(false);
    EXPECT_TRUE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, -5), 0.1f)));
    EXPECT_TRUE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(1.5f, 0, -5), 0.6f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(4, 0, -5), 0.1f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, 5), 0.1f)));
}

TEST(mxSceneRendererIsInViewTest, FollowsTheCameraFrame) {
    mxCamera camera;
    // Looking along +X from (10, 0, 0).
    ASSERT_TRUE(camera.lookAt(Vector(10, 0, 0), Vector(20, 0, 0), Vector(0, 1, 0)));
    EXPECT_TRUE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(20, 0, 0), 1.0f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, 0), 1.0f)));
    EXPECT_FALSE(mxSceneRenderer::isInView(camera, mxBoundingVolume(Vector(0, 0, -5), 1.0f)));
}

TEST_F(mxSceneRendererTest, OverlaySubtreeIsDrawnAfterBeginOverlayMeshesBeforeLines) {
    // The overlay node comes first in the walk, yet its geometries are drawn last.
    mxPointer<mxNode> overlay = new mxNode();
    overlay->setOverlay(true);
    mxPointer<mxLine> overlayLine = makeSegment(Vector(0.0f, 1.0f, -10.0f));
    mxPointer<mxMesh> overlayMesh = makeTriangle(Vector(0.0f, 1.0f, -10.0f));
    overlay->attachChild(overlayLine.get());
    overlay->attachChild(overlayMesh.get());
    root->attachChild(overlay.get());
    mxPointer<mxLine> line = makeSegment(Vector(0.0f, -1.0f, -10.0f));
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, -1.0f, -10.0f));
    root->attachChild(line.get());
    root->attachChild(mesh.get());
    render();

    EXPECT_EQ((Drawn{mesh.get(), line.get(), overlayMesh.get(), overlayLine.get()}),
              renderer.getLastDrawn());
    const std::vector<mxRecordingRenderer::CallKind> kinds = device.getCallKinds();
    std::vector<mxRecordingRenderer::CallKind> draws;
    for (mxRecordingRenderer::CallKind kind : kinds) {
        if (kind == mxRecordingRenderer::DRAW_MESH || kind == mxRecordingRenderer::DRAW_LINE ||
            kind == mxRecordingRenderer::BEGIN_OVERLAY) {
            draws.push_back(kind);
        }
    }
    EXPECT_EQ((std::vector<mxRecordingRenderer::CallKind>{
                  mxRecordingRenderer::DRAW_MESH, mxRecordingRenderer::DRAW_LINE,
                  mxRecordingRenderer::BEGIN_OVERLAY, mxRecordingRenderer::DRAW_MESH,
                  mxRecordingRenderer::DRAW_LINE}),
              draws);
    EXPECT_EQ(mxRecordingRenderer::END_FRAME, kinds.back());
}

TEST_F(mxSceneRendererTest, BeginOverlayIsNotCalledWhenNoOverlayGeometryIsDrawn) {
    // An overlay node whose only geometry is culled leaves nothing to draw over the scene.
    mxPointer<mxNode> overlay = new mxNode();
    overlay->setOverlay(true);
    mxPointer<mxLine> hidden = makeSegment(Vector(0.0f, 0.0f, -10.0f));
    hidden->setCullingMode(mxSpatial::CULL_ALWAYS);
    overlay->attachChild(hidden.get());
    root->attachChild(overlay.get());
    mxPointer<mxMesh> mesh = makeTriangle(Vector(0.0f, 0.0f, -10.0f));
    root->attachChild(mesh.get());
    render();

    EXPECT_EQ(0, device.countCalls(mxRecordingRenderer::BEGIN_OVERLAY));
    EXPECT_EQ((Drawn{mesh.get()}), renderer.getLastDrawn());
}

TEST_F(mxSceneRendererTest, OverlayGeometryBelowAPlainNodeOfAnOverlayIsStillAnOverlay) {
    // The mark covers the whole subtree: a child that is not marked itself still counts.
    mxPointer<mxNode> overlay = new mxNode();
    overlay->setOverlay(true);
    mxPointer<mxNode> inner = new mxNode();
    mxPointer<mxLine> line = makeSegment(Vector(0.0f, 0.0f, -10.0f));
    inner->attachChild(line.get());
    overlay->attachChild(inner.get());
    root->attachChild(overlay.get());
    render();

    EXPECT_FALSE(inner->isOverlay());
    EXPECT_EQ(1, device.countCalls(mxRecordingRenderer::BEGIN_OVERLAY));
    EXPECT_EQ((Drawn{line.get()}), renderer.getLastDrawn());
}
