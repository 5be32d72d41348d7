// A tiny application of the installed package: it starts the library, builds a scene with an
// object and a gizmo on it in an engine, lets a gizmo controller place the gizmo in a frame and
// prints what it sees.
#include <mx3DManipulation/mx3DManipulation.h>

#include <cstdio>

#ifdef MX3D_CONSUMER_WITH_QT
bool packagedFilterWorks(mx::mxEngine& engine);
#endif

int main() {
    mx::mxEngine engine;
    mx::initialize3DManipulationLibrary();
    mx::mxNode* object = new mx::mxNode();
    object->editLocalTransform(true).SetTranslate(Wm4::Vector3<float>(1.0f, 2.0f, -5.0f));
    engine.getScene()->attachChild(object);
    mx::mxGizmoNode* gizmo = new mx::mxGizmoNode();
    gizmo->setReferenceObject(object);
    gizmo->setMode(mx::mxGizmoNode::GIZMO_TRANSLATE);
    engine.getScene()->attachChild(gizmo);
    mx::mxGizmoController controller;
    engine.attachController(&controller);
    // The controller runs before the scene's update: the first frame computes the object's
    // world position, the second places the gizmo there.
    engine.updateFrame();
    engine.updateFrame();
    bool ok =
        gizmo->IsDerived(mx::mxNode::TYPE) &&
        mx::mxRendererInterface::GetHardwareRenderer() == nullptr &&
        controller.get3DManipulators().size() == 1 &&
        gizmo->getWorldTransform().GetTranslate() == object->getWorldTransform().GetTranslate();
#ifdef MX3D_CONSUMER_WITH_QT
    ok = ok && packagedFilterWorks(engine);
#endif
    std::printf("mx3DManipulation %s gizmo type %s\n",
                mx3DManipulation::Version::GetDescStringMajorMinorReleaseRevision(false, false),
                gizmo->GetType().getName());
    engine.detachController(&controller);
    mx::terminate3DManipulationLibrary();
    return ok ? 0 : 1;
}
