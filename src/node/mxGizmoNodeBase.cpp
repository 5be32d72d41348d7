#include "mxGizmoNodeBase.h"

#include "mxGizmoNode.h"
#include "rendering/mxHardwareRendererInterface.h"
#include "rendering/mxRendererInterface.h"

namespace mx {

mxGizmoNodeBase::mxGizmoNodeBase()
    : highlightColor(Wm4::ColorRGBA::WHITE), enabledAxis(0xFF), owner(nullptr) {}

mxGizmoNodeBase::mxGizmoNodeBase(const mxGizmoNodeBase& other) = default;

mxGizmoNodeBase& mxGizmoNodeBase::operator=(const mxGizmoNodeBase& other) = default;

mxGizmoNodeBase::~mxGizmoNodeBase() = default;

bool mxGizmoNodeBase::PrepareGeneratedPrimitives(
    const std::vector<mxPointer<mxGeometry>>& geometries) {
    mxHardwareRendererInterface* renderer = mxRendererInterface::GetHardwareRenderer();
    bool result = true;
    for (const mxPointer<mxGeometry>& geometry : geometries) {
        if (!renderer || !result || !geometry) {
            continue;
        }
        // Both buffers are offered even when the first is refused.
        const bool vertices = renderer->prepareBuffer(geometry->getGeneratedBuffer(0), true);
        const bool indices = renderer->prepareBuffer(geometry->getGeneratedBuffer(1), true);
        result = vertices && indices;
    }
    return result;
}

bool mxGizmoNodeBase::isAxisEnabled(unsigned int axis) const {
    return axis < 3 && (enabledAxis & (1u << axis)) != 0;
}

void mxGizmoNodeBase::markOwnerDirty() const {
    if (owner) {
        owner->setDirty(0, true, false);
    }
}

void mxGizmoNodeBase::resetLines(LineList& lines) {
    lines.clear();
    lines.resize(3);
}

void mxGizmoNodeBase::setVertices(mxLine& line,
                                  std::initializer_list<Wm4::Vector3<float>> vertices) {
    unsigned int index = 0;
    for (const Wm4::Vector3<float>& position : vertices) {
        line.setVertexPosition(index++, position);
    }
}

void mxGizmoNodeBase::setIndices(mxLine& line, std::initializer_list<unsigned int> indices) {
    unsigned int position = 0;
    for (unsigned int vertex : indices) {
        line.setIndex(position++, vertex);
    }
}

void mxGizmoNodeBase::updateLine(mxLine& line) {
    line.UpdateMS(true, false, -2);
    line.UpdateGS(true);
}

void mxGizmoNodeBase::finishLines(const LineList& lines, float width) {
    for (const mxPointer<mxLine>& line : lines) {
        if (line) {
            line->setWidth(width);
            updateLine(*line);
        }
    }
}

void mxGizmoNodeBase::attachLines(const LineList& primaries, const LineList* companions) const {
    if (!owner) {
        return;
    }
    for (unsigned int axis = 0; axis < 3; ++axis) {
        owner->attachChild(lineAt(primaries, axis));
        if (companions) {
            owner->attachChild(lineAt(*companions, axis));
        }
    }
}

mxLine* mxGizmoNodeBase::lineAt(const LineList& lines, unsigned int axis) {
    return axis < lines.size() ? lines[axis].get() : nullptr;
}

void mxGizmoNodeBase::applyAxisCulling(const LineList& lines, bool visible) const {
    for (unsigned int axis = 0; axis < 3; ++axis) {
        if (mxLine* line = lineAt(lines, axis)) {
            line->setCullingMode(visible && isAxisEnabled(axis) ? mxSpatial::CULL_DYNAMIC
                                                                : mxSpatial::CULL_ALWAYS);
        }
    }
}

void mxGizmoNodeBase::applyNormalColors(const LineList& primaries, const LineList* companions,
                                        bool markDirty) const {
    for (unsigned int axis = 0; axis < 3; ++axis) {
        // The owner is marked for every axis, whether its colour changes or not: on purpose.
        if (markDirty) {
            markOwnerDirty();
        }
        const Wm4::ColorRGB& normal = mxGizmoNode::csColors[axis];
        if (mxLine* primary = lineAt(primaries, axis)) {
            primary->setColor(normal);
        }
        if (mxLine* companion = companions ? lineAt(*companions, axis) : nullptr) {
            companion->setColor(normal);
        }
    }
}

void mxGizmoNodeBase::highlightLines(const LineList& primaries, const LineList* companions,
                                     unsigned int axis) const {
    mxLine* hoveredPrimary = lineAt(primaries, axis);
    if (axis > 2 || !hoveredPrimary) {
        return;
    }
    const Wm4::ColorRGBA before = hoveredPrimary->getColor();
    applyNormalColors(primaries, companions, false);

    // The hovered shade is darker than the normal colour, and opaque.
    const Wm4::ColorRGB& shade = mxGizmoNode::csColorsHighlight[axis];
    const Wm4::ColorRGBA hovered(shade.R(), shade.G(), shade.B(), 1.0f);
    hoveredPrimary->setColor(hovered);
    if (mxLine* companion = companions ? lineAt(*companions, axis) : nullptr) {
        companion->setColor(hovered);
    }
    // Hovering the axis that is already hovered leaves the node unmarked.
    if (before != hovered) {
        markOwnerDirty();
    }
}

} // namespace mx
