// mxEngine: the stand-alone engine. It owns a scene, the active camera node and the 2-D
// primitives pass, knows the viewport size, and runs its controllers.
//
// updateFrame() is one frame: every attached controller's updateController, in attach order,
// with a context whose engine is this one; then the scene's world data and bounds
// (UpdateGS_Flags from the root); then the per-frame update flags (UPDATE_SUBTREE_CHANGED)
// are cleared. renderFrame() gives the controllers their beforeDraw, runs the 2-D primitives
// pass on the scene and draws the scene through a renderer (nothing is drawn while the active
// camera node holds no camera).
//
// A controller may attach or detach controllers while the engine runs them: one attached
// meanwhile is first run by the next call, one detached meanwhile is not run any more.
//
// The engine does not own its controllers: detach a controller before destroying it.
#pragma once

#include "mx2DPrimitivesPass.h"
#include "mxRendererInterface.h"

#include "scenegraph/mxEngineInterface.h"
#include "scenegraph/mxGenericControllerInterface.h"
#include "scenegraph/mxGenericRenderingContext.h"

#include <cstdint>
#include <vector>

namespace mx {

class mxEngine : public mxEngineInterface {
public:
    // An empty scene, a perspective camera at the origin looking along -Z, a 640 x 480 view.
    mxEngine();
    ~mxEngine() override;
    mxEngine(const mxEngine&) = delete;
    mxEngine& operator=(const mxEngine&) = delete;

    void getViewportSize(int& width, int& height) const override;
    // Negative sizes count as 0.
    void setViewportSize(int width, int height);

    // Makes cameraNode the active one; a null node, or one without a camera, is refused
    // (returns false) so that controllers always find a camera.
    bool setCameraNode(mxCameraNode* cameraNode);

    // Appends controller; false for null or a controller attached already.
    bool attachController(mxGenericControllerInterface* controller);
    // Removes controller; false when it is not attached.
    bool detachController(mxGenericControllerInterface* controller);
    const std::vector<mxGenericControllerInterface*>& getControllers() const {
        return controllers;
    }
    // Calls clearController on every controller.
    void resetControllers();

    void updateFrame();
    void renderFrame(mxRendererInterface& renderer);

    mx2DPrimitivesPass& edit2DPrimitivesPass() { return primitivesPass; }
    // Frames run by updateFrame so far.
    std::uint64_t getFrameCount() const { return frameCount; }

private:
    bool isAttached(const mxGenericControllerInterface* controller) const;
    // Calls call(controller) for every controller attached when the walk starts and still
    // attached when its turn comes.
    template <class Call> void forEachController(Call call);

    int viewportWidth;
    int viewportHeight;
    std::vector<mxGenericControllerInterface*> controllers;
    // Storage for the walks' copies of controllers.
    std::vector<mxGenericControllerInterface*> spareControllers;
    mxGenericRenderingContext context;
    mx2DPrimitivesPass primitivesPass;
    std::uint64_t frameCount;
};

} // namespace mx
