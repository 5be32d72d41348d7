// Start-up and shut-down of the mx3DManipulation library.
//
// Call initialize3DManipulationLibrary() once the host engine runs and before gizmos are
// rendered, and terminate3DManipulationLibrary() before the engine stops; calls are paired
// and may nest. Only the outermost pair hooks the library into the host's 2-D primitives
// pass: the library's init counter decides, the library keeps no count of its own.
#pragma once

namespace mx {

class mx2DPrimitivesPass;
class mxSpatial;

void initialize3DManipulationLibrary();
void terminate3DManipulationLibrary();

namespace impl {

// The analyse function the library registers with the 2-D primitives pass. Each run it
// empties the pass's geometry batch (giving back the extra reference of every entry) and
// visits the scene below root depth first. It adds nothing to the batch.
void analyse3DManipulationPrimitives(mx2DPrimitivesPass* pass, mxSpatial* root);

} // namespace impl
} // namespace mx
