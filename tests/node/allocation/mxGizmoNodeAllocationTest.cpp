// A gizmo node whose construction runs out of memory part way must let std::bad_alloc out and
// leave nothing allocated behind.
//
// This program stands alone because it replaces the global operator new and operator delete
// of the whole process with counting versions (malloc and free underneath) that can be armed
// to fail the Nth allocation from now. Linked into the ordinary test program, the replacement
// would count and disturb every other test. The other files of this program arm the same
// replacement through mxFailingAllocation.h.
#include "node/mxGizmoNode.h"

#include "mxFailingAllocation.h"

#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxSpatial.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

// Blocks handed out by the operators below and not yet given back.
std::atomic<long> gLiveAllocations{0};
// 0: disarmed. Otherwise the allocation that brings the countdown to 0 fails.
std::atomic<long> gFailCountdown{0};
// Whether the armed failure has happened.
std::atomic<bool> gFailureFired{false};

// Whether the next allocation is the one to fail; counts it down when armed.
bool shouldFail() {
    if (gFailCountdown.load() <= 0) {
        return false;
    }
    if (--gFailCountdown == 0) {
        gFailureFired = true;
        return true;
    }
    return false;
}

void* countedAllocate(std::size_t size) {
    if (shouldFail()) {
        return nullptr;
    }
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block) {
        ++gLiveAllocations;
    }
    return block;
}

void countedRelease(void* block) {
    if (block) {
        --gLiveAllocations;
        std::free(block);
    }
}

void* allocateOrThrow(std::size_t size) {
    if (void* block = countedAllocate(size)) {
        return block;
    }
    throw std::bad_alloc();
}

// Fails the count-th allocation from now (1: the very next one).
void armFailureAt(long count) {
    gFailureFired = false;
    gFailCountdown = count;
}

// Stops failing; returns whether the armed failure happened.
bool disarm() {
    gFailCountdown = 0;
    return gFailureFired.load();
}

} // namespace

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return countedAllocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return countedAllocate(size);
}
void operator delete(void* block) noexcept {
    countedRelease(block);
}
void operator delete[](void* block) noexcept {
    countedRelease(block);
}
void operator delete(void* block, std::size_t) noexcept {
    countedRelease(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    countedRelease(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    countedRelease(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    countedRelease(block);
}

// The hooks the other tests of this program use (mxFailingAllocation.h).
namespace mx::test {

void ArmAllocationFailureAt(long count) {
    armFailureAt(count);
}

bool DisarmAllocationFailure() {
    return disarm();
}

long LiveAllocations() {
    return gLiveAllocations.load();
}

} // namespace mx::test

namespace {

// Builds and releases one node, so that anything the first construction sets up once for the
// whole process (logging, locale, ...) is in place before the counting starts.
void warmUp() {
    mx::mxPointer<mx::mxGizmoNode> node = new mx::mxGizmoNode;
}

// What became of one construction with the n-th allocation failing. Everything is measured
// before any assertion runs: a failed assertion allocates, and would spoil the count.
struct Attempt {
    bool fired = false;  // the n-th allocation happened, and failed
    bool threw = false;  // std::bad_alloc came out of the new expression
    int childCount = -1; // of the node, when one was returned
    long liveAfter = 0;  // live blocks once the node, if any, was released
};

Attempt attemptConstruction(long n) {
    Attempt attempt;
    mx::mxGizmoNode* raw = nullptr;
    armFailureAt(n);
    try {
        raw = new mx::mxGizmoNode;
    } catch (const std::bad_alloc&) {
        attempt.threw = true;
    }
    attempt.fired = disarm();
    if (raw) {
        mx::mxPointer<mx::mxGizmoNode> node = raw;
        attempt.childCount = node->getChildCount();
    }
    attempt.liveAfter = gLiveAllocations.load();
    return attempt;
}

// Far more allocations than a node needs: reaching it means construction never got through.
constexpr long csLimit = 100000;

TEST(mxGizmoNodeAllocationTest, ReplacementCountsAndFailsOnDemand) {
    const long before = gLiveAllocations.load();
    int* value = new int(7);
    const long during = gLiveAllocations.load();
    delete value;
    const long after = gLiveAllocations.load();
    EXPECT_EQ(before + 1, during);
    EXPECT_EQ(before, after);

    bool threw = false;
    int* first = nullptr;
    int* second = nullptr;
    armFailureAt(2);
    try {
        first = new int(1);
        second = new int(2);
    } catch (const std::bad_alloc&) {
        threw = true;
    }
    const bool fired = disarm();
    delete first;
    const long afterFailure = gLiveAllocations.load();
    EXPECT_TRUE(fired);
    EXPECT_TRUE(threw);
    EXPECT_NE(nullptr, first);
    EXPECT_EQ(nullptr, second);
    EXPECT_EQ(before, afterFailure);
}

TEST(mxGizmoNodeAllocationTest, SuccessfulConstructionReleasedGivesEveryAllocationBack) {
    warmUp();
    const long baseline = gLiveAllocations.load();
    mx::mxPointer<mx::mxGizmoNode> node = new mx::mxGizmoNode;
    const long during = gLiveAllocations.load();
    const int childCount = node->getChildCount();
    node.reset();
    const long after = gLiveAllocations.load();
    // The node, its sub-gizmos and 19 lines with their data at least.
    EXPECT_GT(during, baseline + 19);
    EXPECT_EQ(19, childCount);
    EXPECT_EQ(baseline, after);
}

TEST(mxGizmoNodeAllocationTest, ConstructionFailingAtAnyAllocationLeavesNothingBehind) {
    warmUp();
    const long baseline = gLiveAllocations.load();
    long failures = 0;
    bool built = false;
    for (long n = 1; n <= csLimit && !built; ++n) {
        const Attempt attempt = attemptConstruction(n);
        ASSERT_EQ(baseline, attempt.liveAfter)
            << "failing allocation " << n << " left " << attempt.liveAfter - baseline << " blocks";
        if (attempt.fired) {
            ++failures;
            // A node that comes back in spite of the failure is at least whole.
            if (!attempt.threw) {
                EXPECT_EQ(19, attempt.childCount) << "at n = " << n;
            }
        } else {
            ASSERT_FALSE(attempt.threw) << "threw without a failed allocation at n = " << n;
            EXPECT_EQ(19, attempt.childCount);
            built = true;
        }
    }
    RecordProperty("failingAllocations", static_cast<int>(failures));
    EXPECT_TRUE(built);
    // The node itself, the sub-gizmos, and 19 lines with their vertex and index lists at the
    // very least.
    EXPECT_GT(failures, 19);
}

TEST(mxGizmoNodeAllocationTest, ConstructionFailingAtAnyAllocationLetsBadAllocOut) {
    warmUp();
    long failures = 0;
    bool built = false;
    for (long n = 1; n <= csLimit && !built; ++n) {
        const Attempt attempt = attemptConstruction(n);
        if (attempt.fired) {
            ++failures;
            EXPECT_TRUE(attempt.threw)
                << "allocation " << n << " failed but the constructor returned a node";
            EXPECT_EQ(-1, attempt.childCount) << "at n = " << n;
        } else {
            EXPECT_FALSE(attempt.threw) << "at n = " << n;
            built = true;
        }
    }
    EXPECT_TRUE(built);
    EXPECT_GT(failures, 19);
}

// A sub-gizmo's lines can be built again through its build operations. A rebuild that runs out
// of memory part way lets std::bad_alloc out and leaves the list with the lines made so far
// and empty entries after them; the node must still work with such a list.

// The rotation that turns an arrowhead of the X axis at (1, 0, -10), in an unturned node, to
// face an eye at (0, 5, 0): x along the axis, z towards the eye across the axis, y = z x x.
Wm4::Matrix3<float> XHeadFacingTheEye() {
    const float c = 2.0f / std::sqrt(5.0f);
    const float s = 1.0f / std::sqrt(5.0f);
    return Wm4::Matrix3<float>(Wm4::Vector3<float>(1.0f, 0.0f, 0.0f),
                               Wm4::Vector3<float>(0.0f, c, -s), Wm4::Vector3<float>(0.0f, s, c),
                               true);
}

bool Near(const Wm4::Matrix3<float>& a, const Wm4::Matrix3<float>& b) {
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (!(std::fabs(a(r, c) - b(r, c)) <= 1e-5f)) {
                return false;
            }
        }
    }
    return true;
}

// Runs rebuild with its n-th allocation failing, for n = 1, 2, ... until a run in which no
// allocation fails; after each failed run, inspect(n) looks at what that run left. A run must
// throw exactly when an allocation failed. Returns the number of failed runs.
template <class Rebuild, class Inspect>
long failEachAllocationOf(Rebuild rebuild, Inspect inspect) {
    for (long n = 1; n <= csLimit; ++n) {
        bool threw = false;
        armFailureAt(n);
        try {
            rebuild();
        } catch (const std::bad_alloc&) {
            threw = true;
        }
        const bool fired = disarm();
        EXPECT_EQ(fired, threw) << "at n = " << n;
        if (!fired) {
            return n - 1;
        }
        inspect(n);
    }
    ADD_FAILURE() << "the rebuild never got through";
    return csLimit;
}

TEST(mxGizmoNodeAllocationTest, ArrowHeadRebuildFailingPartWayStillFacesTheHeadsItMade) {
    warmUp();
    const long baseline = gLiveAllocations.load();
    mx::mxPointer<mx::mxGizmoNode> node = new mx::mxGizmoNode;
    node->editLocalTransform(true).SetTranslate(Wm4::Vector3<float>(0.0f, 0.0f, -10.0f));
    node->UpdateGS();
    // Looking down -Z from 5 units above the node's centre line.
    mx::mxCamera camera;
    camera.setLocation(Wm4::Vector3<float>(0.0f, 5.0f, 0.0f));
    mx::mxGizmoNodeTranslate& translate = node->editTranslateGizmo();

    long partial = 0;
    const auto inspect = [&](long n) {
        mx::mxLine* first = translate.getArrowHead(0);
        if (!first || translate.getArrowHead(2)) {
            // No arrowhead to turn, or all three: nothing new to see.
            node->updateCameraFacing(&camera);
            return;
        }
        ++partial;
        // A rebuilt arrowhead hangs in no node: no frame to face the eye in.
        node->updateCameraFacing(&camera);
        EXPECT_EQ(Wm4::Matrix3<float>::IDENTITY, first->getLocalTransform().GetRotate())
            << "at n = " << n;
        // Hung in the node, it is turned towards the eye; the missing ones are passed over.
        const int slot = node->attachChild(first);
        node->UpdateGS();
        node->updateCameraFacing(&camera);
        EXPECT_TRUE(Near(first->getLocalTransform().GetRotate(), XHeadFacingTheEye()))
            << "at n = " << n;
        node->detachChildAt(slot);
    };
    const long failures = failEachAllocationOf([&] { translate.buildArrowHeads(); }, inspect);
    // At least the allocation of each of the three arrowheads.
    EXPECT_GE(failures, 3);
    EXPECT_GE(partial, 1);
    node.reset();
    EXPECT_EQ(baseline, gLiveAllocations.load());
}

TEST(mxGizmoNodeAllocationTest, ActiveFrameRebuildFailingPartWayKeepsTheFramesItMadeHidden) {
    warmUp();
    mx::mxPointer<mx::mxGizmoNode> node = new mx::mxGizmoNode;
    node->setMode(mx::mxGizmoNode::GIZMO_SCALE);
    mx::mxGizmoNodeScale& scale = node->editScaleGizmo();

    long partial = 0;
    const auto inspect = [&](long n) {
        partial += scale.getActiveFrame(0) && !scale.getActiveFrame(2) ? 1 : 0;
        // A new line is shown by default; showing the sub-gizmo hides every frame it has and
        // passes over the missing ones.
        scale.applyEnabledAxis(true);
        for (unsigned int axis = 0; axis < 3; ++axis) {
            if (const mx::mxLine* frame = scale.getActiveFrame(axis)) {
                EXPECT_EQ(mx::mxSpatial::CULL_ALWAYS, frame->getCullingMode())
                    << "axis " << axis << " at n = " << n;
            }
            EXPECT_EQ(mx::mxSpatial::CULL_DYNAMIC, scale.getAxis(axis)->getCullingMode());
        }
    };
    const long failures = failEachAllocationOf([&] { scale.buildActiveFrames(); }, inspect);
    EXPECT_GE(failures, 3);
    EXPECT_GE(partial, 1);
}

} // namespace
