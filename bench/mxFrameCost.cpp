// Runs frames of one gizmo for bench/callgrind.sh, which counts the instructions executed in
// measuredFrames only: a figure that does not depend on the machine's load.
//
//   mxFrameCost idle|hover translate|rotate|scale [World|Local|View] [frames]
//
// The scene is built and ten frames are run before the measured ones, so that the figure is
// that of the steady state.
#include "mxBenchScene.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace mx::bench {

// Kept out of line: callgrind collects from its entry to its return.
__attribute__((noinline)) void measuredFrames(mxBenchScene& scene, bool hover, int frames) {
    for (int i = 0; i < frames; ++i) {
        if (hover) {
            scene.hoverFrame();
        } else {
            scene.idleFrame();
        }
    }
}

} // namespace mx::bench

namespace {

int usage() {
    std::fprintf(stderr, "usage: mxFrameCost idle|hover translate|rotate|scale [World|Local|View] "
                         "[frames]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    using mx::mxGizmoController;
    using mx::mxGizmoNode;
    if (argc < 3) {
        return usage();
    }
    const bool hover = std::strcmp(argv[1], "hover") == 0;
    if (!hover && std::strcmp(argv[1], "idle") != 0) {
        return usage();
    }
    mxGizmoNode::GizmoMode mode;
    if (std::strcmp(argv[2], "translate") == 0) {
        mode = mxGizmoNode::GIZMO_TRANSLATE;
    } else if (std::strcmp(argv[2], "rotate") == 0) {
        mode = mxGizmoNode::GIZMO_ROTATE;
    } else if (std::strcmp(argv[2], "scale") == 0) {
        mode = mxGizmoNode::GIZMO_SCALE;
    } else {
        return usage();
    }
    mxGizmoController::OrientationReference reference = mxGizmoController::World;
    if (argc > 3) {
        if (std::strcmp(argv[3], "Local") == 0) {
            reference = mxGizmoController::Local;
        } else if (std::strcmp(argv[3], "View") == 0) {
            reference = mxGizmoController::View;
        } else if (std::strcmp(argv[3], "World") != 0) {
            return usage();
        }
    }
    const int frames = argc > 4 ? std::atoi(argv[4]) : 1000;
    if (frames <= 0) {
        return usage();
    }

    mx::bench::mxBenchScene scene(mode, reference, 1, 1);
    if (!scene.error().empty()) {
        std::fprintf(stderr, "mxFrameCost: %s\n", scene.error().c_str());
        return 1;
    }
    for (int i = 0; i < 10; ++i) {
        if (hover) {
            scene.hoverFrame();
        } else {
            scene.idleFrame();
        }
    }
    mx::bench::measuredFrames(scene, hover, frames);
    return 0;
}
