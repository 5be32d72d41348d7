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
const Wm4::Vector3<float> csUnitAxes[3] = {Wm4::Vector3<float>::UNIT_X, Wm4::Vector3<float>::UNIT_Y,
                                           Wm4::Vector3<float>::UNIT_Z};

} // namespace impl

// 3. The axis colours: normal, and the hovered shade, darker on purpose. Single precision,
// the nearest float to each decimal.
const Wm4::ColorRGB mxGizmoNode::csColors[3] = {Wm4::ColorRGB(0.977f, 0.325f, 0.409f),
                                                Wm4::ColorRGB(0.339f, 0.781f, 0.324f),
                                                Wm4::ColorRGB(0.355f, 0.511f, 0.955f)};
const Wm4::ColorRGB mxGizmoNode::csColorsHighlight[3] = {Wm4::ColorRGB(0.732f, 0.0f, 0.227f),
                                                         Wm4::ColorRGB(0.016f, 0.565f, 0.111f),
                                                         Wm4::ColorRGB(0.030f, 0.321f, 0.731f)};

// 4. The gizmo node's run-time type, below the host's node type.
const mxRtti mxGizmoNode::TYPE("mxCore.mxGizmoNode", &mxNode::TYPE);

} // namespace mx
