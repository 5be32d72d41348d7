// mxOpenGLRenderer: a hardware renderer that draws through OpenGL into whatever context is
// current when its operations run. It loads the GL entry points through libepoxy, so it works
// with any windowing toolkit: the application creates the context (an OpenGL 3.3 compatibility
// profile, or any later one, so that lines can be wider than one pixel), makes it current,
// constructs the renderer, registers it with mxRendererInterface::SetHardwareRenderer, and
// keeps the context current around every call, the destructor included.
//
// What it draws:
// - lines in their colour (alpha blended) and width, their index buffer read as a connected
//   polyline (draw method 3) or as segments, one per index pair (draw method 0), unlit;
// - meshes as triangles in their colour, flat shaded by one directional light (a fixed
//   ambient term plus the diffuse term, lit from whichever side faces the eye);
// - everything placed by its world transformation and seen through the camera given to
//   setView (its view-projection matrix), depth tested;
// - after beginOverlay(), over everything drawn before in the frame (the depth buffer is
//   cleared once).
//
// Buffers: prepareBuffer uploads an mxBuffer into a GL buffer object the first time it sees the
// buffer, again when the buffer's version changed since the upload, and always when force is
// true. The renderer keeps a counted reference to each buffer it holds in GL, and endFrame
// deletes the GL copies of the buffers nobody else refers to any more. A geometry whose buffers
// are not both prepared is not drawn.
//
// The viewport is the context's own (glViewport as the application set it); setView's size is
// only checked: a view of zero width or height draws nothing until the next setView.
#pragma once

#include "mxHardwareRendererInterface.h"

#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Vector3.h"

#include <cstdint>
#include <map>
#include <string>

namespace mx {

class mxOpenGLRenderer : public mxHardwareRendererInterface {
public:
    // Needs a current context. Compiles the two shader programs; isValid() tells whether that
    // worked (it fails on a context older than OpenGL 3.3 or without one).
    mxOpenGLRenderer();
    // Deletes every GL object the renderer made; the context must be current.
    ~mxOpenGLRenderer() override;
    mxOpenGLRenderer(const mxOpenGLRenderer&) = delete;
    mxOpenGLRenderer& operator=(const mxOpenGLRenderer&) = delete;

    // Whether the renderer can draw. An invalid renderer refuses every buffer but null and
    // draws nothing; getError() says why.
    bool isValid() const { return valid; }
    const std::string& getError() const { return error; }

    // Clears colour and depth (to the clear colour and the far plane) and sets the GL state
    // the renderer draws with.
    void beginFrame() override;
    void endFrame() override;
    bool prepareBuffer(const mxBuffer* buffer, bool force) override;
    void setView(const mxCamera& camera, int viewportWidth, int viewportHeight) override;
    void drawLine(mxLine& line) override;
    void drawMesh(mxMesh& mesh) override;
    void beginOverlay() override;

    // Dark grey (0.18, 0.19, 0.21, 1) until set.
    void setClearColor(const Wm4::ColorRGBA& color) { clearColor = color; }
    const Wm4::ColorRGBA& getClearColor() const { return clearColor; }
    // The direction the light travels, in world space; normalised when set. (-0.4, -1, -0.6)
    // normalised until set. A zero direction is ignored.
    void setLightDirection(const Wm4::Vector3<float>& direction);
    const Wm4::Vector3<float>& getLightDirection() const { return lightDirection; }

    // The GL buffer object that holds buffer's data, 0 when buffer is not held.
    unsigned int getBufferObject(const mxBuffer* buffer) const;
    // How many buffers are held in GL, and how many uploads (glBufferData calls) were made
    // since construction.
    std::size_t getHeldBufferCount() const { return held.size(); }
    std::uint64_t getUploadCount() const { return uploadCount; }

private:
    // A buffer held in GL: the counted reference that keeps it alive, its buffer object and
    // the version uploaded.
    struct HeldBuffer {
        mxPointer<mxBuffer> buffer;
        unsigned int object = 0;
        std::uint64_t version = 0;
        // For an index buffer: how many vertices its indices need (the largest index plus
        // one, 0 when empty), found once per upload.
        std::uint64_t verticesNeeded = 0;
    };

    // Where a program's uniforms are, looked up once (-1 for one it does not have).
    struct Uniforms {
        int model = -1;
        int viewProjection = -1;
        int color = -1;
        int eye = -1;
        int lightDirection = -1;
    };

    bool buildPrograms();
    // Binds the geometry's two held buffers and sets the per-draw uniforms shared by lines
    // and meshes; false when either buffer is not held or nothing can be drawn.
    bool bindGeometry(mxBaseGeometry& geometry, unsigned int program, const Uniforms& uniforms);
    void releaseUnused();

    bool valid;
    std::string error;
    unsigned int lineProgram;
    unsigned int meshProgram;
    Uniforms lineUniforms;
    Uniforms meshUniforms;
    // The widest line the context draws.
    float widestLine;
    unsigned int vertexArray;
    bool viewUsable;
    float viewProjection[16];
    Wm4::Vector3<float> eye;
    Wm4::ColorRGBA clearColor;
    Wm4::Vector3<float> lightDirection;
    std::map<const mxBuffer*, HeldBuffer> held;
    std::uint64_t uploadCount;
};

} // namespace mx
