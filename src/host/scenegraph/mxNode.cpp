#include "mxNode.h"

namespace mx {

const mxRtti mxNode::TYPE("mxCore.mxNode", &mxSpatial::TYPE);

mxNode::mxNode() = default;

mxNode::~mxNode() {
    // Children that live on elsewhere must not point back at a node that is gone.
    for (mxPointer<mxSpatial>& child : children) {
        if (child) {
            child->parent = nullptr;
        }
    }
}

const mxRtti& mxNode::GetType() const { return TYPE; }

mxObject* mxNode::GetObjectByName(const std::string& name) {
    if (mxObject* found = mxSpatial::GetObjectByName(name)) {
        return found;
    }
    for (mxPointer<mxSpatial>& child : children) {
        if (child) {
            if (mxObject* found = child->GetObjectByName(name)) {
                return found;
            }
        }
    }
    return nullptr;
}

void mxNode::GetAllObjectsByName(const std::string& name, std::vector<mxObject*>& objects) {
    mxSpatial::GetAllObjectsByName(name, objects);
    for (mxPointer<mxSpatial>& child : children) {
        if (child) {
            child->GetAllObjectsByName(name, objects);
        }
    }
}

mxObject* mxNode::GetObjectByID(unsigned int id) {
    if (mxObject* found = mxSpatial::GetObjectByID(id)) {
        return found;
    }
    for (mxPointer<mxSpatial>& child : children) {
        if (child) {
            if (mxObject* found = child->GetObjectByID(id)) {
                return found;
            }
        }
    }
    return nullptr;
}

void mxNode::debugObject(int indent) const {
    mxSpatial::debugObject(indent);
    for (const mxPointer<mxSpatial>& child : children) {
        if (child) {
            child->debugObject(indent + 2);
        }
    }
}

void mxNode::UpdateWorldData() {
    mxSpatial::UpdateWorldData();
    if (ignoreChildren) {
        return;
    }
    for (mxPointer<mxSpatial>& child : children) {
        if (child) {
            child->UpdateGS(false);
        }
    }
}

void mxNode::UpdateWorldData_Flags() {
    const bool worldChanged = (getDirtyFlags() & DIRTY_WORLD) != 0;
    mxSpatial::UpdateWorldData_Flags();
    if (ignoreChildren) {
        return;
    }
    // A new world transformation here means new world transformations for every child.
    const unsigned int handedDown = dirtyFlagsDown | (worldChanged ? DIRTY_WORLD : 0u);
    for (mxPointer<mxSpatial>& child : children) {
        if (!child) {
            continue;
        }
        if (handedDown) {
            child->orDirtyFlags(handedDown, dirtyFlagsDown);
        }
        if (child->hasPendingWork()) {
            child->updateFlagged();
        }
    }
}

void mxNode::UpdateWorldBound() {
    if (!ignoreBound) {
        bool first = true;
        for (const mxPointer<mxSpatial>& child : children) {
            if (!child) {
                continue;
            }
            if (first) {
                worldBound = child->getWorldBound();
                first = false;
            } else {
                worldBound.growToContain(child->getWorldBound());
            }
        }
        if (first) {
            worldBound = mxBoundingVolume(getWorldTransform().GetTranslate(), 0.0f);
        }
    }
    clearDirtyFlags(DIRTY_BOUND);
}

int mxNode::attachChild(mxPointer<mxSpatial>& child) { return attachChild(child.get()); }

int mxNode::attachChild(mxSpatial* child) {
    if (!child || child->parent) {
        return -1;
    }
    for (mxSpatial* ancestor = this; ancestor; ancestor = ancestor->parent) {
        if (ancestor == child) {
            return -1; // would make a cycle
        }
    }
    children.push_back(child);
    child->parent = this;
    // The child now hangs below a new world: its subtree must be recomputed, and this
    // node's bound (and the ones above) no longer enclose everything.
    child->setDirty(DIRTY_WORLD | DIRTY_BOUND, true, true);
    dirtyFlags |= DIRTY_BOUND | DIRTY_DESCENDANT;
    markAncestorBoundsStale();
    markSubtreeChanged();
    return static_cast<int>(children.size()) - 1;
}

mxSpatial* mxNode::getChild(int index) const {
    if (index < 0 || index >= getChildCount()) {
        return nullptr;
    }
    return children[static_cast<std::size_t>(index)].get();
}

int mxNode::detachChild(mxSpatial* child) {
    if (!child) {
        return -1;
    }
    for (int index = 0; index < getChildCount(); ++index) {
        if (children[static_cast<std::size_t>(index)] == child) {
            detachChildAt(index);
            return index;
        }
    }
    return -1;
}

mxPointer<mxSpatial> mxNode::detachChildAt(int index) {
    if (index < 0 || index >= getChildCount()) {
        return mxPointer<mxSpatial>();
    }
    mxPointer<mxSpatial> child = std::move(children[static_cast<std::size_t>(index)]);
    children[static_cast<std::size_t>(index)] = nullptr;
    if (!child) {
        return child;
    }
    child->parent = nullptr;
    dirtyFlags |= DIRTY_BOUND | DIRTY_DESCENDANT;
    markAncestorBoundsStale();
    markSubtreeChanged();
    return child;
}

void mxNode::clearUpdateFlagsDown(unsigned int mask) {
    setUpdateFlags(getUpdateFlags() & ~mask);
    for (mxPointer<mxSpatial>& child : children) {
        if (!child || !(child->getUpdateFlags() & mask)) {
            continue;
        }
        if (child->IsDerived(mxNode::TYPE)) {
            static_cast<mxNode*>(child.get())->clearUpdateFlagsDown(mask);
        } else {
            child->setUpdateFlags(child->getUpdateFlags() & ~mask);
        }
    }
}

void mxNode::markSubtreeChanged() {
    for (mxSpatial* node = this; node; node = node->parent) {
        node->updateFlags |= UPDATE_SUBTREE_CHANGED;
    }
}

} // namespace mx
