// mxHardwareRendererInterface: the device side of rendering: buffer uploads and draw calls
// for one frame. A renderer for a graphics API implements it; mxSceneRenderer drives it.
//
// A frame is beginFrame(), setView(), any number of prepareBuffer() and draw calls, then
// endFrame(). Draw calls after beginOverlay() in the same frame are drawn over everything
// drawn before them.
#pragma once

#include "scenegraph/SceneGraph.h"

namespace mx {

class mxHardwareRendererInterface {
public:
    virtual ~mxHardwareRendererInterface();
    virtual void beginFrame() = 0;
    virtual void endFrame() = 0;
    // Makes buffer's data available to the device (uploads it when it is new or its version
    // changed, or always when force is true). Returns false when it cannot; a null buffer
    // has nothing to prepare and gives true.
    virtual bool prepareBuffer(const mxBuffer* buffer, bool force) = 0;
    // The camera and viewport the following draw calls use.
    virtual void setView(const mxCamera& camera, int viewportWidth, int viewportHeight) = 0;
    // Draws a line in its colour, width and draw method, placed by its world transformation.
    virtual void drawLine(mxLine& line) = 0;
    // Draws a mesh shaded in its colour, placed by its world transformation.
    virtual void drawMesh(mxMesh& mesh) = 0;
    // What is drawn from here to the end of the frame shows over what was drawn before.
    virtual void beginOverlay() = 0;
};

} // namespace mx
