// mxSceneRenderer: draws a scene through a hardware renderer.
//
// It walks the scene depth first, children in slot order. A spatial with culling mode 1 is
// skipped with its whole subtree; with mode 0 it is skipped (with its subtree) when its world
// bound lies entirely outside the camera's view volume; with mode 2 it is always visited.
// Meshes are drawn first, then lines, each group in walk order, so lines are never hidden
// behind solid objects drawn after them. Overlay subtrees (mxSpatial::setOverlay) come last,
// after the hardware renderer's beginOverlay(), again meshes before lines; beginOverlay() is
// called only when there is an overlay geometry to draw. Every geometry's generated buffers
// are prepared before it is drawn.
#pragma once

#include "mxRendererInterface.h"

#include <vector>

namespace mx {

class mxSceneRenderer : public mxRendererInterface {
public:
    // Draws through hardware; null draws through GetHardwareRenderer() at each call.
    explicit mxSceneRenderer(mxHardwareRendererInterface* hardware = nullptr);
    ~mxSceneRenderer() override;

    // Nothing is drawn when there is no hardware renderer or root is null.
    void renderScene(mxSpatial* root, const mxCamera& camera, int viewportWidth,
                     int viewportHeight) override;

    // Whether a sphere lies at least partly inside the camera's view volume.
    static bool isInView(const mxCamera& camera, const mxBoundingVolume& bound);

    // Geometries drawn by the last renderScene, in draw order.
    const std::vector<mxBaseGeometry*>& getLastDrawn() const { return lastDrawn; }

private:
    // The geometries of one layer, in walk order.
    struct Layer {
        std::vector<mxMesh*> meshes;
        std::vector<mxLine*> lines;
    };

    void collect(mxSpatial* spatial, const mxCamera& camera, bool inOverlay);
    void draw(mxHardwareRendererInterface& device, const Layer& layer);

    mxHardwareRendererInterface* hardware;
    Layer scene;
    Layer overlay;
    std::vector<mxBaseGeometry*> lastDrawn;
};

} // namespace mx
