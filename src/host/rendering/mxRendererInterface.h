// mxRendererInterface: draws a scene as a camera sees it. It also keeps the process's current
// hardware renderer, which libraries ask for when they prepare generated primitives (null
// until a renderer registers itself).
#pragma once

#include "mxHardwareRendererInterface.h"

#include "scenegraph/SceneGraph.h"

namespace mx {

class mxRendererInterface {
public:
    static mxHardwareRendererInterface* GetHardwareRenderer();
    // The renderer does not own it; set null before the renderer goes away.
    static void SetHardwareRenderer(mxHardwareRendererInterface* renderer);

    virtual ~mxRendererInterface();
    // Draws what is visible of the scene below root into a viewport of that size.
    virtual void renderScene(mxSpatial* root, const mxCamera& camera, int viewportWidth,
                             int viewportHeight) = 0;

private:
    static mxHardwareRendererInterface* msHardwareRenderer;
};

} // namespace mx
