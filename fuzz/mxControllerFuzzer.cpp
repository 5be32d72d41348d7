// mxControllerFuzzer: a whole scene driven through mxGizmoController by arbitrary calls.
//
// The bytes decode, in this order:
//   1. a viewport (0 x 0 and 1 x 1 included) and a camera, perspective or orthographic, with a
//      standard, looked-at or arbitrary frame (degenerate ones included) and any frustum the
//      camera accepts;
//   2. 0 to 5 reference objects, meshes or plain nodes, below the scene root or below another
//      object, each with an arbitrary local transformation;
//   3. 1 to 4 gizmos with their modes (any value), axis masks, options, pixel sizes, parents
//      and reference lists (null entries and repeats included);
//   4. the controller's orientation reference (any value), custom transformation, root node and
//      listeners (three recording ones and a null one);
//   5. then up to 256 operations, each chosen by a byte: mouse presses, moves and releases at
//      any pixel (aimed at a handle, next to the last one, anywhere, at the int limits), with
//      the engine's camera, another one or none; whole gestures; engine frames and renders
//      through a null device; enabling and disabling; mode, mask and option changes; listener
//      installs and uninstalls; clearController (through the engine's resetControllers) and
//      clearControllerEvents; orientation, custom transformation and root changes; reference
//      list edits; object moves, re-parenting and exclusion; gizmos and objects added and
//      deleted (following the documented protocol: a gizmo only after resetting the engine's
//      controllers, an object only once no gizmo references it); camera, frustum and viewport
//      changes, the camera taken away; and the controller's queries. Outside the checked
//      gestures the listeners may act from their callbacks too: install and uninstall
//      listeners, record mouse events, forget them, reset the controllers.
//
// Checked, because the library promises it:
//   - no callback outside a frame, and none in a frame of a disabled controller;
//   - onGizmoManipulated names a gizmo that is alive (never a null one);
//   - install/uninstall answers, and the mouse calls' answers (the flag of the last press,
//     cleared by a release);
//   - getPickedAxeIndex in -1..2, the picked colours matching it, (0, 0, 0) as the picked
//     world axis when nothing is picked;
//   - the stored orientation reference and enabled flag read back; the gizmo list is empty
//     after clearController and, after a frame in which the root reported a change, holds the
//     gizmos below it depth first, excluded subtrees left out;
//   - a clean gesture (press, moves, release, nothing else changing meanwhile) makes every
//     listener hear one of: nothing, translate start and end, rotate start and end, or
//     translate start, scale start and scale end; and at its End every moved reference object
//     of the dragged gizmo has the End transformation times its world transformation at the
//     press (within float rounding, where everything is finite).

#include "mxFuzzInput.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxGizmoController.h"
#include "frame/mx3DManipulationLibrary.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "rendering/mxHardwareRendererInterface.h"
#include "rendering/mxSceneRenderer.h"
#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "system/mxLog.h"
#include "wm4/Wm4ColorRGB.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace {

using mx::fuzz::HandlePoint;
using mx::fuzz::IsFinite;
using mx::fuzz::mxFuzzInput;
using mx::fuzz::WindowPositionOf;
using Transform = mx::mxGenericTransformation<float>;
using Vector = Wm4::Vector3<float>;

constexpr std::size_t csMaxGizmos = 6;
constexpr std::size_t csMaxObjects = 8;
constexpr int csMaxOperations = 256;

// Entry (row, col) of the matrix t applies (rotation times scale, or the general matrix), in
// double, where the product of two finite floats cannot overflow.
double FullEntry(const Transform& t, int row, int col) {
    const double entry = t.GetMatrix()(row, col);
    return t.IsRSMatrix() ? entry * static_cast<double>(t.GetScale()[col]) : entry;
}

// A device that draws nothing but reads what it is given, so that AddressSanitizer sees every
// buffer and geometry the renderer hands over.
class NullDevice : public mx::mxHardwareRendererInterface {
public:
    void beginFrame() override {}
    void endFrame() override {}
    bool prepareBuffer(const mx::mxBuffer* buffer, bool) override {
        if (buffer && buffer->getByteSize() > 0) {
            const unsigned char* bytes = static_cast<const unsigned char*>(buffer->getData());
            checksum += bytes[0] + bytes[buffer->getByteSize() - 1];
        }
        return true;
    }
    void setView(const mx::mxCamera& camera, int, int) override {
        checksum += static_cast<unsigned>(camera.getViewProjectionMatrix()[15] != 0.0f);
    }
    void drawLine(mx::mxLine& line) override { readGeometry(line); }
    void drawMesh(mx::mxMesh& mesh) override { readGeometry(mesh); }
    void beginOverlay() override {}

private:
    void readGeometry(const mx::mxBaseGeometry& geometry) {
        for (const Vector& vertex : geometry.getVertices()) {
            checksum += static_cast<unsigned>(vertex.X() > 0.0f);
        }
        checksum += static_cast<unsigned>(geometry.getColor().R() > 0.5f);
    }

    unsigned checksum = 0;
};

class Session;

// A listener that hands every callback to the session.
class Listener : public mx::mx3DManipulatorMotionListener {
public:
    Listener() = default;
    void attach(Session* owner) { session = owner; }

    void onGizmoManipulated(mx::mxGizmoNode* gizmo) override;
    void onTranslateManipulatorStart() override;
    void onTranslateManipulatorEnd(const Transform& transformation) override;
    void onRotateManipulatorStart() override;
    void onRotateManipulatorEnd(const Transform& transformation) override;
    void onScaleManipulatorStart() override;
    void onScaleManipulatorEnd(const Transform& transformation) override;

    // The Start and End callbacks heard during the current clean gesture, in order.
    std::vector<char> heard;

private:
    Session* session = nullptr;
};

// What a window pixel is: origin at the top left, y downwards.
struct Pixel {
    int x = 0;
    int y = 0;
};

// One reference object of the scene: a mesh or a plain node.
struct Object {
    mx::mxPointer<mx::mxSpatial> spatial;
    mx::mxNode* node = nullptr; // the same object when it is a node
};

class Session {
public:
    explicit Session(mxFuzzInput& input);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void run();

    // From the listeners.
    void heardManipulated(mx::mxGizmoNode* gizmo);
    void heardStart(Listener& listener, char word);
    void heardEnd(Listener& listener, char word, const Transform& transformation);
    // What a listener may do from its callback, outside the checked gestures: install and
    // uninstall listeners, record mouse events, forget them, reset the controllers.
    void reenter();

private:
    // Building.
    void buildView();
    void addObject();
    void addGizmo();
    void configureGizmo(mx::mxGizmoNode& gizmo);
    void chooseReferences(mx::mxGizmoNode& gizmo);
    mx::mxNode* chooseParent();
    mx::mxNode* chooseRoot();
    Transform niceOrAnyTransformation();

    // Operations.
    void step();
    void press(const Pixel& pixel, const mx::mxCamera* camera, int width, int height);
    void move(const Pixel& pixel);
    void release(const Pixel& pixel);
    void frame();
    void render();
    void cleanGesture();
    void changeReferences();
    void changeObject();
    void changeCamera();
    void deleteGizmo();
    void deleteObject();
    void callNodeDirectly();
    void install(int which);
    void uninstall(int which);
    void resetControllers();
    void clearEvents();

    // Checks.
    void checkQueries();
    void expectedGizmos(mx::mxNode* root, std::vector<mx::mxGizmoNode*>& found) const;
    bool isAlive(const mx::mxGizmoNode* gizmo) const;
    void checkDrag(const Transform& transformation) const;

    // Pixels.
    Pixel choosePixel();
    bool aimAt(mx::mxGizmoNode& gizmo, int handle, float along, Pixel& pixel) const;
    Pixel aimedPixel(std::size_t gizmo, int handle, float along);
    void viewport(int& width, int& height) const { engine.getViewportSize(width, height); }
    const mx::mxCamera* engineCamera() const { return engine.getCameraNode()->getCamera(); }

    mx::mxGizmoNode* gizmoAt(std::size_t index) const {
        return gizmos.empty() ? nullptr : gizmos[index % gizmos.size()].get();
    }
    mx::mxSpatial* objectAt(std::size_t index) const {
        return objects.empty() ? nullptr : objects[index % objects.size()].spatial.get();
    }

    mxFuzzInput& input;
    mx::mxEngine engine;
    mx::mxPointer<mx::mxCamera> camera;
    mx::mxPointer<mx::mxCameraNode> cameraNode;
    // A camera the engine does not use, for presses hit-tested against the wrong view.
    mx::mxPointer<mx::mxCamera> otherCamera;
    mx::mxPointer<mx::mxCameraNode> otherCameraNode;
    NullDevice device;
    mx::mxSceneRenderer renderer;
    mx::mxGizmoController controller;
    Listener listeners[3];

    std::vector<mx::mxPointer<mx::mxGizmoNode>> gizmos;
    std::vector<Object> objects;

    // What the controller has been told, mirrored.
    std::vector<mx::mx3DManipulatorMotionListener*> installed;
    mx::mxNode* rootNode = nullptr;
    mx::mxGizmoController::OrientationReference orientation = mx::mxGizmoController::Local;
    bool enabled = true;
    bool pressedOnGizmo = false;
    Pixel lastPixel;

    // Callbacks: only during a frame, none while disabled.
    bool insideFrame = false;
    int callbacksInFrame = 0;
    // A listener reset the controllers during the frame: the gizmo list is empty again.
    bool resetInFrame = false;
    int reentryDepth = 0;

    // The clean gesture under way, if any.
    struct Gesture {
        bool active = false;
        // The gizmos announced in the frame of the press.
        std::vector<mx::mxGizmoNode*> pressTouched;
        bool inPressFrame = false;
        bool started = false;
        mx::mxGizmoNode* dragged = nullptr;
        std::map<const mx::mxSpatial*, Transform> atPress;
    } gesture;
};

void Listener::onGizmoManipulated(mx::mxGizmoNode* gizmo) {
    session->heardManipulated(gizmo);
}
void Listener::onTranslateManipulatorStart() {
    session->heardStart(*this, 't');
}
void Listener::onTranslateManipulatorEnd(const Transform& transformation) {
    session->heardEnd(*this, 'T', transformation);
}
void Listener::onRotateManipulatorStart() {
    session->heardStart(*this, 'r');
}
void Listener::onRotateManipulatorEnd(const Transform& transformation) {
    session->heardEnd(*this, 'R', transformation);
}
void Listener::onScaleManipulatorStart() {
    session->heardStart(*this, 's');
}
void Listener::onScaleManipulatorEnd(const Transform& transformation) {
    session->heardEnd(*this, 'S', transformation);
}

Session::Session(mxFuzzInput& input)
    : input(input), camera(new mx::mxCamera(true)), cameraNode(new mx::mxCameraNode(camera.get())),
      otherCamera(new mx::mxCamera(false)),
      otherCameraNode(new mx::mxCameraNode(otherCamera.get())), renderer(&device) {
    for (Listener& listener : listeners) {
        listener.attach(this);
    }
    engine.setCameraNode(cameraNode.get());
    engine.attachController(&controller);
    buildView();

    const int objectCounts[] = {1, 2, 3, 0, 4, 5};
    const int objectCount = objectCounts[input.choice(6)];
    for (int i = 0; i < objectCount; ++i) {
        addObject();
    }
    const int gizmoCount = input.integer<int>(1, 4);
    for (int i = 0; i < gizmoCount; ++i) {
        addGizmo();
    }

    orientation = static_cast<mx::mxGizmoController::OrientationReference>(
        input.choice(7) == 6 ? input.anyInteger<std::int32_t>() : input.integer<int>(0, 4));
    controller.setOrientationReference(orientation);
    if (input.choice(3) == 0) {
        controller.setCustomTransformation(niceOrAnyTransformation());
    }
    controller.useCustomTranslate(input.choice(4) == 0);
    if (input.choice(4) == 0) {
        rootNode = chooseRoot();
        controller.setRootNode(rootNode);
    }
    // Usually one listener, sometimes all, sometimes a null one too.
    install(0);
    const int more = input.choice(4);
    for (int i = 0; i < more; ++i) {
        install(input.integer<int>(0, 3));
    }

    // The first frame collects and places the gizmos, the second turns their arrowheads to
    // the eye from where they now stand.
    frame();
    frame();
}

Session::~Session() {
    engine.detachController(&controller);
}

void Session::buildView() {
    switch (input.choice(9)) {
    case 0:
        engine.setViewportSize(200, 200);
        break;
    case 1:
        engine.setViewportSize(640, 480);
        break;
    case 2:
        engine.setViewportSize(0, 0);
        break;
    case 3:
        engine.setViewportSize(1, 1);
        break;
    case 4:
        engine.setViewportSize(0, 200);
        break;
    case 5:
        engine.setViewportSize(200, 0);
        break;
    case 6:
        engine.setViewportSize(input.integer<int>(1, 4096), input.integer<int>(1, 4096));
        break;
    default:
        engine.setViewportSize(input.anyInteger<int>(), input.anyInteger<int>());
        break;
    }
    camera->setPerspective(input.choice(4) != 3);
    changeCamera();
}

void Session::changeCamera() {
    switch (input.choice(8)) {
    case 0:
        // The standard view: eye on +Z looking down -Z, a 90-degree field of view.
        camera->setFrame(Vector(0.0f, 0.0f, 10.0f), Vector(0.0f, 0.0f, -1.0f),
                         Vector(0.0f, 1.0f, 0.0f), Vector(1.0f, 0.0f, 0.0f));
        camera->setFrustum(90.0f, 1.0f, 1.0f, 100.0f);
        if (!camera->isPerspective()) {
            camera->setFrustum(-10.0f, 10.0f, -10.0f, 10.0f, 1.0f, 100.0f);
        }
        break;
    case 1: {
        const Vector eye = input.niceVector();
        const Vector target = input.niceVector();
        const Vector up = input.flag() ? Vector(0.0f, 1.0f, 0.0f) : input.anyVector();
        camera->lookAt(eye, target, up);
        break;
    }
    case 2: {
        const Vector location = input.anyVector();
        const Vector d = input.anyVector();
        const Vector u = input.anyVector();
        const Vector r = input.anyVector();
        camera->setFrame(location, d, u, r);
        break;
    }
    case 3: {
        static constexpr float csFov[] = {90.0f, 45.0f, 30.0f, 60.0f, 120.0f, 179.0f, 1.0f};
        const float fov = csFov[input.integer<std::size_t>(0, 6)];
        const float aspect = input.flag() ? 1.0f : input.anyFloat();
        const float nearPlane = input.flag() ? 1.0f : input.anyFloat();
        const float farPlane = input.flag() ? 100.0f : input.anyFloat();
        camera->setFrustum(fov, aspect, nearPlane, farPlane);
        break;
    }
    case 4: {
        float values[6];
        for (float& value : values) {
            value = input.anyFloat();
        }
        camera->setFrustum(values[0], values[1], values[2], values[3], values[4], values[5]);
        break;
    }
    case 5:
        camera->setLocation(input.anyVector());
        break;
    case 6: {
        const Vector d = input.anyVector();
        const Vector u = input.anyVector();
        const Vector r = input.anyVector();
        camera->setAxes(d, u, r);
        break;
    }
    default:
        camera->setPerspective(input.flag());
        break;
    }
}

Transform Session::niceOrAnyTransformation() {
    if (input.flag()) {
        return input.anyTransformation();
    }
    Transform transformation;
    transformation.SetTranslate(input.niceVector());
    if (input.flag()) {
        transformation.SetRotate(input.niceRotation());
    }
    return transformation;
}

mx::mxNode* Session::chooseParent() {
    // The scene mostly; otherwise a node object, if there is one.
    if (input.choice(3) != 0) {
        return engine.getScene();
    }
    std::vector<mx::mxNode*> nodes;
    for (const Object& object : objects) {
        if (object.node) {
            nodes.push_back(object.node);
        }
    }
    if (nodes.empty()) {
        return engine.getScene();
    }
    return nodes[input.integer<std::size_t>(0, nodes.size() - 1)];
}

mx::mxNode* Session::chooseRoot() {
    switch (input.choice(4)) {
    case 0:
        return nullptr;
    case 1:
        return engine.getScene();
    case 2:
        if (mx::mxGizmoNode* gizmo = gizmoAt(input.anyInteger<std::uint8_t>())) {
            return gizmo;
        }
        return nullptr;
    default:
        for (std::size_t i = 0; i < objects.size(); ++i) {
            const Object& object = objects[(i + input.anyInteger<std::uint8_t>()) % objects.size()];
            if (object.node) {
                return object.node;
            }
        }
        return nullptr;
    }
}

void Session::addObject() {
    if (objects.size() >= csMaxObjects) {
        return;
    }
    Object object;
    if (input.choice(3) != 2) {
        // A small triangle, or (rarely) a mesh with nothing to draw.
        const bool empty = input.choice(8) == 0;
        mx::mxMesh* mesh = new mx::mxMesh(empty ? 0u : 3u, empty ? 0u : 1u);
        object.spatial = mesh;
        if (!empty) {
            mesh->setVertexPosition(0, Vector(-0.5f, -0.5f, 0.0f));
            mesh->setVertexPosition(1, Vector(0.5f, -0.5f, 0.0f));
            mesh->setVertexPosition(2, input.flag() ? Vector(0.0f, 0.5f, 0.0f) : input.anyVector());
            mesh->setTriangle(0, 0, 1, 2);
        }
    } else {
        object.node = new mx::mxNode();
        object.spatial = object.node;
    }
    object.spatial->editLocalTransform(true) = niceOrAnyTransformation();
    if (input.choice(6) == 0) {
        object.spatial->setStateFlags(mx::mxSpatial::STATE_EXCLUDED);
    }
    if (input.choice(8) != 0) {
        chooseParent()->attachChild(object.spatial.get());
    }
    objects.push_back(object);
}

void Session::addGizmo() {
    if (gizmos.size() >= csMaxGizmos) {
        return;
    }
    mx::mxPointer<mx::mxGizmoNode> gizmo = new mx::mxGizmoNode();
    configureGizmo(*gizmo);
    chooseReferences(*gizmo);
    if (input.choice(8) != 0) {
        chooseParent()->attachChild(gizmo.get());
    }
    if (input.choice(10) == 0) {
        gizmo->setStateFlags(mx::mxSpatial::STATE_EXCLUDED);
    }
    gizmos.push_back(gizmo);
}

void Session::configureGizmo(mx::mxGizmoNode& gizmo) {
    using Mode = mx::mxGizmoNode::GizmoMode;
    const Mode modes[] = {mx::mxGizmoNode::GIZMO_TRANSLATE, mx::mxGizmoNode::GIZMO_ROTATE,
                          mx::mxGizmoNode::GIZMO_SCALE,     mx::mxGizmoNode::GIZMO_TRANSLATE,
                          mx::mxGizmoNode::GIZMO_NONE,      mx::mxGizmoNode::GIZMO_UNSET,
                          mx::mxGizmoNode::GIZMO_ROTATE};
    const int which = input.choice(8);
    gizmo.setMode(which < 7 ? modes[which] : static_cast<Mode>(input.anyInteger<int>()));
    if (input.choice(3) == 0) {
        const int forMode = input.integer<int>(-1, 5);
        gizmo.setEnabledAxis(static_cast<Mode>(forMode), input.anyInteger<std::uint8_t>());
    }
    if (input.choice(4) == 0) {
        gizmo.setUseUniformScale(input.flag());
        gizmo.setSnapRotationToAxis(input.flag());
        gizmo.restrictPositionBetweenNearFar(input.flag());
    }
    if (input.choice(4) == 0) {
        gizmo.setExpectedPixelSize(input.anyFloat());
    }
    gizmo.setCullingMode(input.choice(4) == 0 ? mx::mxSpatial::CULL_ALWAYS
                                              : mx::mxSpatial::CULL_DYNAMIC);
}

void Session::chooseReferences(mx::mxGizmoNode& gizmo) {
    const int count = input.choice(7) == 0 ? 0 : input.integer<int>(1, 6);
    std::vector<mx::mxSpatial*> references;
    for (int i = 0; i < count; ++i) {
        // Mostly objects in order, so that small inputs pick distinct ones; sometimes null.
        const int which = input.choice(10);
        references.push_back(which == 9 ? nullptr
                                        : objectAt(static_cast<std::size_t>(which < 8 ? i : which) +
                                                   input.anyInteger<std::uint8_t>() % 2));
    }
    if (references.size() == 1 && input.flag()) {
        gizmo.setReferenceObject(references.front());
    } else {
        gizmo.setReferenceObjects(references);
    }
}

// Pixels -------------------------------------------------------------------------------------

bool Session::aimAt(mx::mxGizmoNode& gizmo, int handle, float along, Pixel& pixel) const {
    const mx::mxCamera* view = engineCamera();
    if (!view) {
        return false;
    }
    int width = 0;
    int height = 0;
    viewport(width, height);
    const Vector world = gizmo.getWorldTransform().ApplyForward(HandlePoint(handle, along), true);
    double x = 0.0;
    double y = 0.0;
    if (!WindowPositionOf(*view, world, width, height, x, y)) {
        return false;
    }
    pixel.x = static_cast<int>(std::lround(x));
    pixel.y = static_cast<int>(std::lround(y));
    return true;
}

Pixel Session::aimedPixel(std::size_t gizmoIndex, int handle, float along) {
    Pixel pixel;
    int width = 0;
    int height = 0;
    viewport(width, height);
    pixel.x = width / 2;
    pixel.y = height / 2;
    if (mx::mxGizmoNode* gizmo = gizmoAt(gizmoIndex)) {
        aimAt(*gizmo, handle, along, pixel);
    }
    return pixel;
}

Pixel Session::choosePixel() {
    int width = 0;
    int height = 0;
    viewport(width, height);
    Pixel pixel;
    switch (input.choice(8)) {
    case 0:
    case 1:
    case 2: {
        // On a handle: an axis at a fraction of its length, or a circle at some angle; then a
        // few pixels off.
        const std::size_t gizmo = input.anyInteger<std::uint8_t>();
        const int handle = input.integer<int>(0, 5);
        static constexpr float csAlong[] = {0.6f, 0.9f, 0.3f, 1.0f, 1.2f, 0.05f, 1.5f, 0.0f};
        const float along = handle < 3 ? csAlong[input.integer<std::size_t>(0, 7)]
                                       : 9.0f * static_cast<float>(input.integer<int>(0, 39));
        pixel = aimedPixel(gizmo, handle, along);
        pixel.x += input.integer<int>(-3, 3);
        pixel.y += input.integer<int>(-3, 3);
        break;
    }
    case 3:
    case 4: {
        // Next to the last one, as a drag goes.
        const long long x = static_cast<long long>(lastPixel.x) + input.integer<int>(-60, 60);
        const long long y = static_cast<long long>(lastPixel.y) + input.integer<int>(-60, 60);
        pixel.x = static_cast<int>(std::clamp<long long>(x, INT_MIN, INT_MAX));
        pixel.y = static_cast<int>(std::clamp<long long>(y, INT_MIN, INT_MAX));
        break;
    }
    case 5:
        // In the view or just around it (the viewport may be as large as an int allows).
        pixel.x = input.integer<int>(-20, width > INT_MAX - 20 ? INT_MAX : std::max(width, 0) + 20);
        pixel.y =
            input.integer<int>(-20, height > INT_MAX - 20 ? INT_MAX : std::max(height, 0) + 20);
        break;
    case 6: {
        const int edges[] = {INT_MIN,   INT_MAX, -1,         0,           width,
                             width - 1, height,  height - 1, INT_MIN + 1, INT_MAX - 1};
        pixel.x = edges[input.integer<std::size_t>(0, 9)];
        pixel.y = edges[input.integer<std::size_t>(0, 9)];
        break;
    }
    default:
        pixel.x = input.anyInteger<int>();
        pixel.y = input.anyInteger<int>();
        break;
    }
    return pixel;
}

// Calls with their mirrored answers --------------------------------------------------------

void Session::press(const Pixel& pixel, const mx::mxCamera* view, int width, int height) {
    lastPixel = pixel;
    pressedOnGizmo = controller.setMousePressed(view, pixel.x, pixel.y, width, height);
}

void Session::move(const Pixel& pixel) {
    lastPixel = pixel;
    MX_FUZZ_CHECK(controller.setMousePos(pixel.x, pixel.y) == pressedOnGizmo);
}

void Session::release(const Pixel& pixel) {
    lastPixel = pixel;
    MX_FUZZ_CHECK(controller.setMouseReleased(pixel.x, pixel.y) == pressedOnGizmo);
    pressedOnGizmo = false;
}

void Session::install(int which) {
    mx::mx3DManipulatorMotionListener* listener =
        which < 3 ? &listeners[which] : static_cast<mx::mx3DManipulatorMotionListener*>(nullptr);
    const bool known = std::find(installed.begin(), installed.end(), listener) != installed.end();
    MX_FUZZ_CHECK(controller.install3DManipulatorMotionListener(listener) == !known);
    if (!known) {
        installed.push_back(listener);
    }
}

void Session::uninstall(int which) {
    mx::mx3DManipulatorMotionListener* listener =
        which < 3 ? &listeners[which] : static_cast<mx::mx3DManipulatorMotionListener*>(nullptr);
    const auto found = std::find(installed.begin(), installed.end(), listener);
    MX_FUZZ_CHECK(controller.uninstall3DManipulatorMotionListener(listener) ==
                  (found != installed.end()));
    if (found != installed.end()) {
        installed.erase(found);
    }
}

void Session::resetControllers() {
    engine.resetControllers();
    MX_FUZZ_CHECK(controller.get3DManipulators().empty());
}

void Session::clearEvents() {
    controller.clearControllerEvents();
}

void Session::frame() {
    // Whether the controller collects the gizmos again this frame, and what it must find.
    mx::mxNode* root = rootNode ? rootNode : engine.getScene();
    const bool recollect = (root->getUpdateFlags() & mx::mxSpatial::UPDATE_SUBTREE_CHANGED) != 0;
    std::vector<mx::mxGizmoNode*> expected;
    if (recollect) {
        expectedGizmos(root, expected);
    }
    insideFrame = true;
    callbacksInFrame = 0;
    resetInFrame = false;
    engine.updateFrame();
    insideFrame = false;
    if (!enabled) {
        MX_FUZZ_CHECK(callbacksInFrame == 0);
    }
    if (recollect && !resetInFrame) {
        MX_FUZZ_CHECK(controller.get3DManipulators() == expected);
    }
    checkQueries();
}

void Session::render() {
    insideFrame = true;
    engine.renderFrame(renderer);
    insideFrame = false;
}

void Session::expectedGizmos(mx::mxNode* root, std::vector<mx::mxGizmoNode*>& found) const {
    // Depth first, children in index order; an excluded subtree is left out entirely.
    std::vector<mx::mxSpatial*> pending(1, root);
    while (!pending.empty()) {
        mx::mxSpatial* spatial = pending.back();
        pending.pop_back();
        if (!spatial || (spatial->getStateFlags() & mx::mxSpatial::STATE_EXCLUDED) != 0) {
            continue;
        }
        if (spatial->IsDerived(mx::mxGizmoNode::TYPE)) {
            found.push_back(static_cast<mx::mxGizmoNode*>(spatial));
        }
        if (spatial->IsDerived(mx::mxNode::TYPE)) {
            const mx::mxNode* node = static_cast<const mx::mxNode*>(spatial);
            for (int i = node->getChildCount() - 1; i >= 0; --i) {
                pending.push_back(node->getChild(i));
            }
        }
    }
}

bool Session::isAlive(const mx::mxGizmoNode* gizmo) const {
    for (const mx::mxPointer<mx::mxGizmoNode>& known : gizmos) {
        if (known.get() == gizmo) {
            return true;
        }
    }
    return false;
}

void Session::checkQueries() {
    MX_FUZZ_CHECK(controller.isEnabled() == enabled);
    MX_FUZZ_CHECK(controller.getOrientationReference() == orientation);
    std::vector<const mx::mxGizmoNode*> asked(1, nullptr);
    for (const mx::mxPointer<mx::mxGizmoNode>& gizmo : gizmos) {
        asked.push_back(gizmo.get());
    }
    for (const mx::mxGizmoNode* gizmo : asked) {
        const int axis = controller.getPickedAxeIndex(gizmo);
        MX_FUZZ_CHECK(axis >= -1 && axis <= 2);
        const Wm4::ColorRGB colour = controller.getPickedAxeColor(gizmo);
        const Wm4::ColorRGB shade = controller.getPickedAxeHighlightColor(gizmo);
        const Vector worldAxis = controller.getPickedWorldAxe(gizmo);
        if (axis == -1) {
            MX_FUZZ_CHECK(colour == Wm4::ColorRGB::BLACK && shade == Wm4::ColorRGB::BLACK);
            MX_FUZZ_CHECK(worldAxis.X() == 0.0f && worldAxis.Y() == 0.0f && worldAxis.Z() == 0.0f);
        } else {
            MX_FUZZ_CHECK(colour == mx::mxGizmoNode::csColors[axis] &&
                          shade == mx::mxGizmoNode::csColorsHighlight[axis]);
        }
        if (gizmo) {
            (void)gizmo->getCenterReferences();
        }
    }
    (void)controller.getCurrentTransformation();
    (void)controller.getCustomTransformation();
}

// Listener callbacks ---------------------------------------------------------------------------

void Session::heardManipulated(mx::mxGizmoNode* gizmo) {
    MX_FUZZ_CHECK(insideFrame);
    ++callbacksInFrame;
    MX_FUZZ_CHECK(isAlive(gizmo));
    if (gesture.active && gesture.inPressFrame &&
        std::find(gesture.pressTouched.begin(), gesture.pressTouched.end(), gizmo) ==
            gesture.pressTouched.end()) {
        gesture.pressTouched.push_back(gizmo);
    }
    if (!gesture.active) {
        reenter();
    }
}

void Session::reenter() {
    // Rarely, and not from within a callback that another callback caused.
    if (reentryDepth > 0 || input.choice(6) != 0) {
        return;
    }
    ++reentryDepth;
    switch (input.choice(7)) {
    case 0:
        install(input.integer<int>(0, 3));
        break;
    case 1:
        uninstall(input.integer<int>(0, 3));
        break;
    case 2:
        move(choosePixel());
        break;
    case 3: {
        int width = 0;
        int height = 0;
        viewport(width, height);
        press(choosePixel(), engineCamera(), width, height);
        break;
    }
    case 4:
        release(choosePixel());
        break;
    case 5:
        clearEvents();
        break;
    default:
        resetInFrame = true;
        resetControllers();
        break;
    }
    --reentryDepth;
}

void Session::heardStart(Listener& listener, char word) {
    MX_FUZZ_CHECK(insideFrame);
    ++callbacksInFrame;
    if (!gesture.active) {
        reenter();
        return;
    }
    listener.heard.push_back(word);
    if (!gesture.started) {
        // The drag takes hold: remember where every object stands.
        gesture.started = true;
        for (const Object& object : objects) {
            gesture.atPress[object.spatial.get()] = object.spatial->getWorldTransform();
        }
    }
}

void Session::heardEnd(Listener& listener, char word, const Transform& transformation) {
    MX_FUZZ_CHECK(insideFrame);
    ++callbacksInFrame;
    if (!gesture.active) {
        reenter();
        return;
    }
    listener.heard.push_back(word);
    checkDrag(transformation);
}

void Session::checkDrag(const Transform& transformation) const {
    // Every reference object the drag moved has the End transformation times its world
    // transformation at the press. Objects below another moved reference object are left out:
    // their parent moved too, so their recorded start no longer holds.
    mx::mxGizmoNode* dragged = gesture.dragged;
    if (!dragged || !gesture.started || !IsFinite(transformation)) {
        return;
    }
    const std::vector<mx::mxSpatial*>& references = dragged->getReferenceObjects();
    auto moved = [](const mx::mxSpatial* object) {
        return object && (object->getStateFlags() & mx::mxSpatial::STATE_EXCLUDED) == 0;
    };
    for (const mx::mxSpatial* object : references) {
        if (!moved(object)) {
            continue;
        }
        bool belowMoved = false;
        for (const mx::mxSpatial* ancestor = object->getParent(); ancestor && !belowMoved;
             ancestor = ancestor->getParent()) {
            belowMoved = moved(ancestor) && std::find(references.begin(), references.end(),
                                                      ancestor) != references.end();
        }
        const auto start = gesture.atPress.find(object);
        if (belowMoved || start == gesture.atPress.end() || !IsFinite(start->second)) {
            continue;
        }
        Transform expected;
        expected.Product(transformation, start->second);
        const Transform& actual = object->getWorldTransform();
        if (!IsFinite(expected) || !IsFinite(actual)) {
            continue;
        }
        for (int row = 0; row < 3; ++row) {
            for (int col = 0; col < 3; ++col) {
                const double a = FullEntry(expected, row, col);
                const double b = FullEntry(actual, row, col);
                MX_FUZZ_CHECK(std::fabs(a - b) <= 1e-4 * (1.0 + std::fabs(a) + std::fabs(b)));
            }
            const double a = expected.GetTranslate()[row];
            const double b = actual.GetTranslate()[row];
            MX_FUZZ_CHECK(std::fabs(a - b) <= 1e-4 * (1.0 + std::fabs(a) + std::fabs(b)));
        }
    }
}

// Operations -----------------------------------------------------------------------------------

void Session::cleanGesture() {
    // From a settled state: nothing recorded, no gesture open, the scene up to date.
    enabled = true;
    controller.setEnabled(true);
    clearEvents();
    frame();

    gesture = Gesture();
    gesture.active = true;
    for (Listener& listener : listeners) {
        listener.heard.clear();
    }
    int width = 0;
    int height = 0;
    viewport(width, height);
    const std::size_t target = input.anyInteger<std::uint8_t>();
    const int handle = input.integer<int>(0, 5);
    float along = handle < 3 ? 0.6f : 9.0f * static_cast<float>(input.integer<int>(0, 39));
    Pixel pixel = aimedPixel(target, handle, along);
    press(pixel, engineCamera(), width, height);
    gesture.inPressFrame = true;
    frame();
    gesture.inPressFrame = false;
    if (gesture.started) {
        // The press took hold of exactly one gizmo, which the frame announced.
        MX_FUZZ_CHECK(gesture.pressTouched.size() == 1);
        gesture.dragged = gesture.pressTouched.front();
    }

    const int moves = input.integer<int>(0, 6);
    for (int i = 0; i < moves; ++i) {
        if (input.flag()) {
            // Further along the same handle.
            along += handle < 3 ? 0.3f * static_cast<float>(input.integer<int>(-2, 3))
                                : 9.0f * static_cast<float>(input.integer<int>(-4, 4));
            pixel = aimedPixel(target, handle, along);
        } else {
            pixel = choosePixel();
        }
        move(pixel);
        if (input.flag()) {
            frame();
        }
    }
    release(input.flag() ? pixel : choosePixel());
    frame();

    // What each listener heard, in order: nothing, or one whole drag of one kind.
    const std::vector<char>* first = nullptr;
    for (const mx::mx3DManipulatorMotionListener* listener : installed) {
        if (!listener) {
            continue;
        }
        const std::vector<char>& heard = static_cast<const Listener*>(listener)->heard;
        const std::vector<char> translate = {'t', 'T'};
        const std::vector<char> rotate = {'r', 'R'};
        const std::vector<char> scale = {'t', 's', 'S'};
        MX_FUZZ_CHECK(heard.empty() || heard == translate || heard == rotate || heard == scale);
        if (first) {
            MX_FUZZ_CHECK(heard == *first);
        }
        first = &heard;
    }
    gesture = Gesture();
}

void Session::changeReferences() {
    mx::mxGizmoNode* gizmo = gizmoAt(input.anyInteger<std::uint8_t>());
    if (!gizmo) {
        return;
    }
    std::vector<mx::mxSpatial*>& references = gizmo->editReferenceObjects();
    switch (input.choice(5)) {
    case 0:
        chooseReferences(*gizmo);
        break;
    case 1:
        references.push_back(input.choice(4) == 0 ? nullptr
                                                  : objectAt(input.anyInteger<std::uint8_t>()));
        break;
    case 2:
        if (!references.empty()) {
            references.pop_back();
        }
        break;
    case 3:
        if (!references.empty()) {
            references[input.integer<std::size_t>(0, references.size() - 1)] = nullptr;
        }
        break;
    default:
        gizmo->setReferenceObject(objectAt(input.anyInteger<std::uint8_t>()));
        break;
    }
}

void Session::changeObject() {
    if (objects.empty()) {
        return;
    }
    Object& object = objects[input.anyInteger<std::uint8_t>() % objects.size()];
    mx::mxSpatial* spatial = object.spatial.get();
    switch (input.choice(5)) {
    case 0:
        spatial->editLocalTransform(true) = niceOrAnyTransformation();
        break;
    case 1:
        // To another parent, or out of the scene (it stays alive: the session holds it).
        if (mx::mxNode* parent = spatial->getParent()) {
            parent->detachChild(spatial);
        }
        if (input.flag()) {
            chooseParent()->attachChild(spatial);
        }
        break;
    case 2:
        spatial->setStateFlags(spatial->getStateFlags() ^ mx::mxSpatial::STATE_EXCLUDED);
        break;
    case 3: {
        // A gizmo moved under another parent, or out of the scene, or excluded.
        mx::mxGizmoNode* gizmo = gizmoAt(input.anyInteger<std::uint8_t>());
        if (!gizmo) {
            break;
        }
        if (input.flag()) {
            gizmo->setStateFlags(gizmo->getStateFlags() ^ mx::mxSpatial::STATE_EXCLUDED);
            break;
        }
        if (mx::mxNode* parent = gizmo->getParent()) {
            parent->detachChild(gizmo);
        }
        if (input.flag()) {
            chooseParent()->attachChild(gizmo);
        }
        break;
    }
    default:
        spatial->editWorldTransform(input.flag()) = niceOrAnyTransformation();
        break;
    }
}

void Session::deleteGizmo() {
    if (gizmos.empty()) {
        return;
    }
    const std::size_t index = input.anyInteger<std::uint8_t>() % gizmos.size();
    mx::mxGizmoNode* gizmo = gizmos[index].get();
    // The documented protocol: the controller forgets its gizmos before one goes away, and
    // nothing keeps the gizmo as its root.
    if (rootNode == gizmo) {
        rootNode = nullptr;
        controller.setRootNode(nullptr);
    }
    if (mx::mxNode* parent = gizmo->getParent()) {
        parent->detachChild(gizmo);
    }
    resetControllers();
    gizmos.erase(gizmos.begin() + static_cast<std::ptrdiff_t>(index));
}

void Session::deleteObject() {
    if (objects.empty()) {
        return;
    }
    const std::size_t index = input.anyInteger<std::uint8_t>() % objects.size();
    mx::mxSpatial* spatial = objects[index].spatial.get();
    // No gizmo may keep a deleted object: drop it from every reference list (or null it out,
    // which keeps the other entries' places).
    const bool erase = input.flag();
    for (const mx::mxPointer<mx::mxGizmoNode>& gizmo : gizmos) {
        std::vector<mx::mxSpatial*>& references = gizmo->editReferenceObjects();
        if (erase) {
            references.erase(std::remove(references.begin(), references.end(), spatial),
                             references.end());
        } else {
            std::replace(references.begin(), references.end(), spatial,
                         static_cast<mx::mxSpatial*>(nullptr));
        }
    }
    if (rootNode == objects[index].node && rootNode) {
        rootNode = nullptr;
        controller.setRootNode(nullptr);
    }
    if (mx::mxNode* parent = spatial->getParent()) {
        parent->detachChild(spatial);
    }
    objects.erase(objects.begin() + static_cast<std::ptrdiff_t>(index));
}

void Session::callNodeDirectly() {
    mx::mxGizmoNode* gizmo = gizmoAt(input.anyInteger<std::uint8_t>());
    if (!gizmo) {
        return;
    }
    switch (input.choice(7)) {
    case 0:
        gizmo->highlight(input.anyInteger<unsigned int>() % 5u);
        break;
    case 1:
        gizmo->applyDefaultColors();
        break;
    case 2:
        gizmo->setHighlightColor(
            static_cast<mx::mxGizmoNode::GizmoMode>(input.integer<int>(-1, 5)),
            Wm4::ColorRGBA(input.anyFloat(), input.anyFloat(), input.anyFloat(), input.anyFloat()));
        break;
    case 3: {
        const Transform frameTransformation = niceOrAnyTransformation();
        const float pixelSize = input.anyFloat();
        const int height = input.flag() ? 200 : input.anyInteger<int>();
        gizmo->calculateFrameFromObjectWorldTranform(
            frameTransformation, input.flag() ? engineCamera() : otherCamera.get(), pixelSize,
            height);
        break;
    }
    case 4:
        gizmo->updateCameraFacing(input.flag() ? engineCamera() : otherCamera.get());
        break;
    case 5:
        // What a drag does, called by the application itself.
        gizmo->storeOriginalTransform();
        gizmo->applyWorldTransformForReferencedObjects(niceOrAnyTransformation());
        break;
    default:
        gizmo->setOverlay(input.flag());
        gizmo->setCullingMode(input.flag() ? mx::mxSpatial::CULL_NEVER
                                           : mx::mxSpatial::CULL_DYNAMIC);
        break;
    }
}

void Session::step() {
    int width = 0;
    int height = 0;
    viewport(width, height);
    switch (input.choice(32)) {
    case 0:
    case 1:
    case 2:
    case 3:
        cleanGesture();
        break;
    case 4:
    case 5: {
        const Pixel pixel = choosePixel();
        const mx::mxCamera* view = engineCamera();
        switch (input.choice(6)) {
        case 4:
            view = otherCamera.get();
            break;
        case 5:
            view = nullptr;
            break;
        default:
            break;
        }
        if (input.choice(5) == 0) {
            // A press measured against a view of another size.
            width = input.flag() ? input.anyInteger<int>() : input.integer<int>(-2, 4096);
            height = input.flag() ? input.anyInteger<int>() : input.integer<int>(-2, 4096);
        }
        press(pixel, view, width, height);
        break;
    }
    case 6:
    case 7:
        move(choosePixel());
        break;
    case 8:
        release(choosePixel());
        break;
    case 9:
    case 10:
        frame();
        break;
    case 11:
        render();
        break;
    case 12:
        enabled = input.flag();
        controller.setEnabled(enabled);
        break;
    case 13:
        if (mx::mxGizmoNode* gizmo = gizmoAt(input.anyInteger<std::uint8_t>())) {
            configureGizmo(*gizmo);
        }
        break;
    case 14:
        install(input.integer<int>(0, 3));
        break;
    case 15:
        uninstall(input.integer<int>(0, 3));
        break;
    case 16:
        resetControllers();
        break;
    case 17:
        clearEvents();
        break;
    case 18:
        orientation = static_cast<mx::mxGizmoController::OrientationReference>(
            input.choice(4) == 3 ? input.anyInteger<std::int32_t>() : input.integer<int>(0, 4));
        controller.setOrientationReference(orientation);
        break;
    case 19:
        controller.setCustomTransformation(niceOrAnyTransformation());
        controller.useCustomTranslate(input.flag());
        break;
    case 20:
        rootNode = chooseRoot();
        controller.setRootNode(rootNode);
        break;
    case 21:
        changeReferences();
        break;
    case 22:
    case 23:
        changeObject();
        break;
    case 24:
        deleteGizmo();
        break;
    case 25:
        addGizmo();
        break;
    case 26:
        deleteObject();
        break;
    case 27:
        addObject();
        break;
    case 28:
        changeCamera();
        break;
    case 29:
        switch (input.choice(5)) {
        case 0:
            // The camera taken away from the active node, and given back.
            cameraNode->setCamera(nullptr);
            break;
        case 1:
            cameraNode->setCamera(camera.get());
            break;
        case 2:
            engine.setCameraNode(input.flag() ? otherCameraNode.get() : cameraNode.get());
            break;
        default:
            buildView();
            break;
        }
        break;
    case 30:
        callNodeDirectly();
        break;
    default:
        checkQueries();
        break;
    }
}

void Session::run() {
    for (int i = 0; i < csMaxOperations && !input.exhausted(); ++i) {
        step();
    }
    // A last frame with whatever is still recorded.
    frame();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // Degenerate gizmos write warnings; thousands of runs a second need not print them.
    mx::mxLog::msInstance->setEchoToStandardError(false);
    mx::initialize3DManipulationLibrary();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mxFuzzInput input(data, size);
    Session session(input);
    session.run();
    return 0;
}
