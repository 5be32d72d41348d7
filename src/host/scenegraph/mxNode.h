// mxNode: a group of child spatials, held by counted references (a node keeps its children
// alive; a child knows its parent by a raw pointer). Children sit in slots; detaching leaves
// the slot empty (getChild returns null there) so the other children keep their indices.
//
// Attaching or detaching sets UPDATE_SUBTREE_CHANGED (0x40) in the update flags of the node
// and of every ancestor. A node's world bound encloses its children's bounds; a node with no
// child has radius 0 at its world translation.
#pragma once

#include "mxPointer.h"
#include "mxSpatial.h"

#include <vector>

namespace mx {

class mxNode : public mxSpatial {
public:
    static const mxRtti TYPE;

    mxNode();
    ~mxNode() override;
    const mxRtti& GetType() const override;

    mxObject* GetObjectByName(const std::string& name) override;
    void GetAllObjectsByName(const std::string& name, std::vector<mxObject*>& objects) override;
    mxObject* GetObjectByID(unsigned int id) override;
    void debugObject(int indent) const override;

    void UpdateWorldData() override;
    void UpdateWorldData_Flags() override;
    void UpdateWorldBound() override;

    // Appends child in a new slot and returns the slot index. Refuses (returns -1, changes
    // nothing) a null child, a child that already has a parent, this node itself and any of
    // its ancestors.
    virtual int attachChild(mxPointer<mxSpatial>& child);
    virtual int attachChild(mxSpatial* child);
    // The child in slot index, or null (empty slot, index out of range).
    virtual mxSpatial* getChild(int index) const;

    // Empties the slot that holds child and returns its index, or -1 when child is not a
    // child of this node. The child is released (deleted if nothing else holds it).
    int detachChild(mxSpatial* child);
    // Empties slot index and returns the child it held (null for an empty or invalid slot).
    mxPointer<mxSpatial> detachChildAt(int index);

    // The number of child slots, empty ones included.
    int getChildCount() const { return static_cast<int>(children.size()); }

    // Clears mask in the update flags of this node and, recursively, of every child whose
    // update flags have a bit of mask set.
    void clearUpdateFlagsDown(unsigned int mask);

private:
    // Sets UPDATE_SUBTREE_CHANGED here and in every ancestor.
    void markSubtreeChanged();

    std::vector<mxPointer<mxSpatial>> children;
};

} // namespace mx
