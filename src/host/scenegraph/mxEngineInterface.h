// mxEngineInterface: what a controller sees of the engine that runs it: the scene, the
// active camera node and the viewport size. The engine owns the scene and the camera node.
#pragma once

#include "mxCameraNode.h"
#include "mxPointer.h"
#include "mxScene.h"

namespace mx {

class mxEngineInterface {
public:
    virtual ~mxEngineInterface();

    // The active camera node; never null for a running engine.
    mxCameraNode* getCameraNode() const { return cameraNode.get(); }
    // The scene root; never null for a running engine.
    mxScene* getScene() const { return scene.get(); }
    // The viewport size in pixels.
    virtual void getViewportSize(int& width, int& height) const = 0;

protected:
    mxEngineInterface();

    mxPointer<mxScene> scene;
    mxPointer<mxCameraNode> cameraNode;
};

} // namespace mx
