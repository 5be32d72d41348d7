// Helpers shared by the gizmo node tests: the node with its protected operations opened, the
// culling modes by what they mean, the axis colours as the lines hold them, the colours of all
// its lines, which axis its handles show hovered, and a counter of the node's dirty markings.
// Header-only; everything lives in namespace mx::test.
#pragma once

#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxSpatial.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace mx::test {

// A gizmo node with its protected operations opened to the tests, as a derived class or a
// controller of the library reaches them.
class mxExposedGizmoNode : public mxGizmoNode {
public:
    using mxGizmoNode::getBestScale;
    using mxGizmoNode::setActiveState;
    using mxGizmoNode::setCenterOffset;
};

// A line the renderer may draw, and one it never draws.
inline constexpr mxSpatial::CullingMode csShown = mxSpatial::CULL_DYNAMIC;
inline constexpr mxSpatial::CullingMode csHidden = mxSpatial::CULL_ALWAYS;

// Success when both colours are equal on every channel, alpha included; otherwise a failure
// naming both. Use as EXPECT_TRUE(ColorIs(...)).
inline ::testing::AssertionResult ColorIs(const Wm4::ColorRGBA& actual,
                                          const Wm4::ColorRGBA& expected) {
    if (actual == expected) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "colour is (" << actual.R() << ", " << actual.G() << ", " << actual.B() << ", "
           << actual.A() << "), expected (" << expected.R() << ", " << expected.G() << ", "
           << expected.B() << ", " << expected.A() << ")";
}

// The normal colour of axis as a line holds it, opaque.
inline Wm4::ColorRGBA NormalColor(unsigned int axis) {
    return Wm4::ColorRGBA(mxGizmoNode::csColors[axis]);
}

// The hovered shade of axis, opaque.
inline Wm4::ColorRGBA HoveredColor(unsigned int axis) {
    const Wm4::ColorRGB& shade = mxGizmoNode::csColorsHighlight[axis];
    return Wm4::ColorRGBA(shade.R(), shade.G(), shade.B(), 1.0f);
}

// The unit vector along axis; axes above Z wrap around, so that axis + 1 and axis + 2 name the
// two other axes in order.
inline Wm4::Vector3<float> UnitAxis(unsigned int axis) {
    Wm4::Vector3<float> v(0.0f, 0.0f, 0.0f);
    v[static_cast<int>(axis % 3)] = 1.0f;
    return v;
}

// Every line of a node with its colour, in child order.
inline std::vector<Wm4::ColorRGBA> ColorsOf(const mxGizmoNode& node) {
    std::vector<Wm4::ColorRGBA> colors;
    for (int slot = 0; slot < node.getChildCount(); ++slot) {
        colors.push_back(static_cast<const mxLine*>(node.getChild(slot))->getColor());
    }
    return colors;
}

// Success when the lines of the node's current mode show axis in its hovered shade and the
// other axes in their normal colours (all three normal for axis -1): the shaft and arrowhead
// of a translate axis, the circle of a rotate axis, the shaft and end square of a scale axis.
inline ::testing::AssertionResult ShowsHover(const mxGizmoNode& node, int axis) {
    for (unsigned int a = 0; a < 3u; ++a) {
        const Wm4::ColorRGBA expected =
            static_cast<int>(a) == axis ? HoveredColor(a) : NormalColor(a);
        std::vector<const mxLine*> lines;
        switch (node.getMode()) {
        case mxGizmoNode::GIZMO_TRANSLATE:
            lines = {node.getTranslateGizmo().getAxis(a), node.getTranslateGizmo().getArrowHead(a)};
            break;
        case mxGizmoNode::GIZMO_ROTATE:
            lines = {node.getRotateGizmo().getCircle(a)};
            break;
        case mxGizmoNode::GIZMO_SCALE:
            lines = {node.getScaleGizmo().getAxis(a), node.getScaleGizmo().getEndSquare(a)};
            break;
        default:
            return ::testing::AssertionFailure() << "the node has no mode with lines";
        }
        for (const mxLine* line : lines) {
            if (!line) {
                return ::testing::AssertionFailure() << "axis " << a << " has no line";
            }
            ::testing::AssertionResult same = ColorIs(line->getColor(), expected);
            if (!same) {
                return same << " on axis " << a << " (hovered axis " << axis << ")";
            }
        }
    }
    return ::testing::AssertionSuccess();
}

// Counts how often the node is marked dirty from now on: every marking advances the host's
// change stamp by one.
class MarkCounter {
public:
    explicit MarkCounter(const mxGizmoNode& node) : node(node), start(node.getChangeStamp()) {}
    std::uint64_t marks() const { return node.getChangeStamp() - start; }

private:
    const mxGizmoNode& node;
    std::uint64_t start;
};

} // namespace mx::test
