// Costs of the gizmo controller, per frame.
//
// "Idle frame": updateController with N gizmos and no mouse event, per mode and orientation
//   reference. Every gizmo is placed: centre, frame, screen-constant size, arrowheads.
// "Hover frame": the same with one recorded mouse move per frame near, but not on, a handle,
//   so that every gizmo runs its whole hover test.
// "Press hit test": setMousePressed over N gizmos where none is hit, which asks them all.
// "Drag move": one gizmo dragging M objects below one parent, one move per engine frame.
//
// Each benchmark also reports the heap allocations of its frames (or moves) in steady state,
// counted over 100 more of them after the timed loop.
#include "mxAllocationCounter.h"
#include "mxBenchScene.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>

namespace {

using mx::mxGizmoController;
using mx::mxGizmoNode;
using mx::bench::allocationCount;
using mx::bench::mxBenchScene;

constexpr int csCountedFrames = 100;

const char* modeName(mxGizmoNode::GizmoMode mode) {
    switch (mode) {
    case mxGizmoNode::GIZMO_TRANSLATE:
        return "translate";
    case mxGizmoNode::GIZMO_ROTATE:
        return "rotate";
    default:
        return "scale";
    }
}

const char* referenceName(mxGizmoController::OrientationReference reference) {
    switch (reference) {
    case mxGizmoController::World:
        return "World";
    case mxGizmoController::Local:
        return "Local";
    default:
        return "View";
    }
}

// The time per item (gizmo or object) as a counter, beside the time per iteration.
benchmark::Counter perItem(std::size_t count) {
    return benchmark::Counter(static_cast<double>(count),
                              benchmark::Counter::kIsIterationInvariantRate |
                                  benchmark::Counter::kInvert);
}

// Runs step over the benchmark's iterations in scene (skipped with its error, if it has one),
// then reports the time per item (gizmo or object) as perItemName and the allocations of
// csCountedFrames more steps, per step, as allocationsName.
template <class Step>
void measure(benchmark::State& state, const mxBenchScene& scene, std::size_t items,
             const char* perItemName, const char* allocationsName, Step step) {
    if (!scene.error().empty()) {
        state.SkipWithError(scene.error().c_str());
        return;
    }
    for (auto _ : state) {
        step();
    }
    state.counters[perItemName] = perItem(items);
    const std::size_t before = allocationCount();
    for (int i = 0; i < csCountedFrames; ++i) {
        step();
    }
    state.counters[allocationsName] =
        static_cast<double>(allocationCount() - before) / csCountedFrames;
}

void idleFrame(benchmark::State& state, mxGizmoNode::GizmoMode mode,
               mxGizmoController::OrientationReference reference) {
    const int count = static_cast<int>(state.range(0));
    mxBenchScene scene(mode, reference, count, 1);
    measure(state, scene, static_cast<std::size_t>(count), "per_gizmo", "allocs_per_frame",
            [&] { scene.idleFrame(); });
}

void hoverFrame(benchmark::State& state, mxGizmoNode::GizmoMode mode) {
    const int count = static_cast<int>(state.range(0));
    mxBenchScene scene(mode, mxGizmoController::World, count, 1);
    measure(state, scene, static_cast<std::size_t>(count), "per_gizmo", "allocs_per_frame",
            [&] { scene.hoverFrame(); });
}

void pressHitTest(benchmark::State& state, mxGizmoNode::GizmoMode mode) {
    const int count = static_cast<int>(state.range(0));
    mxBenchScene scene(mode, mxGizmoController::World, count, 1);
    measure(state, scene, static_cast<std::size_t>(count), "per_gizmo", "allocs_per_press",
            [&] { benchmark::DoNotOptimize(scene.pressNearMiss()); });
}

void dragMove(benchmark::State& state, mxGizmoNode::GizmoMode mode) {
    const int count = static_cast<int>(state.range(0));
    mxBenchScene scene(mode, mxGizmoController::World, 1, count);
    scene.startDrag();
    measure(state, scene, scene.objectCount(), "per_object", "allocs_per_move",
            [&] { scene.dragMove(); });
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(scene.objectCount()));
}

void registerAll() {
    const mxGizmoNode::GizmoMode modes[] = {mxGizmoNode::GIZMO_TRANSLATE, mxGizmoNode::GIZMO_ROTATE,
                                            mxGizmoNode::GIZMO_SCALE};
    const mxGizmoController::OrientationReference references[] = {
        mxGizmoController::World, mxGizmoController::Local, mxGizmoController::View};
    for (const auto mode : modes) {
        for (const auto reference : references) {
            const std::string name =
                std::string("Idle frame/") + modeName(mode) + "/" + referenceName(reference);
            benchmark::RegisterBenchmark(name.c_str(), idleFrame, mode, reference)
                ->Arg(1)
                ->Arg(100)
                ->Arg(10000)
                ->Unit(benchmark::kMicrosecond);
        }
    }
    for (const auto mode : modes) {
        const std::string name = std::string("Hover frame/") + modeName(mode);
        benchmark::RegisterBenchmark(name.c_str(), hoverFrame, mode)
            ->Arg(1)
            ->Arg(100)
            ->Arg(10000)
            ->Unit(benchmark::kMicrosecond);
    }
    for (const auto mode : modes) {
        const std::string name = std::string("Press hit test/") + modeName(mode);
        benchmark::RegisterBenchmark(name.c_str(), pressHitTest, mode)
            ->Arg(1)
            ->Arg(1000)
            ->Unit(benchmark::kMicrosecond);
    }
    for (const auto mode : modes) {
        const std::string name = std::string("Drag move/") + modeName(mode);
        benchmark::RegisterBenchmark(name.c_str(), dragMove, mode)
            ->Arg(1)
            ->Arg(1000)
            ->Arg(100000)
            ->Unit(benchmark::kMicrosecond);
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
