#include "mx3DManipulationLibrary.h"

#include "mxLibraryStatics.h"

#include "node/mxGizmoNode.h"
#include "rendering/mx2DPrimitivesPass.h"

namespace mx {

namespace {

// Steps 4 and 5 of the analyse function: the depth-first visit. The gizmo check has no
// action: the visit finds gizmos and leaves them be, so nothing is ever added to the batch.
// That is how the library wants the pass used; do not give the check an action.
void visitScene(mxSpatial* root) {
    (void)root->IsDerived(mxGizmoNode::TYPE);
    if (!root->IsDerived(mxNode::TYPE)) {
        return;
    }
    mxNode* node = static_cast<mxNode*>(root);
    // The child count is read again after each child.
    for (int i = 0; i < node->getChildCount(); ++i) {
        if (mxSpatial* child = node->getChild(i)) {
            visitScene(child);
        }
    }
}

} // namespace

void initialize3DManipulationLibrary() {
    if (impl::msLibraryInitCounter.incrementInitCounter()) {
        mx2DPrimitivesPass::RegisterAnalyseFunction(&impl::analyse3DManipulationPrimitives);
    }
}

void terminate3DManipulationLibrary() {
    if (impl::msLibraryInitCounter.decrementInitCounter()) {
        mx2DPrimitivesPass::UnregisterAnalyseFunction(&impl::analyse3DManipulationPrimitives);
    }
}

namespace impl {

void analyse3DManipulationPrimitives(mx2DPrimitivesPass* pass, mxSpatial* root) {
    // Empty the batch, giving back the extra reference each entry carries; the vector keeps
    // its storage for the next pass.
    std::vector<mxPointer<mxGeometry>>& batch = pass->editGeometryRenderBatch();
    if (!batch.empty()) {
        for (mxPointer<mxGeometry>& geometry : batch) {
            if (geometry) {
                geometry->DecrementReferences();
            }
        }
        batch.clear();
    }
    if (!root) {
        return;
    }
    visitScene(root);
}

} // namespace impl
} // namespace mx
