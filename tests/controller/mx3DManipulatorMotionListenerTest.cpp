// The listener interface on its own: what a listener that overrides only the one pure
// notification gets from the defaults, and how it is copied.
#include "controller/mx3DManipulatorMotionListener.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxGenericTransformation.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

using namespace mx;

// Overrides only what it must; counts the notifications it hears.
class MinimalListener : public mx3DManipulatorMotionListener {
public:
    MinimalListener() = default;
    MinimalListener(const MinimalListener& other)
        : mx3DManipulatorMotionListener(other), heard(other.heard) {}

    void onGizmoManipulated(mxGizmoNode* gizmo) override { heard.push_back(gizmo); }

    std::vector<mxGizmoNode*> heard;
};

static_assert(std::is_abstract_v<mx3DManipulatorMotionListener>,
              "onGizmoManipulated must be overridden");
static_assert(std::has_virtual_destructor_v<mx3DManipulatorMotionListener>,
              "listeners are deleted through the interface");
TEST(mx3DManipulatorMotionListenerTest, StartAndEndCallbacksDoNothingUnlessOverridden) {
    MinimalListener listener;
    mx3DManipulatorMotionListener& asInterface = listener;
    mxGenericTransformation<float> moved;
    moved.SetTranslate(Wm4::Vector3<float>(1.0f, 2.0f, 3.0f));
    const mxGenericTransformation<float> before = moved;

    asInterface.onTranslateManipulatorStart();
    asInterface.onTranslateManipulatorEnd(moved);
    asInterface.onRotateManipulatorStart();
    asInterface.onRotateManipulatorEnd(moved);
    asInterface.onScaleManipulatorStart();
    asInterface.onScaleManipulatorEnd(moved);

    EXPECT_TRUE(listener.heard.empty());
    EXPECT_TRUE(moved == before);
}

TEST(mx3DManipulatorMotionListenerTest, GizmoManipulatedReachesTheOverrideThroughTheInterface) {
    MinimalListener listener;
    mx3DManipulatorMotionListener& asInterface = listener;
    mxGizmoNode gizmo;

    asInterface.onGizmoManipulated(&gizmo);

    ASSERT_EQ(listener.heard.size(), 1u);
    EXPECT_EQ(listener.heard[0], &gizmo);
}

TEST(mx3DManipulatorMotionListenerTest, CopyOfAListenerKeepsOnlyWhatTheDerivedClassCopies) {
    MinimalListener listener;
    mxGizmoNode gizmo;
    listener.onGizmoManipulated(&gizmo);

    MinimalListener copy(listener);
    copy.onGizmoManipulated(nullptr);

    EXPECT_EQ(copy.heard, (std::vector<mxGizmoNode*>{&gizmo, nullptr}));
    EXPECT_EQ(listener.heard, (std::vector<mxGizmoNode*>{&gizmo}));
}

} // namespace
