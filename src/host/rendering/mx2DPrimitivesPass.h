// mx2DPrimitivesPass: the render pass for 2-D overlay primitives. Libraries hook into it by
// registering analyse functions, which the pass calls on each run with itself and the scene
// root; they fill (or empty) the pass's geometry batch.
//
// Batch protocol: whoever adds an entry gives the pass one extra reference on the geometry
// (addToGeometryRenderBatch does both); the analyse function that empties the batch releases
// that extra reference (DecrementReferences) for each entry before clearing the vector.
#pragma once

#include "scenegraph/mxGeometry.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxSpatial.h"

#include <vector>

namespace mx {

class mx2DPrimitivesPass {
public:
    using AnalyseFunction = void (*)(mx2DPrimitivesPass* pass, mxSpatial* root);

    // Adds function to the registry; false (and nothing changes) for a null function or one
    // registered already.
    static bool RegisterAnalyseFunction(AnalyseFunction function);
    // Removes function; false when it is not registered.
    static bool UnregisterAnalyseFunction(AnalyseFunction function);
    static bool IsAnalyseFunctionRegistered(AnalyseFunction function);
    static int GetAnalyseFunctionCount();

    mx2DPrimitivesPass();
    ~mx2DPrimitivesPass();
    mx2DPrimitivesPass(const mx2DPrimitivesPass&) = delete;
    mx2DPrimitivesPass& operator=(const mx2DPrimitivesPass&) = delete;

    // Calls every registered function with this pass and root, in registration order.
    void run(mxSpatial* root);

    std::vector<mxPointer<mxGeometry>>& editGeometryRenderBatch() { return geometryRenderBatch; }
    // Appends geometry to the batch with the pass's extra reference; null is ignored.
    void addToGeometryRenderBatch(mxGeometry* geometry);

private:
    std::vector<mxPointer<mxGeometry>> geometryRenderBatch;
};

} // namespace mx
