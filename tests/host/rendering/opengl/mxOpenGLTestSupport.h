// Helpers shared by the OpenGL tests: a current OpenGL 3.3 compatibility context that renders
// into a framebuffer of its own, its pixels and buffer objects read back. Header-only;
// everything lives in namespace mx::test.
//
// The tests call GL through Qt's QOpenGLExtraFunctions: libepoxy is a private dependency of
// the rendering library, so the test program does not link it.
//
// The context belongs to a QOffscreenSurface; under Xvfb that surface's own framebuffer is a
// tiny pbuffer or hidden window whose size Qt chooses, so the tests draw into a framebuffer
// object instead: an RGBA8 colour and a 24-bit depth renderbuffer, single sampled, so that
// every pixel is exactly what was rasterised at its centre.
#pragma once

#include "wm4/Wm4ColorRGBA.h"

#include "support/mxQtGuiTestSupport.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QSurfaceFormat>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace mx::test {

// One pixel read back, 0 to 255 per channel.
struct Pixel {
    std::array<int, 4> rgba{};
};

inline std::ostream& operator<<(std::ostream& out, const Pixel& pixel) {
    return out << "(" << pixel.rgba[0] << ", " << pixel.rgba[1] << ", " << pixel.rgba[2] << ", "
               << pixel.rgba[3] << ")";
}

// Success when the red, green and blue of pixel are each within tolerance (in 1/255 steps) of
// color's. Alpha is left out: blending also writes it, and nothing shows it.
inline ::testing::AssertionResult ColorNear(const Wm4::ColorRGBA& color, const Pixel& pixel,
                                            int tolerance = 2) {
    for (int channel = 0; channel < 3; ++channel) {
        const double expected = 255.0 * color[channel];
        if (std::fabs(expected - pixel.rgba[channel]) > tolerance) {
            return ::testing::AssertionFailure()
                   << "pixel " << pixel << " is not within " << tolerance << "/255 of ("
                   << color[0] * 255.0f << ", " << color[1] * 255.0f << ", " << color[2] * 255.0f
                   << ")";
        }
    }
    return ::testing::AssertionSuccess();
}

// A current OpenGL 3.3 compatibility context (with deprecatedFunctions false: a forward-
// compatible one, which Mesa makes a core profile context) drawing into a width x height
// framebuffer object with the viewport set to all of it. Check isReady() first; problem() says what
// failed. The context stays current for the object's life; destroy what uses it first. functions()
// calls GL in it.
class mxOffscreenGL {
public:
    explicit mxOffscreenGL(bool deprecatedFunctions = true, int width = 200, int height = 200)
        : width(width), height(height) {
        // On the platform the test runner sets: xcb, with a private X server (mxRunWithXvfb.sh).
        EnsureGuiApplication();
        // Wide lines need the compatibility profile, and Qt asks for a forward-compatible
        // context (no wide lines) unless deprecated functions are asked for. No multisampling,
        // so that a pixel is either covered or not.
        QSurfaceFormat format;
        format.setRenderableType(QSurfaceFormat::OpenGL);
        format.setProfile(QSurfaceFormat::CompatibilityProfile);
        format.setVersion(3, 3);
        format.setDepthBufferSize(24);
        format.setSamples(0);
        format.setOption(QSurfaceFormat::DeprecatedFunctions, deprecatedFunctions);
        surface = std::make_unique<QOffscreenSurface>();
        surface->setFormat(format);
        surface->create();
        context = std::make_unique<QOpenGLContext>();
        context->setFormat(format);
        if (!context->create()) {
            failure = "no OpenGL context could be created";
            return;
        }
        if (!context->makeCurrent(surface.get())) {
            failure = "the OpenGL context could not be made current";
            return;
        }
        gl = context->extraFunctions();
        gl->glGenRenderbuffers(1, &colorBuffer);
        gl->glBindRenderbuffer(GL_RENDERBUFFER, colorBuffer);
        gl->glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
        gl->glGenRenderbuffers(1, &depthBuffer);
        gl->glBindRenderbuffer(GL_RENDERBUFFER, depthBuffer);
        gl->glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, width, height);
        gl->glBindRenderbuffer(GL_RENDERBUFFER, 0);
        gl->glGenFramebuffers(1, &framebuffer);
        gl->glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                      colorBuffer);
        gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                      depthBuffer);
        if (gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
            failure = "the framebuffer object is incomplete";
            return;
        }
        gl->glViewport(0, 0, width, height);
        ready = gl->glGetError() == GL_NO_ERROR;
        if (!ready) {
            failure = "setting up the framebuffer raised a GL error";
        }
    }

    ~mxOffscreenGL() {
        if (context && context->makeCurrent(surface.get())) {
            gl->glBindFramebuffer(GL_FRAMEBUFFER, 0);
            gl->glDeleteFramebuffers(1, &framebuffer);
            gl->glDeleteRenderbuffers(1, &colorBuffer);
            gl->glDeleteRenderbuffers(1, &depthBuffer);
            context->doneCurrent();
        }
    }

    mxOffscreenGL(const mxOffscreenGL&) = delete;
    mxOffscreenGL& operator=(const mxOffscreenGL&) = delete;

    bool isReady() const { return ready; }
    QOpenGLExtraFunctions* functions() const { return gl; }
    const std::string& problem() const { return failure; }

    // The pixel in column x, row y, both counted from the lower left as GL counts them.
    Pixel pixel(int x, int y) const {
        unsigned char bytes[4] = {0, 0, 0, 0};
        gl->glPixelStorei(GL_PACK_ALIGNMENT, 1);
        gl->glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
        Pixel result;
        for (int channel = 0; channel < 4; ++channel) {
            result.rgba[channel] = bytes[channel];
        }
        return result;
    }

    // The bytes of a GL buffer object, read through a mapping (desktop GL's glGetBufferSubData
    // is not among Qt's functions).
    std::vector<unsigned char> bufferBytes(unsigned int object, std::size_t size) const {
        std::vector<unsigned char> bytes(size);
        if (size == 0) {
            return bytes;
        }
        gl->glBindBuffer(GL_ARRAY_BUFFER, object);
        if (const void* mapped = gl->glMapBufferRange(
                GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(size), GL_MAP_READ_BIT)) {
            std::memcpy(bytes.data(), mapped, size);
            gl->glUnmapBuffer(GL_ARRAY_BUFFER);
        }
        gl->glBindBuffer(GL_ARRAY_BUFFER, 0);
        return bytes;
    }

    const int width;
    const int height;

private:
    std::unique_ptr<QOffscreenSurface> surface;
    std::unique_ptr<QOpenGLContext> context;
    QOpenGLExtraFunctions* gl = nullptr;
    GLuint framebuffer = 0;
    GLuint colorBuffer = 0;
    GLuint depthBuffer = 0;
    bool ready = false;
    std::string failure;
};

} // namespace mx::test
