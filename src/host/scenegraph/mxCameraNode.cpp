#include "mxCameraNode.h"

namespace mx {

const mxRtti mxCameraNode::TYPE("mxCore.mxCameraNode", &mxObject::TYPE);

mxCameraNode::mxCameraNode(mxCamera* camera) : camera(camera) {}

mxCameraNode::~mxCameraNode() = default;

const mxRtti& mxCameraNode::GetType() const {
    return TYPE;
}

void mxCameraNode::setCamera(mxCamera* newCamera) {
    // mxPointer takes the new reference before releasing the old one, so re-setting the
    // only holder's camera does not delete it on the way.
    camera = newCamera;
}

mxObject* mxCameraNode::GetObjectByName(const std::string& name) {
    if (mxObject* found = mxObject::GetObjectByName(name)) {
        return found;
    }
    return camera ? camera->GetObjectByName(name) : nullptr;
}

void mxCameraNode::GetAllObjectsByName(const std::string& name, std::vector<mxObject*>& objects) {
    mxObject::GetAllObjectsByName(name, objects);
    if (camera) {
        camera->GetAllObjectsByName(name, objects);
    }
}

mxObject* mxCameraNode::GetObjectByID(unsigned int id) {
    if (mxObject* found = mxObject::GetObjectByID(id)) {
        return found;
    }
    return camera ? camera->GetObjectByID(id) : nullptr;
}

} // namespace mx
