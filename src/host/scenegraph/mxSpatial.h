// mxSpatial: an object placed in the scene graph: a local transformation relative to its
// parent, a world transformation and a world bounding sphere, a culling mode, and the flag
// words through which updates are driven.
//
// Transformations follow mxGenericTransformation's convention (Y = M*X + T). After an update
// world = parent's world * local (just local without a parent), unless the world
// transformation is being kept by forceIgnore.
//
// Updates. UpdateGS() recomputes the world data of the whole subtree top-down and its bounds
// bottom-up. UpdateGS_Flags() does the same work only where the dirty flags ask for it. Both
// then mark the ancestors' bounds stale; a stale bound is recomputed once, when it is next
// read or by the next flagged update, never by re-merging siblings on every call. So
// UpdateGS_Flags() on one object costs O(its subtree + its depth).
//
// The two dirty-flag words:
// - getDirtyFlags(): work pending on this object (DIRTY_WORLD, DIRTY_BOUND, DIRTY_MODEL) and
//   DIRTY_DESCENDANT, "some object below has work pending";
// - getDirtyFlagsDown(): work pending for the whole subtree below; the next flagged update
//   hands it down to every child.
// Bits not named here are kept as given and cleared by the next update. setDirty() also
// advances the change stamp, so every marking is observable, even one with no flag.
#pragma once

#include "mxBoundingVolume.h"
#include "mxGenericTransformation.h"
#include "mxObject.h"

#include <cstdint>

namespace mx {

class mxNode;

class mxSpatial : public mxObject {
public:
    static const mxRtti TYPE;

    // 0: drawn when in view; 1: never drawn; 2: always drawn.
    enum CullingMode { CULL_DYNAMIC = 0, CULL_ALWAYS = 1, CULL_NEVER = 2 };

    enum DirtyFlag : unsigned int {
        DIRTY_WORLD = 0x1,      // world transformation (and so bound) to recompute
        DIRTY_BOUND = 0x2,      // world bound to recompute
        DIRTY_MODEL = 0x4,      // model data changed: model bound to recompute
        DIRTY_DESCENDANT = 0x8  // an object below has work pending
    };

    enum StateFlag : unsigned int {
        STATE_EXCLUDED = 0x4 // left out of gizmo searches and drags
    };

    enum UpdateFlag : unsigned int {
        UPDATE_SUBTREE_CHANGED = 0x40 // a child was attached or detached below; the engine
                                      // clears it after each frame's controllers
    };

    ~mxSpatial() override;
    const mxRtti& GetType() const override;

    // The node this object is attached to, or null.
    mxNode* getParent() const { return parent; }

    const mxGenericTransformation<float>& getLocalTransform() const { return local; }
    // The writable local transformation; markDirty true marks the world data for update.
    mxGenericTransformation<float>& editLocalTransform(bool markDirty);
    const mxGenericTransformation<float>& getWorldTransform() const { return world; }
    // The writable world transformation; markDirty true marks this object for update. An
    // update recomputes it from the local one unless forceIgnore keeps it.
    mxGenericTransformation<float>& editWorldTransform(bool markDirty);

    // The world bounding sphere, recomputed first if it is stale.
    const mxBoundingVolume& getWorldBound() const;

    void setCullingMode(CullingMode mode) { cullingMode = mode; }
    CullingMode getCullingMode() const { return cullingMode; }
    // An overlay subtree (this object and everything below it) is drawn after the rest of the
    // scene and over it, whatever lies in front: manipulators and other handles use it.
    void setOverlay(bool drawnOver) { overlay = drawnOver; }
    bool isOverlay() const { return overlay; }

    // ORs flags into the dirty flags; markAncestors marks the ancestors so that a flagged
    // update from any of them reaches this object; markSubtree also ORs flags into the flags
    // handed down to the subtree. Always advances the change stamp.
    void setDirty(unsigned int flags, bool markAncestors, bool markSubtree);
    unsigned int getDirtyFlags() const { return dirtyFlags; }
    unsigned int getDirtyFlagsDown() const { return dirtyFlagsDown; }
    // A counter advanced by every marking; renderers compare it to skip unchanged objects.
    std::uint64_t getChangeStamp() const { return changeStamp; }

    unsigned int getStateFlags() const { return stateFlags; }
    void setStateFlags(unsigned int flags) { stateFlags = flags; }
    unsigned int getUpdateFlags() const { return updateFlags; }
    void setUpdateFlags(unsigned int flags) { updateFlags = flags; }

    // Excludes (true) or re-includes (false) parts of this object from updates: world keeps
    // the world transformation as written, bound keeps the world bound, children leaves the
    // subtree below alone.
    void forceIgnore(bool world, bool bound, bool children);
    // Whether the world transformation is being kept.
    bool isIgnored() const { return ignoreWorld; }

    // Recomputes world data and bounds of the subtree; initiator true also marks the
    // ancestors' bounds stale.
    void UpdateGS(bool initiator = true);
    // The same, where the dirty flags ask for it; marks the ancestors' bounds stale.
    void UpdateGS_Flags();

    // Clears both dirty-flag words.
    virtual void Clean_Flags();
    // Marks this object's world data, and that of its whole subtree, for update; with
    // markAncestors the ancestors too, so that a flagged update from the root reaches it.
    // Returns the flags it set.
    virtual unsigned int setDirtyDown(bool markAncestors);
    // Recomputes the world transformation (unless kept), and for a node the subtree's world
    // data and bounds.
    virtual void UpdateWorldData();
    // The same, only where the dirty flags ask for it.
    virtual void UpdateWorldData_Flags();
    // Recomputes the world bound from this object's own data (a node: from its children).
    virtual void UpdateWorldBound();

protected:
    mxSpatial();

    // Marks the bound of every ancestor, up to the root, stale.
    void markAncestorBoundsStale();
    // Sets bits in the flag words directly (the node hands flags down to its children).
    void orDirtyFlags(unsigned int flags, unsigned int flagsDown);
    // Clears bits of the first flag word once their work is done.
    void clearDirtyFlags(unsigned int flags) { dirtyFlags &= ~flags; }
    // Whether forceIgnore keeps the world bound as it is.
    bool isBoundKept() const { return ignoreBound; }
    // Whether a flagged update has work to do here.
    bool hasPendingWork() const;

    // The world bound; mutable so that a stale bound can be recomputed when read.
    mutable mxBoundingVolume worldBound;

private:
    friend class mxNode;

    // The flagged update of this object and what is pending below it.
    void updateFlagged();
    void computeWorldTransform();
    void markAncestorsPending();

    mxNode* parent;
    mxGenericTransformation<float> local;
    mxGenericTransformation<float> world;
    CullingMode cullingMode;
    bool overlay;
    unsigned int dirtyFlags;
    unsigned int dirtyFlagsDown;
    unsigned int stateFlags;
    unsigned int updateFlags;
    bool ignoreWorld;
    bool ignoreBound;
    bool ignoreChildren;
    std::uint64_t changeStamp;
};

} // namespace mx
