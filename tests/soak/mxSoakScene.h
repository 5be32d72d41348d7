// mxSoakScene: the world of the soak run. An engine showing a 320 x 240 view through a camera
// that orbits the origin, eight reference objects (three directly below the scene; the others
// below parents that are turned, moved and scaled, one of those parents non-uniformly and one
// nested below it, so that their children's world transformations are general matrices; two
// objects flagged mxSpatial::STATE_EXCLUDED; one a node with a child of its own), three gizmos
// around overlapping sets of them (one set holding a null entry, which mxGizmoNode tolerates),
// and the mxGizmoController attached to the engine with an mxSoakListener installed.
//
// Window pixels follow the controller's convention: whole numbers, origin at the top left,
// y downwards; pixel (x, y) is read at its centre.
#pragma once

#include "mxSoakListener.h"

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Vector3.h"

#include <cstdint>
#include <vector>

namespace mx::soak {

class mxSoakScene {
public:
    static constexpr int csWidth = 320;
    static constexpr int csHeight = 240;
    static constexpr int csGizmoCount = 3;

    // Builds everything and runs one frame, so that the gizmos are collected and placed.
    mxSoakScene();
    // Detaches the controller from the engine before either goes.
    ~mxSoakScene();
    mxSoakScene(const mxSoakScene&) = delete;
    mxSoakScene& operator=(const mxSoakScene&) = delete;

    mxEngine& editEngine() { return engine; }
    mxGizmoController& editController() { return controller; }
    const mxGizmoController& getController() const { return controller; }
    mxSoakListener& editListener() { return listener; }
    const mxCamera& getCamera() const { return *camera; }

    // The reference objects, always in this order; a listener snapshot follows it too.
    const std::vector<mxSpatial*>& getObjects() const { return objects; }
    bool isExcluded(std::size_t object) const;
    // What the object is, for messages.
    const char* describeObject(std::size_t object) const;
    // The child of the node object: its world must follow the node's.
    const mxSpatial& getFollower() const { return *follower; }
    // The world and local transformations each object had when the scene was built.
    const mxGenericTransformation<float>& getInitialWorld(std::size_t object) const {
        return initialWorlds[object];
    }
    const mxGenericTransformation<float>& getInitialLocal(std::size_t object) const {
        return initialLocals[object];
    }
    // Puts the object back where it was built, as an application resets a runaway object, and
    // updates its world data at once.
    void resetObject(std::size_t object);

    mxGizmoNode& editGizmo(int index) { return *gizmos[static_cast<std::size_t>(index)]; }
    const mxGizmoNode& getGizmo(int index) const {
        return *gizmos[static_cast<std::size_t>(index)];
    }
    // The index of gizmo, or -1 for a node that is none of the scene's gizmos.
    int indexOf(const mxGizmoNode* gizmo) const;
    // Bit i set: object i is a non-null, non-excluded reference object of the gizmo, one that
    // its drags move.
    std::uint32_t movedBy(int gizmo) const { return movable[static_cast<std::size_t>(gizmo)]; }
    // Bit i set: object i is among the gizmo's reference objects (excluded ones included).
    std::uint32_t referencedBy(int gizmo) const {
        return referenced[static_cast<std::size_t>(gizmo)];
    }
    // Whether the gizmo is below the scene (a detached gizmo is kept alive, not collected).
    bool isAttached(int gizmo) const { return attached[static_cast<std::size_t>(gizmo)]; }
    void setAttached(int gizmo, bool attach);
    // Resets the engine's controllers (mxGizmoController::clearController forgets its gizmos)
    // and changes the scene's subtree, so that the next frame collects them again.
    void resetControllers();

    // Turns the eye about the origin's neighbourhood: azimuth and elevation in degrees, the
    // distance by a factor; the elevation stays within 75 degrees of the horizon and the
    // distance between 8 and 30, so that the camera stays a proper one looking at the scene.
    void orbit(double azimuthDegrees, double elevationDegrees, double distanceFactor);
    // Perspective with a 60-degree vertical field of view, or orthographic with a view box that
    // shows at every depth what the perspective view shows at the target.
    void setPerspective(bool perspective);
    bool isPerspective() const { return camera->isPerspective(); }

    // Where a world point shows, in pixels from the lower left of the view (the controllers'
    // picking measures so); false when it lies behind the eye or absurdly far off the view.
    bool screenPointOf(const Wm4::Vector3<float>& world, double& px, double& py) const;
    // The window pixel over a world point; false as for screenPointOf.
    bool windowPixelOf(const Wm4::Vector3<float>& world, int& x, int& y) const;

private:
    void aimCamera();
    void addObject(mxSpatial* object, mxNode* parent, const char* description, bool excluded);

    mxEngine engine;
    mxPointer<mxCamera> camera;
    double azimuth;
    double elevation;
    double distance;
    mxPointer<mxNode> parentA;
    mxPointer<mxNode> parentB;
    mxPointer<mxNode> parentC;
    // Attached and detached to change the scene's subtree.
    mxPointer<mxNode> marker;
    std::vector<mxPointer<mxSpatial>> objectHolders;
    std::vector<mxSpatial*> objects;
    std::vector<const char*> descriptions;
    std::vector<bool> excluded;
    std::vector<mxGenericTransformation<float>> initialWorlds;
    std::vector<mxGenericTransformation<float>> initialLocals;
    mxPointer<mxSpatial> follower;
    std::vector<mxPointer<mxGizmoNode>> gizmos;
    std::vector<std::uint32_t> movable;
    std::vector<std::uint32_t> referenced;
    std::vector<bool> attached;
    mxGizmoController controller;
    mxSoakListener listener;
};

} // namespace mx::soak
