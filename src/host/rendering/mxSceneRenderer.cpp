#include "mxSceneRenderer.h"

#include "scenegraph/mxCamera.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"

#include <cmath>
#include <initializer_list>

namespace mx {

mxSceneRenderer::mxSceneRenderer(mxHardwareRendererInterface* hardware) : hardware(hardware) {}

mxSceneRenderer::~mxSceneRenderer() = default;

void mxSceneRenderer::renderScene(mxSpatial* root, const mxCamera& camera, int viewportWidth,
                                  int viewportHeight) {
    lastDrawn.clear();
    mxHardwareRendererInterface* device =
        hardware ? hardware : mxRendererInterface::GetHardwareRenderer();
    if (!device || !root) {
        return;
    }
    for (Layer* layer : {&scene, &overlay}) {
        layer->meshes.clear();
        layer->lines.clear();
    }
    collect(root, camera, false);

    device->beginFrame();
    device->setView(camera, viewportWidth, viewportHeight);
    draw(*device, scene);
    if (!overlay.meshes.empty() || !overlay.lines.empty()) {
        device->beginOverlay();
        draw(*device, overlay);
    }
    device->endFrame();
}

void mxSceneRenderer::draw(mxHardwareRendererInterface& device, const Layer& layer) {
    auto prepare = [&device](mxBaseGeometry& geometry) {
        mxGeometry* generated = geometry.getGeneratedGeometry();
        return device.prepareBuffer(generated->getGeneratedBuffer(0), false) &&
               device.prepareBuffer(generated->getGeneratedBuffer(1), false);
    };
    for (mxMesh* mesh : layer.meshes) {
        if (prepare(*mesh)) {
            device.drawMesh(*mesh);
            lastDrawn.push_back(mesh);
        }
    }
    for (mxLine* line : layer.lines) {
        if (prepare(*line)) {
            device.drawLine(*line);
            lastDrawn.push_back(line);
        }
    }
}

void mxSceneRenderer::collect(mxSpatial* spatial, const mxCamera& camera, bool inOverlay) {
    switch (spatial->getCullingMode()) {
    case mxSpatial::CULL_ALWAYS:
        return;
    case mxSpatial::CULL_DYNAMIC:
        if (!isInView(camera, spatial->getWorldBound())) {
            return;
        }
        break;
    case mxSpatial::CULL_NEVER:
        break;
    }
    inOverlay = inOverlay || spatial->isOverlay();
    Layer& layer = inOverlay ? overlay : scene;
    if (spatial->IsDerived(mxNode::TYPE)) {
        mxNode* node = static_cast<mxNode*>(spatial);
        for (int i = 0; i < node->getChildCount(); ++i) {
            if (mxSpatial* child = node->getChild(i)) {
                collect(child, camera, inOverlay);
            }
        }
    } else if (spatial->IsDerived(mxMesh::TYPE)) {
        mxMesh* mesh = static_cast<mxMesh*>(spatial);
        if (mesh->checkRenderable(false)) {
            layer.meshes.push_back(mesh);
        }
    } else if (spatial->IsDerived(mxLine::TYPE)) {
        mxLine* line = static_cast<mxLine*>(spatial);
        if (line->checkRenderable(false)) {
            layer.lines.push_back(line);
        }
    }
}

bool mxSceneRenderer::isInView(const mxCamera& camera, const mxBoundingVolume& bound) {
    // The sphere's centre in the camera's frame: x along R, y along U, depth along D.
    const Wm4::Vector3<float> offset = bound.getCenter() - camera.getLocation();
    const float x = offset.Dot(camera.getRVector());
    const float y = offset.Dot(camera.getUVector());
    const float z = offset.Dot(camera.getDVector());
    const float r = bound.getRadius();
    if (z + r < camera.getDMin() || z - r > camera.getDMax()) {
        return false;
    }
    if (!camera.isPerspective()) {
        return x + r >= camera.getRMin() && x - r <= camera.getRMax() &&
               y + r >= camera.getUMin() && y - r <= camera.getUMax();
    }
    // Signed distances to the four side planes through the eye and the near rectangle's
    // edges, positive inside.
    const float n = camera.getDMin();
    auto inside = [n, r](float lateral, float depth, float edge, float sign) {
        const float distance = sign * (lateral * n - depth * edge) / std::sqrt(n * n + edge * edge);
        return distance >= -r;
    };
    return inside(x, z, camera.getRMin(), 1.0f) && inside(x, z, camera.getRMax(), -1.0f) &&
           inside(y, z, camera.getUMin(), 1.0f) && inside(y, z, camera.getUMax(), -1.0f);
}

} // namespace mx
