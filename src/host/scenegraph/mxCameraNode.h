// mxCameraNode: an object that holds a camera by counted reference, so the camera lives as
// long as the node (or anyone else holding it). For now it is a plain object, not a spatial
// in the scene graph; the camera's frame is set on the camera itself.
#pragma once

#include "mxCamera.h"
#include "mxObject.h"
#include "mxPointer.h"

#include <string>
#include <vector>

namespace mx {

class mxCameraNode : public mxObject {
public:
    static const mxRtti TYPE;

    // A node holding camera (which may be null); takes a reference to it.
    explicit mxCameraNode(mxCamera* camera = nullptr);
    // Releases the camera: it is deleted unless someone else still holds it.
    ~mxCameraNode() override;

    const mxRtti& GetType() const override;

    // The held camera, or null.
    const mxCamera* getCamera() const { return camera.get(); }
    mxCamera* editCamera() { return camera.get(); }
    // Holds camera (may be null) instead of the current one, which is released. Setting the
    // camera already held is harmless.
    void setCamera(mxCamera* camera);

    // The node owns its camera, so the lookups also search it (node first, then camera).
    mxObject* GetObjectByName(const std::string& name) override;
    void GetAllObjectsByName(const std::string& name, std::vector<mxObject*>& objects) override;
    mxObject* GetObjectByID(unsigned int id) override;

private:
    mxPointer<mxCamera> camera;
};

} // namespace mx
