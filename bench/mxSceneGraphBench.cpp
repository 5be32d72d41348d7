// Scene-graph update costs.
//
// "UpdateGS_Flags on siblings": one drag move of a manipulator holding N sibling objects.
// The manipulator writes every object's world and local transformation, marks it dirty and
// updates it alone while its written world transformation is kept; then the engine runs its
// once-per-frame update from the root. The time per object must not grow with N: each
// object's update is O(its subtree + its depth), and the frame update is one pass over the
// parent's children.
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxScene.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using mx::mxMesh;
using mx::mxNode;
using mx::mxPointer;
using mx::mxScene;
using Vector = Wm4::Vector3<float>;

// A small triangle, the kind of object a user drags around.
mxMesh* makeTriangle(float x) {
    mxMesh* mesh = new mxMesh(3, 1);
    mesh->setVertexPosition(0, Vector(-0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(1, Vector(0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(2, Vector(0.0f, 0.5f, 0.0f));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->editLocalTransform(true).SetTranslate(Vector(x, 0.0f, -10.0f));
    return mesh;
}

void updateSiblingsAfterDragMove(benchmark::State& state) {
    const std::size_t count = static_cast<std::size_t>(state.range(0));
    mxPointer<mxScene> root = new mxScene();
    mxPointer<mxNode> parent = new mxNode();
    root->attachChild(parent.get());
    std::vector<mxMesh*> siblings;
    siblings.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        mxMesh* sibling = makeTriangle(static_cast<float>(i));
        parent->attachChild(sibling);
        siblings.push_back(sibling);
    }
    root->UpdateGS();

    float offset = 0.0f;
    for (auto _ : state) {
        offset += 0.01f;
        for (std::size_t i = 0; i < count; ++i) {
            mxMesh* sibling = siblings[i];
            // The parent sits at the identity: the local transformation is the world one.
            const Vector position(static_cast<float>(i), offset, -10.0f);
            sibling->editWorldTransform(false).SetTranslate(position);
            sibling->editLocalTransform(false).SetTranslate(position);
            sibling->setDirty(mx::mxSpatial::DIRTY_WORLD, true, false);
            sibling->forceIgnore(true, false, false);
            sibling->UpdateGS_Flags();
            sibling->forceIgnore(false, false, false);
        }
        root->UpdateGS_Flags();
        benchmark::DoNotOptimize(root->getWorldBound().getRadius());
    }
    benchmark::ClobberMemory();
    state.counters["per_object"] = benchmark::Counter(
        static_cast<double>(count),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(count));
}

} // namespace

BENCHMARK(updateSiblingsAfterDragMove)
    ->Name("UpdateGS_Flags on siblings")
    ->Arg(1000)
    ->Arg(100000)
    ->Unit(benchmark::kMicrosecond);
