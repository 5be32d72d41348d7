#include "mxRecordingRenderer.h"

#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"

#include <algorithm>

namespace mx {
namespace test {

mxRecordingRenderer::mxRecordingRenderer() : prepareCount(0), refuseFrom(0) {}

mxRecordingRenderer::~mxRecordingRenderer() = default;

void mxRecordingRenderer::beginFrame() {
    Call call;
    call.kind = BEGIN_FRAME;
    calls.push_back(call);
}

void mxRecordingRenderer::endFrame() {
    Call call;
    call.kind = END_FRAME;
    calls.push_back(call);
}

bool mxRecordingRenderer::prepareBuffer(const mxBuffer* buffer, bool force) {
    ++prepareCount;
    Call call;
    call.kind = PREPARE_BUFFER;
    call.buffer = buffer;
    call.version = buffer ? buffer->getVersion() : 0u;
    call.force = force;
    call.accepted = !buffer || refuseFrom <= 0 || prepareCount < refuseFrom;
    calls.push_back(call);
    return call.accepted;
}

void mxRecordingRenderer::setView(const mxCamera& camera, int viewportWidth,
                                  int viewportHeight) {
    Call call;
    call.kind = SET_VIEW;
    call.camera = &camera;
    call.viewportWidth = viewportWidth;
    call.viewportHeight = viewportHeight;
    calls.push_back(call);
}

void mxRecordingRenderer::drawLine(mxLine& line) {
    Call call;
    call.kind = DRAW_LINE;
    call.geometry = &line;
    calls.push_back(call);
}

void mxRecordingRenderer::drawMesh(mxMesh& mesh) {
    Call call;
    call.kind = DRAW_MESH;
    call.geometry = &mesh;
    calls.push_back(call);
}

void mxRecordingRenderer::beginOverlay() {
    Call call;
    call.kind = BEGIN_OVERLAY;
    calls.push_back(call);
}

std::vector<mxRecordingRenderer::CallKind> mxRecordingRenderer::getCallKinds() const {
    std::vector<CallKind> kinds;
    kinds.reserve(calls.size());
    for (const Call& call : calls) {
        kinds.push_back(call.kind);
    }
    return kinds;
}

int mxRecordingRenderer::countCalls(CallKind kind) const {
    return static_cast<int>(std::count_if(calls.begin(), calls.end(),
                                          [kind](const Call& call) { return call.kind == kind; }));
}

std::vector<mxBaseGeometry*> mxRecordingRenderer::getDrawnGeometries() const {
    std::vector<mxBaseGeometry*> drawn;
    for (const Call& call : calls) {
        if (call.kind == DRAW_LINE || call.kind == DRAW_MESH) {
            drawn.push_back(call.geometry);
        }
    }
    return drawn;
}

void mxRecordingRenderer::clear() {
    calls.clear();
    prepareCount = 0;
}

} // namespace test
} // namespace mx
