// mxGizmoNode: the scene-graph node of one manipulator. It derives from the host's mxNode;
// its run-time type is "mxCore.mxGizmoNode", so IsDerived(mxNode::TYPE) holds for it.
#pragma once

#include "scenegraph/mxNode.h"

namespace mx {

class mxGizmoNode : public mxNode {
public:
    static const mxRtti TYPE;

    mxGizmoNode();
    ~mxGizmoNode() override;

    const mxRtti& GetType() const override;
};

} // namespace mx
