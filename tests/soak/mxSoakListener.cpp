#include "mxSoakListener.h"

#include "controller/mxGizmoController.h"
#include "scenegraph/mxSpatial.h"

#include <algorithm>

namespace mx::soak {

namespace {
// A frame hears at most a press (two Starts for a scale press) and a release (one End); the
// room beyond is for a library that says more than it should, so that the check can tell.
constexpr std::size_t csReservedCallbacks = 16;
constexpr std::size_t csReservedSnapshots = 8;
constexpr std::size_t csReservedGizmos = 8;
} // namespace

mxSoakListener::mxSoakListener(const std::vector<mxSpatial*>& objects)
    : objects(objects), watchedController(nullptr), snapshots(csReservedSnapshots),
      snapshotsUsed(0), lateCallback(false) {
    heardList.reserve(csReservedCallbacks);
    manipulatedList.reserve(csReservedGizmos);
}

void mxSoakListener::onGizmoManipulated(mxGizmoNode* gizmo) {
    manipulatedList.push_back(gizmo);
}

void mxSoakListener::onTranslateManipulatorStart() {
    hear(Callback::TranslateStart, nullptr);
}

void mxSoakListener::onTranslateManipulatorEnd(
    const mxGenericTransformation<float>& transformation) {
    hear(Callback::TranslateEnd, &transformation);
}

void mxSoakListener::onRotateManipulatorStart() {
    hear(Callback::RotateStart, nullptr);
}

void mxSoakListener::onRotateManipulatorEnd(const mxGenericTransformation<float>& transformation) {
    hear(Callback::RotateEnd, &transformation);
}

void mxSoakListener::onScaleManipulatorStart() {
    hear(Callback::ScaleStart, nullptr);
}

void mxSoakListener::onScaleManipulatorEnd(const mxGenericTransformation<float>& transformation) {
    hear(Callback::ScaleEnd, &transformation);
}

void mxSoakListener::watchPickedAxes(const mxGizmoController* controller,
                                     const std::vector<const mxGizmoNode*>& gizmos) {
    watchedController = controller;
    watchedGizmos.assign(gizmos.begin(),
                         gizmos.begin() + std::min<std::size_t>(gizmos.size(), csWatchedGizmos));
}

void mxSoakListener::clearFrame() {
    heardList.clear();
    manipulatedList.clear();
    snapshotsUsed = 0;
    lateCallback = false;
}

bool mxSoakListener::isStart(Callback callback) {
    return callback == Callback::TranslateStart || callback == Callback::RotateStart ||
           callback == Callback::ScaleStart;
}

const char* mxSoakListener::nameOf(Callback callback) {
    switch (callback) {
    case Callback::TranslateStart:
        return "onTranslateManipulatorStart";
    case Callback::TranslateEnd:
        return "onTranslateManipulatorEnd";
    case Callback::RotateStart:
        return "onRotateManipulatorStart";
    case Callback::RotateEnd:
        return "onRotateManipulatorEnd";
    case Callback::ScaleStart:
        return "onScaleManipulatorStart";
    case Callback::ScaleEnd:
        return "onScaleManipulatorEnd";
    }
    return "?";
}

void mxSoakListener::hear(Callback callback, const mxGenericTransformation<float>* transformation) {
    if (!manipulatedList.empty()) {
        lateCallback = true;
    }
    Heard heard{callback, mxGenericTransformation<float>(), -1, {-1, -1, -1, -1}};
    if (transformation) {
        heard.transformation = *transformation;
    } else if (watchedController) {
        for (std::size_t g = 0; g < watchedGizmos.size(); ++g) {
            heard.pickedAxes[g] = watchedController->getPickedAxeIndex(watchedGizmos[g]);
        }
    }
    if (snapshotsUsed < snapshots.size()) {
        // At a Start the state at the press, before any move of the drag; at an End the state
        // the release left, before any later event of the frame.
        std::vector<mxGenericTransformation<float>>& copy = snapshots[snapshotsUsed];
        // Sized at the first callback, when the scene has all its objects; the same size after.
        copy.resize(objects.size());
        for (std::size_t i = 0; i < objects.size(); ++i) {
            copy[i] = objects[i]->getWorldTransform();
        }
        heard.snapshot = static_cast<int>(snapshotsUsed);
        ++snapshotsUsed;
    }
    heardList.push_back(heard);
}

} // namespace mx::soak
