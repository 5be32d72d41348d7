#include "mxOpenGLRenderer.h"

#include "scenegraph/mxBaseGeometry.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxGeometry.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "wm4/Wm4Matrix3.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace mx {

namespace {

// Both programs share the vertex stage: the model matrix places the vertex in the world, the
// camera's view-projection matrix takes it to clip space. The world position goes on to the
// mesh's fragment stage, which shades from it.
const char* const csVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
uniform mat4 model;
uniform mat4 viewProjection;
out vec3 worldPosition;
void main() {
    vec4 world = model * vec4(position, 1.0);
    worldPosition = world.xyz;
    gl_Position = viewProjection * world;
}
)";

// Lines are unlit: their colour as it is, alpha included.
const char* const csLineFragmentShader = R"(#version 330 core
uniform vec4 color;
out vec4 fragColor;
void main() {
    fragColor = color;
}
)";

// Meshes are flat shaded without a normal buffer: the triangle's plane is spanned by the
// screen-space derivatives of the world position. The normal is turned towards the eye, so a
// triangle is lit from the side the viewer sees, whichever way it winds.
const char* const csMeshFragmentShader = R"(#version 330 core
in vec3 worldPosition;
uniform vec4 color;
uniform vec3 eye;
uniform vec3 lightDirection;
out vec4 fragColor;
void main() {
    vec3 normal = normalize(cross(dFdx(worldPosition), dFdy(worldPosition)));
    if (dot(normal, eye - worldPosition) < 0.0) {
        normal = -normal;
    }
    float diffuse = max(dot(normal, -lightDirection), 0.0);
    fragColor = vec4(color.rgb * (0.35 + 0.65 * diffuse), color.a);
}
)";

// The compile or link log of a shader or program object.
std::string shaderLog(GLuint object, bool isProgram) {
    GLint length = 0;
    if (isProgram) {
        glGetProgramiv(object, GL_INFO_LOG_LENGTH, &length);
    } else {
        glGetShaderiv(object, GL_INFO_LOG_LENGTH, &length);
    }
    std::vector<GLchar> log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    if (isProgram) {
        glGetProgramInfoLog(object, length, nullptr, log.data());
    } else {
        glGetShaderInfoLog(object, length, nullptr, log.data());
    }
    return std::string(log.data());
}

// A compiled shader of that stage, or 0 with the reason in error.
GLuint compileShader(GLenum stage, const char* source, std::string& error) {
    const GLuint shader = glCreateShader(stage);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled != GL_TRUE) {
        error = "shader compilation failed: " + shaderLog(shader, false);
        glDeleteShader(shader);
        return 0;
    }
    return shader;
}

// A linked program of the two stages, or 0 with the reason in error.
GLuint linkProgram(const char* vertexSource, const char* fragmentSource, std::string& error) {
    const GLuint vertexShader = compileShader(GL_VERTEX_SHADER, vertexSource, error);
    if (vertexShader == 0) {
        return 0;
    }
    const GLuint fragmentShader = compileShader(GL_FRAGMENT_SHADER, fragmentSource, error);
    if (fragmentShader == 0) {
        glDeleteShader(vertexShader);
        return 0;
    }
    GLuint program = glCreateProgram();
    glAttachShader(program, vertexShader);
    glAttachShader(program, fragmentShader);
    glLinkProgram(program);
    // The program keeps what it linked; the shader objects are no longer needed.
    glDetachShader(program, vertexShader);
    glDetachShader(program, fragmentShader);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked != GL_TRUE) {
        error = "shader program link failed: " + shaderLog(program, true);
        glDeleteProgram(program);
        program = 0;
    }
    return program;
}

// The world transformation as a column-major 4x4 matrix for glUniformMatrix4fv. The full
// matrix is used: for a transformation in rotation-scale form GetMatrix() is only the rotation.
void modelMatrix(const mxGenericTransformation<float>& world, float out[16]) {
    const Wm4::Matrix3<float> m = world.GetFullMatrix();
    const Wm4::Vector3<float>& t = world.GetTranslate();
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row) {
            out[column * 4 + row] = m(row, column);
        }
        out[column * 4 + 3] = 0.0f;
    }
    out[12] = t.X();
    out[13] = t.Y();
    out[14] = t.Z();
    out[15] = 1.0f;
}

// The GL primitive that reads an index buffer the way the geometry says.
GLenum glPrimitive(mxGeometry::Primitive primitive) {
    switch (primitive) {
    case mxGeometry::PRIMITIVE_SEGMENTS:
        return GL_LINES;
    case mxGeometry::PRIMITIVE_POLYLINE:
        return GL_LINE_STRIP;
    case mxGeometry::PRIMITIVE_TRIANGLES:
        break;
    }
    return GL_TRIANGLES;
}

// How many vertices the indices of an index buffer need: its largest index plus one.
std::uint64_t verticesNeeded(const mxBuffer& indices) {
    const auto* first = static_cast<const std::uint32_t*>(indices.getData());
    const std::uint32_t* last = first + indices.getElementCount();
    return first == last ? 0u : std::uint64_t{*std::max_element(first, last)} + 1u;
}

// The widest line the current context draws: the top of its range of aliased widths, or 1 in
// a forward-compatible context, which refuses wider lines whatever the range says.
float widestDrawableLine() {
    GLfloat range[2] = {1.0f, 1.0f};
    glGetFloatv(GL_ALIASED_LINE_WIDTH_RANGE, range);
    GLint flags = 0;
    glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
    if (flags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT) {
        return 1.0f;
    }
    return std::max(1.0f, range[1]);
}

// Draws the geometry's primitives from the buffers bindGeometry bound.
void drawElements(const mxGeometry& generated) {
    const GLsizei count = static_cast<GLsizei>(generated.getGeneratedBuffer(1)->getElementCount());
    glDrawElements(glPrimitive(generated.getPrimitive()), count, GL_UNSIGNED_INT, nullptr);
}

} // namespace

mxOpenGLRenderer::mxOpenGLRenderer()
    : valid(false), lineProgram(0), meshProgram(0), widestLine(1.0f), vertexArray(0),
      viewUsable(false), viewProjection{}, eye(0.0f, 0.0f, 0.0f),
      clearColor(0.18f, 0.19f, 0.21f, 1.0f), lightDirection(-0.4f, -1.0f, -0.6f), uploadCount(0) {
    lightDirection.Normalize();
    valid = buildPrograms();
}

mxOpenGLRenderer::~mxOpenGLRenderer() {
    // Only objects that were made are deleted, so a renderer made without a context makes no
    // GL call here either.
    for (const auto& entry : held) {
        glDeleteBuffers(1, &entry.second.object);
    }
    held.clear();
    if (vertexArray != 0) {
        glDeleteVertexArrays(1, &vertexArray);
    }
    if (lineProgram != 0) {
        glDeleteProgram(lineProgram);
    }
    if (meshProgram != 0) {
        glDeleteProgram(meshProgram);
    }
}

bool mxOpenGLRenderer::buildPrograms() {
    // epoxy reads the version of the current context; 0 means there is none.
    const int version = epoxy_gl_version();
    if (version == 0) {
        error = "no current OpenGL context";
        return false;
    }
    if (!epoxy_is_desktop_gl() || version < 33) {
        error = "OpenGL 3.3 or later is needed, the context has " +
                std::string(epoxy_is_desktop_gl() ? "" : "OpenGL ES ") +
                std::to_string(version / 10) + "." + std::to_string(version % 10);
        return false;
    }
    lineProgram = linkProgram(csVertexShader, csLineFragmentShader, error);
    if (lineProgram == 0) {
        return false;
    }
    meshProgram = linkProgram(csVertexShader, csMeshFragmentShader, error);
    if (meshProgram == 0) {
        return false;
    }
    for (auto [program, uniforms] :
         {std::make_pair(lineProgram, &lineUniforms), std::make_pair(meshProgram, &meshUniforms)}) {
        uniforms->model = glGetUniformLocation(program, "model");
        uniforms->viewProjection = glGetUniformLocation(program, "viewProjection");
        uniforms->color = glGetUniformLocation(program, "color");
        uniforms->eye = glGetUniformLocation(program, "eye");
        uniforms->lightDirection = glGetUniformLocation(program, "lightDirection");
    }
    widestLine = widestDrawableLine();
    glGenVertexArrays(1, &vertexArray);
    return true;
}

void mxOpenGLRenderer::setLightDirection(const Wm4::Vector3<float>& direction) {
    const float length = direction.Length();
    if (!(length > 0.0f) || !std::isfinite(length)) {
        return;
    }
    lightDirection = direction / length;
}

void mxOpenGLRenderer::beginFrame() {
    if (!valid) {
        return;
    }
    glClearColor(clearColor.R(), clearColor.G(), clearColor.B(), clearColor.A());
    glClearDepth(1.0);
    // Clearing honours the write masks: open them before the clear.
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    // LEQUAL, so that a line drawn over a mesh edge at the same depth still shows.
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    // Meshes are lit from the side facing the viewer, so both sides are drawn.
    glDisable(GL_CULL_FACE);
}

void mxOpenGLRenderer::endFrame() {
    if (!valid) {
        return;
    }
    // Leave no program or vertex array bound for whatever else draws into the context.
    glBindVertexArray(0);
    glUseProgram(0);
    releaseUnused();
}

bool mxOpenGLRenderer::prepareBuffer(const mxBuffer* buffer, bool force) {
    if (!buffer) {
        return true;
    }
    if (!valid) {
        return false;
    }
    auto found = held.find(buffer);
    if (found == held.end()) {
        HeldBuffer entry;
        // The counted reference keeps the buffer alive while its GL copy exists; taking it
        // changes no data, so casting the const away is safe.
        entry.buffer = const_cast<mxBuffer*>(buffer);
        glGenBuffers(1, &entry.object);
        found = held.emplace(buffer, std::move(entry)).first;
    } else if (!force && found->second.version == buffer->getVersion()) {
        return true;
    }
    HeldBuffer& entry = found->second;
    // Both kinds are uploaded through GL_ARRAY_BUFFER: binding an element array buffer would
    // change the state of whichever vertex array is bound. GL buffers have no kind.
    const std::size_t size = buffer->getByteSize();
    glBindBuffer(GL_ARRAY_BUFFER, entry.object);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size),
                 size > 0 ? buffer->getData() : nullptr, GL_DYNAMIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    entry.version = buffer->getVersion();
    entry.verticesNeeded = buffer->getKind() == mxBuffer::INDEX ? verticesNeeded(*buffer) : 0u;
    ++uploadCount;
    return true;
}

void mxOpenGLRenderer::setView(const mxCamera& camera, int viewportWidth, int viewportHeight) {
    viewUsable = viewportWidth > 0 && viewportHeight > 0;
    std::copy(camera.getViewProjectionMatrix(), camera.getViewProjectionMatrix() + 16,
              viewProjection);
    eye = camera.getLocation();
    if (!camera.isPerspective()) {
        // An orthographic camera sees along parallel rays, from infinitely far back: a point
        // far behind the eye, beyond anything the view box reaches, stands in for it in the
        // mesh shader's facing test.
        const float reach =
            std::max({std::fabs(camera.getRMin()), std::fabs(camera.getRMax()),
                      std::fabs(camera.getUMin()), std::fabs(camera.getUMax()), camera.getDMax()});
        eye -= camera.getDVector() * (1000.0f * reach);
    }
}

void mxOpenGLRenderer::drawLine(mxLine& line) {
    if (!bindGeometry(line, lineProgram, lineUniforms)) {
        return;
    }
    // A width that is not a number is drawn 1 pixel wide.
    const float width = std::isnan(line.getWidth()) ? 1.0f : line.getWidth();
    glLineWidth(std::clamp(width, 1.0f, widestLine));
    drawElements(*line.getGeneratedGeometry());
}

void mxOpenGLRenderer::drawMesh(mxMesh& mesh) {
    if (!bindGeometry(mesh, meshProgram, meshUniforms)) {
        return;
    }
    glUniform3f(meshUniforms.eye, eye.X(), eye.Y(), eye.Z());
    glUniform3f(meshUniforms.lightDirection, lightDirection.X(), lightDirection.Y(),
                lightDirection.Z());
    drawElements(*mesh.getGeneratedGeometry());
}

void mxOpenGLRenderer::beginOverlay() {
    if (!valid) {
        return;
    }
    // Everything from here on passes the depth test against the overlay alone.
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT);
}

unsigned int mxOpenGLRenderer::getBufferObject(const mxBuffer* buffer) const {
    const auto found = held.find(buffer);
    return found == held.end() ? 0u : found->second.object;
}

bool mxOpenGLRenderer::bindGeometry(mxBaseGeometry& geometry, unsigned int program,
                                    const Uniforms& uniforms) {
    if (!valid || !viewUsable) {
        return false;
    }
    const mxGeometry* generated = geometry.getGeneratedGeometry();
    const mxBuffer* vertices = generated->getGeneratedBuffer(0);
    const mxBuffer* indices = generated->getGeneratedBuffer(1);
    const auto vertexEntry = held.find(vertices);
    const auto indexEntry = held.find(indices);
    if (vertexEntry == held.end() || indexEntry == held.end()) {
        return false;
    }
    // A buffer edited since its upload is not prepared: its GL copy is not what the geometry
    // holds.
    if (vertexEntry->second.version != vertices->getVersion() ||
        indexEntry->second.version != indices->getVersion()) {
        return false;
    }
    if (vertices->getKind() != mxBuffer::VERTEX || indices->getKind() != mxBuffer::INDEX ||
        indices->getElementCount() == 0 ||
        // GL would read the vertices of indices out of range from outside the buffer.
        indexEntry->second.verticesNeeded > vertices->getElementCount()) {
        return false;
    }

    glUseProgram(program);
    float model[16];
    modelMatrix(geometry.getWorldTransform(), model);
    glUniformMatrix4fv(uniforms.model, 1, GL_FALSE, model);
    glUniformMatrix4fv(uniforms.viewProjection, 1, GL_FALSE, viewProjection);
    const Wm4::ColorRGBA& color = geometry.getColor();
    glUniform4f(uniforms.color, color.R(), color.G(), color.B(), color.A());

    // Attribute 0 reads three floats per vertex; the element array binding is part of the
    // vertex array's state.
    glBindVertexArray(vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, vertexEntry->second.object);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexEntry->second.object);
    return true;
}

void mxOpenGLRenderer::releaseUnused() {
    for (auto entry = held.begin(); entry != held.end();) {
        // A count of 1 is the renderer's own reference: nobody else uses the buffer.
        if (entry->second.buffer->GetReferences() == 1) {
            glDeleteBuffers(1, &entry->second.object);
            entry = held.erase(entry);
        } else {
            ++entry;
        }
    }
}

} // namespace mx
