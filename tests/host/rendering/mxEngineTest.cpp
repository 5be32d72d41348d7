#include "rendering/mxEngine.h"

#include "rendering/mxSceneRenderer.h"
#include "support/mxRecordingRenderer.h"

#include "scenegraph/mxCamera.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using mx::mxCamera;
using mx::mxCameraNode;
using mx::mxEngine;
using mx::mxGenericControllerInterface;
using mx::mxGenericRenderingContext;
using mx::mxNode;
using mx::mxPointer;
using mx::mxSpatial;

namespace {

// A controller that writes what it is asked to do into a shared journal, as "<name>:<what>",
// remembers the context it was handed, and runs an optional action inside updateController.
class RecordingController : public mxGenericControllerInterface {
public:
    RecordingController(std::string name, std::vector<std::string>& journal)
        : name(std::move(name)), journal(journal) {}

    void updateController(mxGenericRenderingContext* context) override {
        journal.push_back(name + ":update");
        lastContext = context;
        ++updates;
        if (onUpdate) {
            onUpdate(context);
        }
    }
    void beforeDraw(mxGenericRenderingContext* context) override {
        journal.push_back(name + ":beforeDraw");
        lastContext = context;
    }
    void clearController() override { journal.push_back(name + ":clear"); }

    std::string name;
    std::vector<std::string>& journal;
    mxGenericRenderingContext* lastContext = nullptr;
    int updates = 0;
    std::function<void(mxGenericRenderingContext*)> onUpdate;
};

// A renderer that records what the engine asks it to draw.
class RecordingSceneRenderer : public mx::mxRendererInterface {
public:
    explicit RecordingSceneRenderer(std::vector<std::string>* journal = nullptr)
        : journal(journal) {}

    void renderScene(mxSpatial* sceneRoot, const mxCamera& sceneCamera, int width,
                     int height) override {
        if (journal) {
            journal->push_back("render");
        }
        ++calls;
        root = sceneRoot;
        camera = &sceneCamera;
        viewportWidth = width;
        viewportHeight = height;
    }

    std::vector<std::string>* journal;
    int calls = 0;
    mxSpatial* root = nullptr;
    const mxCamera* camera = nullptr;
    int viewportWidth = -1;
    int viewportHeight = -1;
};

// What the 2-D pass analyse function below saw; the function is a plain function pointer,
// so it reports through globals.
std::vector<std::string>* analyseJournal = nullptr;
mxSpatial* analysedRoot = nullptr;
int analyseCalls = 0;

void recordAnalyse(mx::mx2DPrimitivesPass*, mxSpatial* root) {
    ++analyseCalls;
    analysedRoot = root;
    if (analyseJournal) {
        analyseJournal->push_back("analyse");
    }
}

class mxEngineTest : public ::testing::Test {
protected:
    void SetUp() override {
        analyseJournal = nullptr;
        analysedRoot = nullptr;
        analyseCalls = 0;
    }
    void TearDown() override {
        mx::mx2DPrimitivesPass::UnregisterAnalyseFunction(&recordAnalyse);
        analyseJournal = nullptr;
    }

    mxEngine engine;
    std::vector<std::string> journal;
};

// A triangle around the origin of its model space, about 0.6 in radius.
mx::mxMesh* makeTriangle() {
    mx::mxMesh* mesh = new mx::mxMesh(3, 1);
    mesh->setVertexPosition(0, Wm4::Vector3<float>(-0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(1, Wm4::Vector3<float>(0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(2, Wm4::Vector3<float>(0.0f, 0.5f, 0.0f));
    mesh->setTriangle(0, 0, 1, 2);
    return mesh;
}

} // namespace

TEST_F(mxEngineTest, StartsWithAnEmptySceneAndAPerspectiveCameraAtTheOrigin) {
    ASSERT_NE(nullptr, engine.getScene());
    EXPECT_EQ(0, engine.getScene()->getChildCount());
    ASSERT_NE(nullptr, engine.getCameraNode());
    const mxCamera* camera = engine.getCameraNode()->getCamera();
    ASSERT_NE(nullptr, camera);
    EXPECT_TRUE(camera->isPerspective());
    EXPECT_EQ(Wm4::Vector3<float>(0.0f, 0.0f, 0.0f), camera->getLocation());
    EXPECT_EQ(Wm4::Vector3<float>(0.0f, 0.0f, -1.0f), camera->getDVector());
    EXPECT_TRUE(engine.getControllers().empty());
    EXPECT_EQ(0u, engine.getFrameCount());
}

TEST_F(mxEngineTest, ViewportIs640By480UntilSet) {
    int width = 0;
    int height = 0;
    engine.getViewportSize(width, height);
    EXPECT_EQ(640, width);
    EXPECT_EQ(480, height);
    engine.setViewportSize(1024, 768);
    engine.getViewportSize(width, height);
    EXPECT_EQ(1024, width);
    EXPECT_EQ(768, height);
}

TEST_F(mxEngineTest, NegativeViewportSizesCountAsZero) {
    int width = -1;
    int height = -1;
    engine.setViewportSize(-5, 300);
    engine.getViewportSize(width, height);
    EXPECT_EQ(0, width);
    EXPECT_EQ(300, height);
    engine.setViewportSize(200, -1);
    engine.getViewportSize(width, height);
    EXPECT_EQ(200, width);
    EXPECT_EQ(0, height);
}

TEST_F(mxEngineTest, SetCameraNodeRefusesANullNode) {
    mxCameraNode* before = engine.getCameraNode();
    EXPECT_FALSE(engine.setCameraNode(nullptr));
    EXPECT_EQ(before, engine.getCameraNode());
}

TEST_F(mxEngineTest, SetCameraNodeRefusesANodeWithoutCamera) {
    mxPointer<mxCameraNode> empty = new mxCameraNode();
    mxCameraNode* before = engine.getCameraNode();
    EXPECT_FALSE(engine.setCameraNode(empty.get()));
    EXPECT_EQ(before, engine.getCameraNode());
    EXPECT_EQ(1, empty->GetReferences());
}

TEST_F(mxEngineTest, SetCameraNodeMakesANodeWithACameraTheActiveOne) {
    mxPointer<mxCameraNode> node = new mxCameraNode(new mxCamera(false));
    EXPECT_TRUE(engine.setCameraNode(node.get()));
    EXPECT_EQ(node.get(), engine.getCameraNode());
    // The engine holds the node: it stays alive after the test lets go of it.
    EXPECT_EQ(2, node->GetReferences());
}

TEST_F(mxEngineTest, AttachControllerRefusesNullAndDuplicates) {
    RecordingController first("first", journal);
    EXPECT_FALSE(engine.attachController(nullptr));
    EXPECT_TRUE(engine.attachController(&first));
    EXPECT_FALSE(engine.attachController(&first));
    ASSERT_EQ(1u, engine.getControllers().size());
    EXPECT_EQ(&first, engine.getControllers()[0]);
}

TEST_F(mxEngineTest, DetachControllerRefusesUnknownAndNull) {
    RecordingController first("first", journal);
    RecordingController second("second", journal);
    engine.attachController(&first);
    EXPECT_FALSE(engine.detachController(&second));
    EXPECT_FALSE(engine.detachController(nullptr));
    EXPECT_EQ(1u, engine.getControllers().size());
    EXPECT_TRUE(engine.detachController(&first));
    EXPECT_TRUE(engine.getControllers().empty());
    EXPECT_FALSE(engine.detachController(&first));
}

TEST_F(mxEngineTest, UpdateFrameRunsEveryControllerOnceInAttachOrder) {
    RecordingController first("first", journal);
    RecordingController second("second", journal);
    RecordingController third("third", journal);
    engine.attachController(&second);
    engine.attachController(&first);
    engine.attachController(&third);
    engine.updateFrame();
    EXPECT_EQ((std::vector<std::string>{"second:update", "first:update", "third:update"}),
              journal);
    engine.updateFrame();
    EXPECT_EQ(6u, journal.size());
    EXPECT_EQ(2, first.updates);
    EXPECT_EQ(2, second.updates);
    EXPECT_EQ(2, third.updates);
}

TEST_F(mxEngineTest, ControllersGetAContextWhoseEngineIsTheEngine) {
    RecordingController first("first", journal);
    mx::mxEngineInterface* seen = nullptr;
    first.onUpdate = [&seen](mxGenericRenderingContext* context) {
        seen = context->getEngine();
    };
    engine.attachController(&first);
    engine.updateFrame();
    ASSERT_NE(nullptr, first.lastContext);
    EXPECT_EQ(&engine, seen);
}

TEST_F(mxEngineTest, DetachedControllerIsNotRunAnyMore) {
    RecordingController first("first", journal);
    RecordingController second("second", journal);
    engine.attachController(&first);
    engine.attachController(&second);
    engine.updateFrame();
    engine.detachController(&first);
    engine.updateFrame();
    EXPECT_EQ(1, first.updates);
    EXPECT_EQ(2, second.updates);
}

TEST_F(mxEngineTest, UpdateFrameBringsWorldTransformsUpToDate) {
    mxPointer<mxNode> parent = new mxNode();
    mxPointer<mxNode> child = new mxNode();
    engine.getScene()->attachChild(parent.get());
    parent->attachChild(child.get());
    engine.updateFrame();

    child->editLocalTransform(true).SetTranslate(Wm4::Vector3<float>(1.0f, 2.0f, 3.0f));
    engine.updateFrame();
    EXPECT_EQ(Wm4::Vector3<float>(1.0f, 2.0f, 3.0f), child->getWorldTransform().GetTranslate());

    parent->editLocalTransform(true).SetTranslate(Wm4::Vector3<float>(10.0f, 0.0f, 0.0f));
    engine.updateFrame();
    EXPECT_EQ(Wm4::Vector3<float>(11.0f, 2.0f, 3.0f), child->getWorldTransform().GetTranslate());
}

TEST_F(mxEngineTest, UpdateFrameLeavesNoWorkPendingAndBoundsEnclosingTheScene) {
    mxPointer<mxNode> parent = new mxNode();
    mxPointer<mx::mxMesh> mesh = makeTriangle();
    engine.getScene()->attachChild(parent.get());
    parent->attachChild(mesh.get());
    engine.updateFrame();
    mesh->editLocalTransform(true).SetTranslate(Wm4::Vector3<float>(0.0f, 0.0f, -20.0f));
    engine.updateFrame();

    EXPECT_EQ(0u, engine.getScene()->getDirtyFlags());
    EXPECT_EQ(0u, parent->getDirtyFlags());
    EXPECT_EQ(0u, mesh->getDirtyFlags());
    const mx::mxBoundingVolume& sceneBound = engine.getScene()->getWorldBound();
    EXPECT_TRUE(sceneBound.contains(Wm4::Vector3<float>(-0.5f, -0.5f, -20.0f), 1e-4f));
    EXPECT_TRUE(sceneBound.contains(Wm4::Vector3<float>(0.0f, 0.5f, -20.0f), 1e-4f));
    EXPECT_FALSE(sceneBound.contains(Wm4::Vector3<float>(0.0f, 0.0f, 0.0f)));
}

TEST_F(mxEngineTest, UpdateFrameClearsSubtreeChangedEverywhere) {
    mxPointer<mxNode> parent = new mxNode();
    mxPointer<mxNode> child = new mxNode();
    mxPointer<mxNode> grandChild = new mxNode();
    engine.getScene()->attachChild(parent.get());
    parent->attachChild(child.get());
    child->attachChild(grandChild.get());
    ASSERT_NE(0u, engine.getScene()->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED);
    ASSERT_NE(0u, child->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED);

    engine.updateFrame();
    EXPECT_EQ(0u, engine.getScene()->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED);
    EXPECT_EQ(0u, parent->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED);
    EXPECT_EQ(0u, child->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED);
    EXPECT_EQ(0u, grandChild->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED);
}

TEST_F(mxEngineTest, UpdateFrameKeepsOtherUpdateFlags) {
    mxPointer<mxNode> parent = new mxNode();
    engine.getScene()->attachChild(parent.get());
    parent->setUpdateFlags(parent->getUpdateFlags() | 0x1u);
    engine.updateFrame();
    EXPECT_EQ(0x1u, parent->getUpdateFlags());
}

TEST_F(mxEngineTest, ControllersSeeSubtreeChangedOnlyInTheFrameAfterAnAttach) {
    RecordingController watcher("watcher", journal);
    std::vector<bool> seen;
    mxEngine* running = &engine;
    watcher.onUpdate = [&seen, running](mxGenericRenderingContext*) {
        seen.push_back((running->getScene()->getUpdateFlags() &
                        mxSpatial::UPDATE_SUBTREE_CHANGED) != 0);
    };
    engine.attachController(&watcher);
    engine.updateFrame();

    mxPointer<mxNode> parent = new mxNode();
    engine.getScene()->attachChild(parent.get());
    engine.updateFrame();
    engine.updateFrame();
    // A detach is a change of the subtree too.
    engine.getScene()->detachChild(parent.get());
    engine.updateFrame();
    engine.updateFrame();

    EXPECT_EQ((std::vector<bool>{false, true, false, true, false}), seen);
}

TEST_F(mxEngineTest, ControllerAttachingAnotherDuringAFrameRunsItFromTheNextFrame) {
    RecordingController first("first", journal);
    RecordingController second("second", journal);
    RecordingController late("late", journal);
    mxEngine* running = &engine;
    first.onUpdate = [running, &late](mxGenericRenderingContext*) {
        running->attachController(&late);
    };
    engine.attachController(&first);
    engine.attachController(&second);
    engine.updateFrame();
    EXPECT_EQ((std::vector<std::string>{"first:update", "second:update"}), journal);
    journal.clear();
    engine.updateFrame();
    EXPECT_EQ((std::vector<std::string>{"first:update", "second:update", "late:update"}),
              journal);
    EXPECT_EQ(3u, engine.getControllers().size());
}

TEST_F(mxEngineTest, ControllerDetachedDuringAFrameIsNotRunLaterInThatFrame) {
    RecordingController first("first", journal);
    auto second = std::make_unique<RecordingController>("second", journal);
    RecordingController third("third", journal);
    mxEngine* running = &engine;
    // The owner of the second controller detaches and destroys it during the frame.
    first.onUpdate = [running, &second](mxGenericRenderingContext*) {
        if (second) {
            running->detachController(second.get());
            second.reset();
        }
    };
    engine.attachController(&first);
    engine.attachController(second.get());
    engine.attachController(&third);
    engine.updateFrame();
    EXPECT_EQ((std::vector<std::string>{"first:update", "third:update"}), journal);
    EXPECT_EQ(2u, engine.getControllers().size());
}

TEST_F(mxEngineTest, ControllerDetachingItselfDuringAFrameDoesNotStopTheOthers) {
    RecordingController first("first", journal);
    RecordingController second("second", journal);
    mxEngine* running = &engine;
    first.onUpdate = [running, &first](mxGenericRenderingContext*) {
        running->detachController(&first);
    };
    engine.attachController(&first);
    engine.attachController(&second);
    engine.updateFrame();
    engine.updateFrame();
    EXPECT_EQ((std::vector<std::string>{"first:update", "second:update", "second:update"}),
              journal);
}

TEST_F(mxEngineTest, ResetControllersClearsEveryController) {
    RecordingController first("first", journal);
    RecordingController second("second", journal);
    engine.attachController(&first);
    engine.attachController(&second);
    engine.resetControllers();
    EXPECT_EQ((std::vector<std::string>{"first:clear", "second:clear"}), journal);
    EXPECT_EQ(2u, engine.getControllers().size());
}

TEST_F(mxEngineTest, RenderFrameGivesBeforeDrawThenRunsThe2DPassThenDraws) {
    RecordingController first("first", journal);
    RecordingController second("second", journal);
    engine.attachController(&first);
    engine.attachController(&second);
    analyseJournal = &journal;
    ASSERT_TRUE(mx::mx2DPrimitivesPass::RegisterAnalyseFunction(&recordAnalyse));
    RecordingSceneRenderer renderer(&journal);

    engine.renderFrame(renderer);

    EXPECT_EQ((std::vector<std::string>{"first:beforeDraw", "second:beforeDraw", "analyse",
                                         "render"}),
              journal);
    ASSERT_NE(nullptr, first.lastContext);
    EXPECT_EQ(&engine, first.lastContext->getEngine());
    EXPECT_EQ(engine.getScene(), analysedRoot);
    EXPECT_TRUE(mx::mx2DPrimitivesPass::UnregisterAnalyseFunction(&recordAnalyse));
}

TEST_F(mxEngineTest, RenderFrameDrawsTheSceneWithTheActiveCameraAndViewport) {
    mxPointer<mxCameraNode> node = new mxCameraNode(new mxCamera(false));
    engine.setCameraNode(node.get());
    engine.setViewportSize(320, 200);
    RecordingSceneRenderer renderer;
    engine.renderFrame(renderer);
    EXPECT_EQ(1, renderer.calls);
    EXPECT_EQ(engine.getScene(), renderer.root);
    EXPECT_EQ(node->getCamera(), renderer.camera);
    EXPECT_EQ(320, renderer.viewportWidth);
    EXPECT_EQ(200, renderer.viewportHeight);
}

TEST_F(mxEngineTest, RenderFrameDrawsNothingWhenTheActiveNodeLostItsCamera) {
    RecordingController first("first", journal);
    engine.attachController(&first);
    engine.getCameraNode()->setCamera(nullptr);
    RecordingSceneRenderer renderer;
    engine.renderFrame(renderer);
    EXPECT_EQ(0, renderer.calls);
    EXPECT_EQ((std::vector<std::string>{"first:beforeDraw"}), journal);
}

TEST_F(mxEngineTest, RenderFrameDrawsTheSceneThroughASceneRenderer) {
    mxPointer<mx::mxMesh> mesh = makeTriangle();
    mesh->editLocalTransform(true).SetTranslate(Wm4::Vector3<float>(0.0f, 0.0f, -10.0f));
    engine.getScene()->attachChild(mesh.get());
    engine.updateFrame();
    mx::test::mxRecordingRenderer device;
    mx::mxSceneRenderer renderer(&device);

    engine.renderFrame(renderer);

    EXPECT_EQ(std::vector<mx::mxBaseGeometry*>{mesh.get()}, device.getDrawnGeometries());
    ASSERT_EQ(1, device.countCalls(mx::test::mxRecordingRenderer::SET_VIEW));
    const mx::test::mxRecordingRenderer::Call& view = device.getCalls()[1];
    ASSERT_EQ(mx::test::mxRecordingRenderer::SET_VIEW, view.kind);
    EXPECT_EQ(engine.getCameraNode()->getCamera(), view.camera);
    EXPECT_EQ(640, view.viewportWidth);
    EXPECT_EQ(480, view.viewportHeight);
}

TEST_F(mxEngineTest, FrameCountCountsUpdatedFramesOnly) {
    RecordingSceneRenderer renderer;
    engine.updateFrame();
    engine.updateFrame();
    engine.renderFrame(renderer);
    engine.updateFrame();
    EXPECT_EQ(3u, engine.getFrameCount());
}
