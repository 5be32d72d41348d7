// A gizmo controller whose construction runs out of memory part way must let std::bad_alloc
// out and give back what it had built: the rotate, translate and scale drag controllers are
// made one after the other, and a failure at any of them (or at the rotate controller's table
// of circle samples) must not leave the ones before it behind. A copy of a rotate controller
// makes its own table, with the same promise.
//
// The controller lives in this program because only here can an allocation be made to fail
// (mxFailingAllocation.h).
#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxGizmoController.h"
#include "controller/mxGizmoControllerRotate.h"

#include "mxFailingAllocation.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

namespace {

using mx::mxGizmoController;
using mx::mxGizmoControllerRotate;
using mx::test::ArmAllocationFailureAt;
using mx::test::DisarmAllocationFailure;
using mx::test::LiveAllocations;

// Far more allocations than a controller needs: reaching it means construction never got
// through.
constexpr long csLimit = 1000;

// What became of one construction with the n-th allocation failing. Everything is measured
// before any assertion runs: a failed assertion allocates, and would spoil the count.
struct Attempt {
    bool fired = false; // the n-th allocation happened, and failed
    bool threw = false; // std::bad_alloc came out of the new expression
    bool built = false; // an object came back
    long liveAfter = 0; // live blocks once the object, if any, was deleted
};

// Runs make() (a new expression) with the n-th allocation failing, deletes what it gives.
template <class Object, class Make> Attempt AttemptConstruction(long n, Make make) {
    Attempt attempt;
    Object* made = nullptr;
    ArmAllocationFailureAt(n);
    try {
        made = make();
    } catch (const std::bad_alloc&) {
        attempt.threw = true;
    }
    attempt.fired = DisarmAllocationFailure();
    attempt.built = made != nullptr;
    delete made;
    attempt.liveAfter = LiveAllocations();
    return attempt;
}

// The outcome of failing every allocation of a construction in turn, until one runs through.
struct Sweep {
    long failures = 0;       // constructions whose armed allocation failed
    long failuresLetOut = 0; // ... and that let std::bad_alloc out
    long objectsDespite = 0; // ... and that nevertheless gave an object
    long leakyAttempts = 0;  // constructions after which blocks were left over
    long firstLeak = 0;      // the n of the first of them
    bool completed = false;  // a construction without failure came
};

template <class Object, class Make> Sweep SweepConstruction(Make make) {
    // One construction first, so that anything set up once for the process is in place.
    delete make();
    const long baseline = LiveAllocations();
    Sweep sweep;
    for (long n = 1; n <= csLimit && !sweep.completed; ++n) {
        const Attempt attempt = AttemptConstruction<Object>(n, make);
        if (attempt.liveAfter != baseline && sweep.leakyAttempts++ == 0) {
            sweep.firstLeak = n;
        }
        if (attempt.fired) {
            ++sweep.failures;
            sweep.failuresLetOut += attempt.threw ? 1 : 0;
            sweep.objectsDespite += attempt.built ? 1 : 0;
        } else {
            sweep.completed = attempt.built && !attempt.threw;
        }
    }
    return sweep;
}

TEST(mxGizmoControllerAllocationTest, ConstructionFailingAtAnyAllocationLetsBadAllocOut) {
    const Sweep sweep = SweepConstruction<mxGizmoController>([] { return new mxGizmoController; });
    EXPECT_TRUE(sweep.completed);
    // The controller, the rotate controller and its table, the translate and the scale
    // controller at the very least.
    EXPECT_GE(sweep.failures, 5);
    EXPECT_EQ(sweep.failures, sweep.failuresLetOut);
    EXPECT_EQ(0, sweep.objectsDespite);
}

TEST(mxGizmoControllerAllocationTest, ConstructionFailingAtAnyAllocationLeavesNothingBehind) {
    const Sweep sweep = SweepConstruction<mxGizmoController>([] { return new mxGizmoController; });
    EXPECT_TRUE(sweep.completed);
    EXPECT_GE(sweep.failures, 5);
    EXPECT_EQ(0, sweep.leakyAttempts) << "the first leak came with allocation " << sweep.firstLeak;
}

TEST(mxGizmoControllerAllocationTest, BuiltControllerDeletedGivesEveryAllocationBack) {
    delete new mxGizmoController;
    const long baseline = LiveAllocations();
    mxGizmoController* controller = new mxGizmoController;
    const long during = LiveAllocations();
    delete controller;
    const long after = LiveAllocations();
    // The controller and its three drag controllers at least.
    EXPECT_GE(during, baseline + 4);
    EXPECT_EQ(baseline, after);
}

TEST(mxGizmoControllerAllocationTest,
     RotateCopyFailingAtAnyAllocationLetsBadAllocOutAndLeaksNothing) {
    std::vector<mx::mx3DManipulatorMotionListener*> listeners;
    const mxGizmoControllerRotate source(listeners);
    const Sweep sweep = SweepConstruction<mxGizmoControllerRotate>(
        [&source] { return new mxGizmoControllerRotate(source); });
    EXPECT_TRUE(sweep.completed);
    // The copy itself and its own table of circle samples.
    EXPECT_GE(sweep.failures, 2);
    EXPECT_EQ(sweep.failures, sweep.failuresLetOut);
    EXPECT_EQ(0, sweep.objectsDespite);
    EXPECT_EQ(0, sweep.leakyAttempts) << "the first leak came with allocation " << sweep.firstLeak;
}

} // namespace
