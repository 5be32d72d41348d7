// mx3DManipulatorMotionListener: what an application hears about the drags of the gizmos.
// Install one on mxGizmoController; the controller and its drag controllers call it on the
// thread that runs the engine's frames.
//
// A drag is announced by a Start callback when the press takes hold of a handle and by the
// matching End callback at the release, which passes the world transformation the drag
// produced: every reference object's world transformation is that transformation times the
// one it had at the press. onGizmoManipulated follows once per frame for every gizmo that took
// part in a press, a move or a release during the frame. The Start and End callbacks do
// nothing unless overridden.
#pragma once

#include "scenegraph/mxGenericTransformation.h"

namespace mx {

class mxGizmoNode;

class mx3DManipulatorMotionListener {
public:
    // Listeners have no state: a copy copies nothing.
    mx3DManipulatorMotionListener(const mx3DManipulatorMotionListener&) {}
    virtual ~mx3DManipulatorMotionListener();

    virtual void onGizmoManipulated(mxGizmoNode* gizmo) = 0;
    virtual void onTranslateManipulatorStart();
    // transformation: the translation since the press.
    virtual void onTranslateManipulatorEnd(const mxGenericTransformation<float>& transformation);
    virtual void onRotateManipulatorStart();
    // transformation: the rotation about the gizmo's position since the press.
    virtual void onRotateManipulatorEnd(const mxGenericTransformation<float>& transformation);
    virtual void onScaleManipulatorStart();
    // transformation: the scaling about the reference objects' centre since the press.
    virtual void onScaleManipulatorEnd(const mxGenericTransformation<float>& transformation);

protected:
    mx3DManipulatorMotionListener() = default;
    mx3DManipulatorMotionListener& operator=(const mx3DManipulatorMotionListener&) = default;
};

} // namespace mx
