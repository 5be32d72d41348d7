// mxSoakListener: the soak run's listener. It hears one frame at a time: every Start and End
// callback in order with a copy of the objects' world transformations taken at that moment (at
// a Start the drag's state at the press, at an End the state the release left), each End's
// transformation, and the gizmos announced by onGizmoManipulated. Its storage is reserved
// once, so that hearing a frame allocates nothing.
#pragma once

#include "controller/mx3DManipulatorMotionListener.h"
#include "scenegraph/mxGenericTransformation.h"

#include <vector>

namespace mx {

class mxGizmoController;
class mxGizmoNode;
class mxSpatial;

namespace soak {

class mxSoakListener : public mx3DManipulatorMotionListener {
public:
    static constexpr int csWatchedGizmos = 4;

    enum class Callback {
        TranslateStart,
        TranslateEnd,
        RotateStart,
        RotateEnd,
        ScaleStart,
        ScaleEnd
    };

    struct Heard {
        Callback callback;
        // An End's transformation; the identity for a Start.
        mxGenericTransformation<float> transformation;
        // The copy of the worlds taken at the callback (snapshot()); -1 for a callback heard
        // after the reserved copies ran out.
        int snapshot;
        // At a Start, the axis the controller had picked, asked for each watched gizmo in
        // turn (mxGizmoController::getPickedAxeIndex answers by the gizmo's mode); -1 beyond.
        int pickedAxes[csWatchedGizmos];
    };

    // objects: the scene's objects, in the order of the copies; not owned, read at each callback,
    // so it may still be filled after construction.
    explicit mxSoakListener(const std::vector<mxSpatial*>& objects);

    void onGizmoManipulated(mxGizmoNode* gizmo) override;
    void onTranslateManipulatorStart() override;
    void onTranslateManipulatorEnd(const mxGenericTransformation<float>& transformation) override;
    void onRotateManipulatorStart() override;
    void onRotateManipulatorEnd(const mxGenericTransformation<float>& transformation) override;
    void onScaleManipulatorStart() override;
    void onScaleManipulatorEnd(const mxGenericTransformation<float>& transformation) override;

    // At each Start, asks controller which axis it has picked for each of gizmos (at most
    // csWatchedGizmos; not owned).
    void watchPickedAxes(const mxGizmoController* controller,
                         const std::vector<const mxGizmoNode*>& gizmos);

    // Forgets what the last frame heard; the storage stays.
    void clearFrame();

    const std::vector<Heard>& heard() const { return heardList; }
    const std::vector<mxGizmoNode*>& manipulated() const { return manipulatedList; }
    // The worlds of the objects when the callback with this snapshot index came.
    const std::vector<mxGenericTransformation<float>>& snapshot(int index) const {
        return snapshots[static_cast<std::size_t>(index)];
    }
    // Whether a Start or End came after an onGizmoManipulated of the same frame.
    bool heardAfterAnnouncement() const { return lateCallback; }

    static bool isStart(Callback callback);
    static const char* nameOf(Callback callback);

private:
    void hear(Callback callback, const mxGenericTransformation<float>* transformation);

    const std::vector<mxSpatial*>& objects;
    const mxGizmoController* watchedController;
    std::vector<const mxGizmoNode*> watchedGizmos;
    std::vector<Heard> heardList;
    std::vector<mxGizmoNode*> manipulatedList;
    std::vector<std::vector<mxGenericTransformation<float>>> snapshots;
    std::size_t snapshotsUsed;
    bool lateCallback;
};

} // namespace soak
} // namespace mx
