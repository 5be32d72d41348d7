// mxGizmoNodeBase: what the three sub-gizmos of a gizmo node (translate, rotate, scale) share:
// the highlight colour, the mask of enabled axes and the node whose children their lines are.
//
// A sub-gizmo draws with host lines that it holds by counted references in lists indexed by
// axis (0 X, 1 Y, 2 Z) and that are also children of the owner node. Bit i of the enabled-axis
// mask enables axis i; bits 3 to 7 mean nothing and are kept as given.
//
// Culling modes used for showing and hiding: 0 (mxSpatial::CULL_DYNAMIC, shown when in view)
// and 1 (mxSpatial::CULL_ALWAYS, hidden).
#pragma once

#include "scenegraph/mxGeometry.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Vector3.h"

#include <initializer_list>
#include <vector>

namespace mx {

class mxGizmoNode;

class mxGizmoNodeBase {
public:
    using LineList = std::vector<mxPointer<mxLine>>;

    // White highlight colour, every axis enabled (0xFF), no owner.
    mxGizmoNodeBase();
    // Copies the highlight colour, the mask and the owner pointer (never any line).
    mxGizmoNodeBase(const mxGizmoNodeBase& other);
    mxGizmoNodeBase& operator=(const mxGizmoNodeBase& other);
    virtual ~mxGizmoNodeBase();

    unsigned char getEnabledAxis() const { return enabledAxis; }
    // Stores the mask only; the node re-applies visibility (mxGizmoNode::setEnabledAxis).
    void setEnabledAxis(unsigned char mask) { enabledAxis = mask; }

    // Stored only: the scale sub-gizmo reads it once, when it builds its active-axis frames,
    // so a colour set afterwards changes nothing on screen.
    void setHighlightColor(const Wm4::ColorRGBA& color) { highlightColor = color; }
    const Wm4::ColorRGBA& getHighlightColor() const { return highlightColor; }

    // The node whose children the lines are and which is marked dirty when a colour
    // changes; null until the sub-gizmo is built.
    mxGizmoNode* getOwner() const { return owner; }

protected:
    // Asks the current hardware renderer to prepare the vertex and the index buffer of each
    // geometry in turn. Returns false once the renderer refuses one; the geometries after it
    // are not sent. True with no renderer or no geometry.
    static bool PrepareGeneratedPrimitives(const std::vector<mxPointer<mxGeometry>>& geometries);

    // Whether bit axis of the mask is set; false for any axis above 2.
    bool isAxisEnabled(unsigned int axis) const;
    // Marks the owner node as changed (no flag, ancestors told), when there is one.
    void markOwnerDirty() const;

    // Line building. A list is first set to exactly three null entries.
    static void resetLines(LineList& lines);
    static void setVertices(mxLine& line, std::initializer_list<Wm4::Vector3<float>> vertices);
    static void setIndices(mxLine& line, std::initializer_list<unsigned int> indices);
    // Model-space update, then world update, of one line.
    static void updateLine(mxLine& line);
    // Width, then the updates above, for each line in axis order.
    static void finishLines(const LineList& lines, float width);
    // Attaches primaries[0], companions[0], primaries[1], ... to the owner; companions may be
    // null.
    void attachLines(const LineList& primaries, const LineList* companions) const;
    // The line of axis, or null when the list has none there.
    static mxLine* lineAt(const LineList& lines, unsigned int axis);

    // Shows the lines of every enabled axis (visible true) or hides them; the lines of a
    // disabled axis are always hidden.
    void applyAxisCulling(const LineList& lines, bool visible) const;
    // Puts each axis's primary line and companion (companions may be null) back to its
    // normal colour, marking the owner first for every axis when markDirty is true.
    void applyNormalColors(const LineList& primaries, const LineList* companions,
                           bool markDirty) const;
    // Normal colours everywhere, then the hovered shade on axis; marks the owner once if the
    // hovered line's colour changed. An axis above 2 changes nothing.
    void highlightLines(const LineList& primaries, const LineList* companions,
                        unsigned int axis) const;

    Wm4::ColorRGBA highlightColor;
    unsigned char enabledAxis;
    mxGizmoNode* owner;
};

} // namespace mx
