#include "mxEngine.h"

#include "scenegraph/mxCamera.h"

#include <algorithm>

namespace mx {

mxEngine::mxEngine() : viewportWidth(640), viewportHeight(480), context(this), frameCount(0) {
    scene = new mxScene();
    cameraNode = new mxCameraNode(new mxCamera(true));
}

mxEngine::~mxEngine() = default;

void mxEngine::getViewportSize(int& width, int& height) const {
    width = viewportWidth;
    height = viewportHeight;
}

void mxEngine::setViewportSize(int width, int height) {
    viewportWidth = std::max(width, 0);
    viewportHeight = std::max(height, 0);
}

bool mxEngine::setCameraNode(mxCameraNode* node) {
    if (!node || !node->getCamera()) {
        return false;
    }
    cameraNode = node;
    return true;
}

bool mxEngine::attachController(mxGenericControllerInterface* controller) {
    if (!controller ||
        std::find(controllers.begin(), controllers.end(), controller) != controllers.end()) {
        return false;
    }
    controllers.push_back(controller);
    return true;
}

bool mxEngine::detachController(mxGenericControllerInterface* controller) {
    const auto found = std::find(controllers.begin(), controllers.end(), controller);
    if (!controller || found == controllers.end()) {
        return false;
    }
    controllers.erase(found);
    return true;
}

bool mxEngine::isAttached(const mxGenericControllerInterface* controller) const {
    return std::find(controllers.begin(), controllers.end(), controller) != controllers.end();
}

template <class Call> void mxEngine::forEachController(Call call) {
    // Walks a copy: a controller may attach or detach controllers while it runs. One attached
    // meanwhile waits for the next call; one detached meanwhile is skipped, since its owner
    // may already have destroyed it. The copy's storage is kept for the next walk, so that a
    // frame allocates nothing; a walk started by a controller meanwhile makes its own.
    std::vector<mxGenericControllerInterface*> running;
    running.swap(spareControllers);
    running.assign(controllers.begin(), controllers.end());
    for (mxGenericControllerInterface* controller : running) {
        if (isAttached(controller)) {
            call(*controller);
        }
    }
    running.clear();
    if (running.capacity() > spareControllers.capacity()) {
        spareControllers.swap(running);
    }
}

void mxEngine::resetControllers() {
    forEachController(
        [](mxGenericControllerInterface& controller) { controller.clearController(); });
}

void mxEngine::updateFrame() {
    forEachController([this](mxGenericControllerInterface& controller) {
        controller.updateController(&context);
    });
    scene->UpdateGS_Flags();
    scene->clearUpdateFlagsDown(mxSpatial::UPDATE_SUBTREE_CHANGED);
    ++frameCount;
}

void mxEngine::renderFrame(mxRendererInterface& renderer) {
    forEachController(
        [this](mxGenericControllerInterface& controller) { controller.beforeDraw(&context); });
    primitivesPass.run(scene.get());
    // The node was checked when it became the active one, but its camera can be taken away
    // since: without a camera there is no view to draw.
    if (const mxCamera* camera = cameraNode->getCamera()) {
        renderer.renderScene(scene.get(), *camera, viewportWidth, viewportHeight);
    }
}

} // namespace mx
