// mxBenchScene: the scene every controller benchmark runs in. An engine shows a 1280 x 720
// view through a perspective camera; below its scene, one parent node turned 30 degrees about
// an oblique axis holds the reference objects (small triangle meshes on a grid facing the
// camera), and gizmo nodes below the scene root each hold an equal share of them. An
// mxGizmoController drives the gizmos.
//
// The camera looks at the first gizmo from slightly above, so that its three axes and circles
// are all seen well apart. Two window pixels are worked out from that gizmo's placement:
// - the near miss, 14 pixels off a handle (the pick tolerance is 10): every gizmo runs its
//   whole hover and hit test there and none is hit;
// - the handle, where a press picks the X axis (translate, scale) or the circle seen most
//   nearly face-on (rotate).
// A scene that cannot show this (a miss that hits, a press that picks another axis, a drag
// that does not move) reports an error instead of measuring something else.
#pragma once

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxGenericRenderingContext.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include <string>
#include <vector>

namespace mx::bench {

class mxBenchScene {
public:
    // gizmoCount gizmos in mode, each around objectsPerGizmo objects of its own, with the
    // controller's orientation reference set to reference. One engine frame has run.
    mxBenchScene(mxGizmoNode::GizmoMode mode, mxGizmoController::OrientationReference reference,
                 int gizmoCount, int objectsPerGizmo);
    ~mxBenchScene();
    mxBenchScene(const mxBenchScene&) = delete;
    mxBenchScene& operator=(const mxBenchScene&) = delete;

    // Empty when the scene is as described above; otherwise what is wrong with it.
    const std::string& error() const { return problem; }

    // One frame of the controller alone, as the engine runs it.
    void idleFrame();
    // The same after recording a mouse move to the near miss (no button down).
    void hoverFrame();
    // A press at the near miss, answered at once; the recorded press is then forgotten.
    // Returns the answer (false: nothing hit).
    bool pressNearMiss();

    // Presses the first gizmo's handle and runs one engine frame, then makes the first move.
    // Sets the error when the press picks the wrong axis or the move leaves the objects where
    // they were.
    void startDrag();
    // One drag move, alternating between two points along the dragged handle, and the engine
    // frame that carries it out.
    void dragMove();

    std::size_t objectCount() const { return objects.size(); }

private:
    // The window pixel (origin top left) whose centre is nearest the screen point (pixels from
    // the lower left).
    struct Pixel {
        int x;
        int y;
    };
    Pixel windowPixelOf(const Wm4::Vector2<float>& screen) const;
    // A point of the first gizmo, given in its own frame, on screen in pixels from the lower
    // left.
    Wm4::Vector2<float> screenOf(const Wm4::Vector3<float>& local) const;
    // A point of the handle on screen: at fraction along of the X axis for translate and
    // scale, at along degrees on the picked circle for rotate.
    Wm4::Vector2<float> handleOnScreen(float along) const;
    void aimCamera();
    void findPixels();

    mxGizmoNode::GizmoMode mode;
    mxEngine engine;
    mxGenericRenderingContext context;
    mxGizmoController controller;
    mxPointer<mxCamera> camera;
    mxPointer<mxCameraNode> cameraNode;
    mxPointer<mxNode> parent;
    std::vector<mxPointer<mxMesh>> objects;
    std::vector<mxPointer<mxGizmoNode>> gizmos;
    Pixel nearMiss;
    Pixel handle;
    Pixel moves[2];
    int nextMove;
    // The circle a rotate drag picks: the one seen most nearly face-on.
    int circleAxis;
    int width;
    int height;
    std::string problem;
};

} // namespace mx::bench
