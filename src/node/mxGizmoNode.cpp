#include "mxGizmoNode.h"

namespace mx {

// TYPE is defined with the library's other load-time objects (frame/mxLibraryStatics.cpp).

mxGizmoNode::mxGizmoNode() = default;

mxGizmoNode::~mxGizmoNode() = default;

const mxRtti& mxGizmoNode::GetType() const { return TYPE; }

} // namespace mx
