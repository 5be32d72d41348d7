#include "mx2DPrimitivesPass.h"

#include <algorithm>

namespace mx {

namespace {
// A function-local registry: libraries may register from their own load-time code.
std::vector<mx2DPrimitivesPass::AnalyseFunction>& registry() {
    static std::vector<mx2DPrimitivesPass::AnalyseFunction> functions;
    return functions;
}
} // namespace

bool mx2DPrimitivesPass::RegisterAnalyseFunction(AnalyseFunction function) {
    if (!function || IsAnalyseFunctionRegistered(function)) {
        return false;
    }
    registry().push_back(function);
    return true;
}

bool mx2DPrimitivesPass::UnregisterAnalyseFunction(AnalyseFunction function) {
    std::vector<AnalyseFunction>& functions = registry();
    const auto found = std::find(functions.begin(), functions.end(), function);
    if (!function || found == functions.end()) {
        return false;
    }
    functions.erase(found);
    return true;
}

bool mx2DPrimitivesPass::IsAnalyseFunctionRegistered(AnalyseFunction function) {
    const std::vector<AnalyseFunction>& functions = registry();
    return std::find(functions.begin(), functions.end(), function) != functions.end();
}

int mx2DPrimitivesPass::GetAnalyseFunctionCount() {
    return static_cast<int>(registry().size());
}

mx2DPrimitivesPass::mx2DPrimitivesPass() = default;

mx2DPrimitivesPass::~mx2DPrimitivesPass() {
    // Entries still batched carry the pass's extra reference: give it back.
    for (mxPointer<mxGeometry>& geometry : geometryRenderBatch) {
        if (geometry) {
            geometry->DecrementReferences();
        }
    }
}

void mx2DPrimitivesPass::run(mxSpatial* root) {
    // A copy: a function may register or unregister functions while it runs. One registered
    // meanwhile first runs with the next pass; one unregistered meanwhile is not called.
    const std::vector<AnalyseFunction> functions = registry();
    for (AnalyseFunction function : functions) {
        if (IsAnalyseFunctionRegistered(function)) {
            function(this, root);
        }
    }
}

void mx2DPrimitivesPass::addToGeometryRenderBatch(mxGeometry* geometry) {
    if (!geometry) {
        return;
    }
    geometryRenderBatch.push_back(geometry);
    geometry->IncrementReferences();
}

} // namespace mx
