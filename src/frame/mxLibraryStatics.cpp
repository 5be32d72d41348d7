// Every load-time object of the library, in the order they are built when it is loaded (and
// destroyed, in reverse, when it is unloaded). Keep them in this one file: only within one
// source file is the order of load-time construction defined.
#include "mxLibraryStatics.h"

#include "node/mxGizmoNode.h"

namespace mx {
namespace impl {

// 1. The init counter.
LibInitCounter msLibraryInitCounter("3dmanip", true);

// 2. The unit axes, copied from Wild Magic's constants, which its own library has built by
// the time this one loads.
const Wm4::Vector3<float> csUnitAxes[3] = {Wm4::Vector3<float>::UNIT_X,
                                           Wm4::Vector3<float>::UNIT_Y,
                                           Wm4::Vector3<float>::UNIT_Z};

} // namespace impl

// 3. The gizmo node's run-time type, below the host's node type.
const mxRtti mxGizmoNode::TYPE("mxCore.mxGizmoNode", &mxNode::TYPE);

} // namespace mx
