// mxRecordingRenderer: a hardware renderer that draws nothing and records every call it
// receives, in order, so tests can check what a scene renderer asked of the device. It can
// be told to refuse prepareBuffer from a given call on, as a device that runs out of memory
// would.
#pragma once

#include "rendering/mxHardwareRendererInterface.h"

#include <cstdint>
#include <vector>

namespace mx {
namespace test {

class mxRecordingRenderer : public mxHardwareRendererInterface {
public:
    enum CallKind {
        BEGIN_FRAME,
        END_FRAME,
        PREPARE_BUFFER,
        SET_VIEW,
        DRAW_LINE,
        DRAW_MESH,
        BEGIN_OVERLAY
    };

    struct Call {
        CallKind kind;
        // prepareBuffer: the buffer, its version at the time of the call (0 for null), the
        // force flag and the answer given.
        const mxBuffer* buffer = nullptr;
        std::uint64_t version = 0;
        bool force = false;
        bool accepted = false;
        // setView: the camera and the viewport size.
        const mxCamera* camera = nullptr;
        int viewportWidth = 0;
        int viewportHeight = 0;
        // drawLine and drawMesh: the geometry drawn.
        mxBaseGeometry* geometry = nullptr;
    };

    mxRecordingRenderer();
    ~mxRecordingRenderer() override;

    void beginFrame() override;
    void endFrame() override;
    bool prepareBuffer(const mxBuffer* buffer, bool force) override;
    void setView(const mxCamera& camera, int viewportWidth, int viewportHeight) override;
    void drawLine(mxLine& line) override;
    void drawMesh(mxMesh& mesh) override;
    void beginOverlay() override;

    // Refuses every prepareBuffer of a non-null buffer from the callNumber-th call (counted
    // from 1 since construction or the last clear) on; 0 accepts them all again. A null
    // buffer is always accepted, as the interface asks.
    void refusePrepareBufferFrom(int callNumber) { refuseFrom = callNumber; }

    const std::vector<Call>& getCalls() const { return calls; }
    // The kinds of the recorded calls, in order.
    std::vector<CallKind> getCallKinds() const;
    // How many recorded calls are of kind.
    int countCalls(CallKind kind) const;
    // The geometries of the drawLine and drawMesh calls, in order.
    std::vector<mxBaseGeometry*> getDrawnGeometries() const;
    // Forgets the recorded calls and restarts the prepareBuffer count; the refusal setting
    // stays.
    void clear();

private:
    std::vector<Call> calls;
    int prepareCount;
    int refuseFrom;
};

} // namespace test
} // namespace mx
