// A tiny application of the installed package: it starts the library, builds a scene with a
// gizmo node in an engine, runs a frame and prints what it sees.
#include <mx3DManipulation/mx3DManipulation.h>

#include <cstdio>

int main() {
    mx::mxEngine engine;
    mx::initialize3DManipulationLibrary();
    mx::mxGizmoNode* gizmo = new mx::mxGizmoNode();
    engine.getScene()->attachChild(gizmo);
    engine.updateFrame();
    const bool ok = gizmo->IsDerived(mx::mxNode::TYPE) &&
                    mx::mxRendererInterface::GetHardwareRenderer() == nullptr;
    std::printf("mx3DManipulation %s gizmo type %s\n",
                mx3DManipulation::Version::GetDescStringMajorMinorReleaseRevision(false, false),
                gizmo->GetType().getName());
    mx::terminate3DManipulationLibrary();
    return ok ? 0 : 1;
}
