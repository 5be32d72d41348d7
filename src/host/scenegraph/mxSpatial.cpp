#include "mxSpatial.h"

#include "mxNode.h"

namespace mx {

namespace {
constexpr unsigned int csPendingWork = mxSpatial::DIRTY_WORLD | mxSpatial::DIRTY_BOUND |
                                       mxSpatial::DIRTY_MODEL | mxSpatial::DIRTY_DESCENDANT;
} // namespace

const mxRtti mxSpatial::TYPE("mxCore.mxSpatial", &mxObject::TYPE);

mxSpatial::mxSpatial()
    : parent(nullptr), cullingMode(CULL_DYNAMIC), overlay(false), dirtyFlags(0),
      dirtyFlagsDown(0), stateFlags(0), updateFlags(0), ignoreWorld(false), ignoreBound(false),
      ignoreChildren(false), changeStamp(0) {}

mxSpatial::~mxSpatial() = default;

const mxRtti& mxSpatial::GetType() const { return TYPE; }

mxGenericTransformation<float>& mxSpatial::editLocalTransform(bool markDirty) {
    if (markDirty) {
        setDirty(DIRTY_WORLD, true, false);
    }
    return local;
}

mxGenericTransformation<float>& mxSpatial::editWorldTransform(bool markDirty) {
    if (markDirty) {
        setDirty(DIRTY_WORLD, true, false);
    }
    return world;
}

const mxBoundingVolume& mxSpatial::getWorldBound() const {
    if (dirtyFlags & DIRTY_BOUND) {
        // Recomputing a stale bound changes no observable state: it is what the bound is.
        const_cast<mxSpatial*>(this)->UpdateWorldBound();
    }
    return worldBound;
}

void mxSpatial::setDirty(unsigned int flags, bool markAncestors, bool markSubtree) {
    dirtyFlags |= flags;
    if (markSubtree) {
        dirtyFlagsDown |= flags;
    }
    if (markAncestors && (flags & csPendingWork)) {
        markAncestorsPending();
    }
    ++changeStamp;
}

void mxSpatial::forceIgnore(bool world, bool bound, bool children) {
    ignoreWorld = world;
    ignoreBound = bound;
    ignoreChildren = children;
}

void mxSpatial::UpdateGS(bool initiator) {
    UpdateWorldData();
    UpdateWorldBound();
    dirtyFlags = 0;
    dirtyFlagsDown = 0;
    if (initiator) {
        markAncestorBoundsStale();
    }
}

void mxSpatial::UpdateGS_Flags() {
    updateFlagged();
    markAncestorBoundsStale();
}

void mxSpatial::updateFlagged() {
    const unsigned int work = dirtyFlags;
    UpdateWorldData_Flags();
    if (work & csPendingWork) {
        UpdateWorldBound();
    }
    dirtyFlags = 0;
    dirtyFlagsDown = 0;
}

void mxSpatial::Clean_Flags() {
    dirtyFlags = 0;
    dirtyFlagsDown = 0;
}

unsigned int mxSpatial::setDirtyDown(bool markAncestors) {
    const unsigned int flags = DIRTY_WORLD | DIRTY_BOUND;
    setDirty(flags, markAncestors, true);
    return flags;
}

void mxSpatial::UpdateWorldData() { computeWorldTransform(); }

void mxSpatial::UpdateWorldData_Flags() {
    if (dirtyFlags & DIRTY_WORLD) {
        computeWorldTransform();
    }
}

void mxSpatial::UpdateWorldBound() {
    if (!ignoreBound) {
        worldBound = mxBoundingVolume(world.GetTranslate(), 0.0f);
    }
    clearDirtyFlags(DIRTY_BOUND);
}

void mxSpatial::computeWorldTransform() {
    if (!ignoreWorld) {
        if (parent) {
            world.Product(parent->getWorldTransform(), local);
        } else {
            world = local;
        }
    }
}

void mxSpatial::markAncestorBoundsStale() {
    // No early stop at an ancestor that is marked already: setDirty can mark a node's bound
    // without marking the bounds above it, so a marked node says nothing about its parent.
    // The walk costs the depth, never the number of siblings.
    const unsigned int stale = DIRTY_BOUND | DIRTY_DESCENDANT;
    for (mxSpatial* ancestor = parent; ancestor; ancestor = ancestor->parent) {
        ancestor->dirtyFlags |= stale;
    }
}

void mxSpatial::markAncestorsPending() {
    // Up to the root, without stopping at a marked ancestor: a node whose subtree an update
    // left alone (forceIgnore) or whose flags were cleaned keeps its mark below an unmarked
    // parent, and stopping there would leave this object out of flagged updates for good.
    for (mxSpatial* ancestor = parent; ancestor; ancestor = ancestor->parent) {
        ancestor->dirtyFlags |= DIRTY_DESCENDANT;
    }
}

void mxSpatial::orDirtyFlags(unsigned int flags, unsigned int flagsDown) {
    dirtyFlags |= flags;
    dirtyFlagsDown |= flagsDown;
}

bool mxSpatial::hasPendingWork() const { return (dirtyFlags & csPendingWork) != 0; }

} // namespace mx
