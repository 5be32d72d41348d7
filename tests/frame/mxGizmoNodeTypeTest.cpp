#include "node/mxGizmoNode.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(mxGizmoNodeTypeTest, TypeIsNamedMxCoreMxGizmoNodeBelowTheNodeType) {
    EXPECT_STREQ(mx::mxGizmoNode::TYPE.getName(), "mxCore.mxGizmoNode");
    EXPECT_EQ(mx::mxGizmoNode::TYPE.getParent(), &mx::mxNode::TYPE);
}

TEST(mxGizmoNodeTypeTest, EveryGizmoNodeIsDerivedFromNode) {
    mx::mxPointer<mx::mxGizmoNode> gizmo = new mx::mxGizmoNode();
    EXPECT_EQ(&gizmo->GetType(), &mx::mxGizmoNode::TYPE);
    EXPECT_TRUE(gizmo->IsDerived(mx::mxNode::TYPE));
    EXPECT_TRUE(gizmo->IsDerived(mx::mxSpatial::TYPE));
    EXPECT_TRUE(gizmo->IsExactly(mx::mxGizmoNode::TYPE));
    EXPECT_FALSE(gizmo->IsExactly(mx::mxNode::TYPE));
}

TEST(mxGizmoNodeTypeTest, PlainNodeIsNoGizmo) {
    mx::mxNode node;
    EXPECT_FALSE(node.IsDerived(mx::mxGizmoNode::TYPE));
}

} // namespace
