// The library's per-frame results, pinned bit for bit: the placement of the gizmos and the
// turning of the arrowheads towards the eye, the hover and press hit tests of the three drag
// controllers (down to the exact distance each measures), the drags that write the reference
// objects' transformations, and the static transform arithmetic with the host's Product,
// Inverse and ApplyForward underneath.
//
// Each test plays one deterministic scenario and feeds every observable result, as raw bits,
// into a 64-bit FNV-1a digest, which must equal the value the code gave when the scenario was
// recorded. Faster code must give the very same bits: any change of a rounding, of an order of
// operations or of a tie-break changes the digest. A few readable checks per scenario show
// that it does what it says; the digest is the point.
//
// The views are 320 x 240 pixels with a 53-degree field of view and eyes at odd places, so
// that hardly any of the arithmetic is exact by accident.

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxGizmoController.h"
#include "controller/mxGizmoControllerRotate.h"
#include "controller/mxGizmoControllerScale.h"
#include "controller/mxGizmoControllerTranslate.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxSpatial.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace mx;
using mx::test::Circle;
using mx::test::CircleAbout;
using mx::test::ColumnOf;
using mx::test::PixelOf;
using mx::test::RecordingListener;
using mx::test::Rotation;
using mx::test::ShowsHover;
using mx::test::ToDouble;
using mx::test::UnitAxis;
using mx::test::VectorNear;
using mx::test::WindowPixel;
using mx::test::WindowPixelAt;

using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mxGenericTransformation<float>;
using Reference = mxGizmoController::OrientationReference;

// ---------------------------------------------------------------------------------------------
// The digest

// 64-bit FNV-1a over the exact bits of what it is fed: floats by their bit patterns (so -0 and
// +0 differ), integers as 32 bits, booleans as one byte, transformations member by member.
class Digest {
public:
    void addBytes(const void* data, std::size_t size) {
        const unsigned char* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) {
            hash ^= bytes[i];
            hash *= 0x100000001b3ull;
        }
    }
    void addBits(std::uint32_t bits) { addBytes(&bits, sizeof bits); }
    void addFloat(float value) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        addBits(bits);
    }
    void addInt(int value) { addBits(static_cast<std::uint32_t>(value)); }
    void addBool(bool value) {
        const unsigned char byte = value ? 1 : 0;
        addBytes(&byte, 1);
    }
    void addText(const std::string& text) {
        addInt(static_cast<int>(text.size()));
        addBytes(text.data(), text.size());
    }
    void addVector(const Vec2& v) {
        addFloat(v.X());
        addFloat(v.Y());
    }
    void addVector(const Vec3& v) {
        addFloat(v.X());
        addFloat(v.Y());
        addFloat(v.Z());
    }
    void addMatrix(const Mat3& m) {
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                addFloat(m(r, c));
            }
        }
    }
    void addTransform(const Transform& t) {
        addMatrix(t.GetMatrix());
        addVector(t.GetTranslate());
        addVector(t.GetScale());
        addBool(t.IsIdentity());
        addBool(t.IsRSMatrix());
        addBool(t.IsUniformScale());
    }
    void addColor(const Wm4::ColorRGBA& c) {
        addFloat(c.R());
        addFloat(c.G());
        addFloat(c.B());
        addFloat(c.A());
    }

    std::uint64_t value() const { return hash; }

private:
    std::uint64_t hash = 0xcbf29ce484222325ull;
};

// The digest as the literal to paste into the test.
std::string Hex(std::uint64_t value) {
    std::ostringstream out;
    out << "0x" << std::hex << std::setw(16) << std::setfill('0') << value << "ull";
    return out.str();
}

// ---------------------------------------------------------------------------------------------
// The view

constexpr int csWidth = 320;
constexpr int csHeight = 240;
// A field of view whose tangent is nothing round, and near and far planes close enough that a
// drag along the line of sight reaches the far one.
constexpr float csFieldOfView = 53.0f;
constexpr float csNear = 0.75f;
constexpr float csFar = 40.0f;
// The orthographic view box, 4:3 like the view: 21.9 pixels to the unit.
constexpr float csBoxHalfWidth = 7.3f;
constexpr float csBoxHalfHeight = 5.475f;
// The application's pick tolerance, in pixels.
constexpr float csTolerance = 10.0f;
// A gizmo's default size on screen, in pixels.
constexpr float csGizmoPixels = 60.0f;

// Puts the eye at eye looking at target, with +Y up (or -Z up when looking almost straight up
// or down), and the perspective or orthographic frustum of the pinned views.
void SetView(mxCamera& camera, bool perspective, const Vec3& eye, const Vec3& target) {
    const Vec3 sight = target - eye;
    const Vec3 up = std::fabs(sight.Y()) > 0.9f * sight.Length() ? Vec3(0.0f, 0.0f, -1.0f)
                                                                 : Vec3(0.0f, 1.0f, 0.0f);
    EXPECT_TRUE(camera.lookAt(eye, target, up));
    camera.setPerspective(perspective);
    if (perspective) {
        EXPECT_TRUE(camera.setFrustum(csFieldOfView,
                                      static_cast<float>(csWidth) / static_cast<float>(csHeight),
                                      csNear, csFar));
    } else {
        EXPECT_TRUE(camera.setFrustum(-csBoxHalfWidth, csBoxHalfWidth, -csBoxHalfHeight,
                                      csBoxHalfHeight, csNear, csFar));
    }
}

// The window pixel over a world point of the pinned view.
WindowPixel WindowPixelOver(const mxCamera& camera, const Vec3& world) {
    return WindowPixelAt(PixelOf(camera, world, csWidth, csHeight), csHeight);
}

// The pixel, from the lower left, of a point given in a gizmo's own frame.
Vec2 PixelOfGizmoPoint(const mxCamera& camera, const mxGizmoNode& gizmo, const Vec3& local) {
    return PixelOf(camera, gizmo.getWorldTransform().ApplyForward(local, true), csWidth, csHeight);
}

WindowPixel Clamped(const WindowPixel& pixel) {
    return WindowPixel{std::clamp(pixel.x, 1, csWidth - 2), std::clamp(pixel.y, 1, csHeight - 2)};
}

// The depth of a point along the camera's view direction.
float DepthOf(const mxCamera& camera, const Vec3& point) {
    return (point - camera.getLocation()).Dot(camera.getDVector());
}

// ---------------------------------------------------------------------------------------------
// The scene

// An engine over the pinned view with reference objects, gizmos and an mxGizmoController with
// a recording listener. Below the scene hang:
// - grand: turned about a slanted axis, scaled (1.5, 0.75, 1.25) and moved;
// - general, below grand: turned and moved, so that its world matrix is a general one (a
//   rotation times a non-uniform scale times a rotation), and so is everything's below it;
// - holder: turned and scaled uniformly by 1.6, to hang a gizmo whose local transformation
//   differs from its world one.
struct PinScene {
    mxEngine engine;
    mxPointer<mxCamera> camera;
    mxPointer<mxNode> grand;
    mxPointer<mxNode> general;
    mxPointer<mxNode> holder;
    // Counted references to everything added, so that nothing depends on the scene alone.
    std::vector<mxPointer<mxSpatial>> kept;
    // The objects fed after every frame, in order.
    std::vector<mxSpatial*> watched;
    std::vector<mxGizmoNode*> gizmos;
    mxGizmoController controller;
    RecordingListener listener;
    std::size_t eventsFed = 0;
    std::size_t endsFed = 0;
    std::size_t manipulatedFed = 0;

    PinScene(bool perspective, const Vec3& eye, const Vec3& target)
        : camera(new mxCamera(true)), grand(new mxNode), general(new mxNode), holder(new mxNode) {
        SetView(*camera, perspective, eye, target);
        engine.setViewportSize(csWidth, csHeight);
        engine.setCameraNode(new mxCameraNode(camera.get()));
        grand->editLocalTransform(true).SetRotate(Rotation(0.3f, -0.8f, 0.5f, 0.61f));
        grand->editLocalTransform(true).SetScale(Vec3(1.5f, 0.75f, 1.25f));
        grand->editLocalTransform(true).SetTranslate(Vec3(0.7f, -0.45f, 0.35f));
        general->editLocalTransform(true).SetRotate(Rotation(1.0f, 0.4f, -0.7f, 1.13f));
        general->editLocalTransform(true).SetTranslate(Vec3(-0.35f, 0.6f, -0.25f));
        holder->editLocalTransform(true).SetRotate(Rotation(-0.2f, 0.9f, 0.45f, 0.83f));
        holder->editLocalTransform(true).SetUniformScale(1.6f);
        holder->editLocalTransform(true).SetTranslate(Vec3(-0.55f, 0.3f, 0.15f));
        engine.getScene()->attachChild(grand.get());
        grand->attachChild(general.get());
        engine.getScene()->attachChild(holder.get());
        engine.getScene()->UpdateGS();
    }

    ~PinScene() { engine.detachController(&controller); }

    PinScene(const PinScene&) = delete;
    PinScene& operator=(const PinScene&) = delete;

    // The node an object hangs below: the scene for null.
    mxNode* parentOf(mxNode* parent) { return parent ? parent : engine.getScene(); }

    // Attaches object below parent (the scene for null) at the world position world, and
    // watches it.
    template <class T> T* place(T* object, const Vec3& world, mxNode* parent) {
        kept.push_back(object);
        mxNode* below = parentOf(parent);
        Transform inverse;
        below->getWorldTransform().Inverse(inverse);
        object->editLocalTransform(true).SetTranslate(inverse.ApplyForward(world, true));
        below->attachChild(object);
        engine.getScene()->UpdateGS();
        watched.push_back(object);
        return object;
    }

    // A mesh whose vertices all sit at its origin: its centre is its position.
    mxMesh* addPoint(const Vec3& world, mxNode* parent = nullptr) {
        return place(new mxMesh(3u, 1u), world, parent);
    }

    // A triangle 0.9 units across around its origin: its centre is its bound's.
    mxMesh* addSolid(const Vec3& world, mxNode* parent = nullptr) {
        mxMesh* mesh = new mxMesh(3u, 1u);
        mesh->setVertexPosition(0, Vec3(0.45f, -0.1f, 0.2f));
        mesh->setVertexPosition(1, Vec3(-0.3f, 0.35f, -0.15f));
        mesh->setVertexPosition(2, Vec3(0.05f, -0.4f, 0.3f));
        mesh->setTriangle(0, 0, 1, 2);
        mesh->UpdateMS(true, false, 0);
        return place(mesh, world, parent);
    }

    // A node with a mesh of its own a little beside it; both are watched.
    mxNode* addNodeWithChild(const Vec3& world, mxNode* parent = nullptr) {
        mxNode* node = place(new mxNode, world, parent);
        mxMesh* child = new mxMesh(3u, 1u);
        kept.push_back(child);
        child->editLocalTransform(true).SetTranslate(Vec3(0.4f, -0.25f, 0.3f));
        child->editLocalTransform(true).SetRotate(Rotation(0.0f, 0.0f, 1.0f, 0.4f));
        node->attachChild(child);
        engine.getScene()->UpdateGS();
        watched.push_back(child);
        return node;
    }

    // A shown gizmo in mode around references, below parent (the scene for null).
    mxGizmoNode* addGizmo(mxGizmoNode::GizmoMode mode, const std::vector<mxSpatial*>& references,
                          mxNode* parent = nullptr) {
        mxGizmoNode* gizmo = new mxGizmoNode;
        kept.push_back(gizmo);
        parentOf(parent)->attachChild(gizmo);
        gizmo->setMode(mode);
        gizmo->setReferenceObjects(references);
        gizmo->setCullingMode(mx::test::csShown);
        gizmos.push_back(gizmo);
        return gizmo;
    }

    // Attaches the controller with the listener and runs the first frame.
    void start(Digest& digest) {
        engine.attachController(&controller);
        controller.install3DManipulatorMotionListener(&listener);
        frame(digest);
    }

    // One frame, then everything it can have changed into the digest.
    void frame(Digest& digest) {
        engine.updateFrame();
        feed(digest);
    }

    int indexOf(const mxGizmoNode* gizmo) const {
        const auto found = std::find(gizmos.begin(), gizmos.end(), gizmo);
        return found == gizmos.end() ? -1 : static_cast<int>(found - gizmos.begin());
    }

    void feed(Digest& digest) {
        for (const mxSpatial* object : watched) {
            digest.addTransform(object->getLocalTransform());
            digest.addTransform(object->getWorldTransform());
            digest.addVector(object->getWorldBound().getCenter());
            digest.addFloat(object->getWorldBound().getRadius());
        }
        for (const mxGizmoNode* gizmo : gizmos) {
            FeedGizmo(digest, *gizmo);
            digest.addInt(controller.getPickedAxeIndex(gizmo));
            digest.addVector(controller.getPickedWorldAxe(gizmo));
        }
        digest.addTransform(controller.getCustomTransformation());
        digest.addTransform(controller.getCurrentTransformation());
        // What the listener heard since the last frame; the gizmos by their index, in order.
        digest.addInt(static_cast<int>(listener.events.size()));
        for (; eventsFed < listener.events.size(); ++eventsFed) {
            digest.addText(listener.events[eventsFed]);
        }
        std::vector<int> touched;
        for (; manipulatedFed < listener.manipulated.size(); ++manipulatedFed) {
            touched.push_back(indexOf(listener.manipulated[manipulatedFed]));
        }
        std::sort(touched.begin(), touched.end());
        for (int index : touched) {
            digest.addInt(index);
        }
        for (; endsFed < listener.ends.size(); ++endsFed) {
            digest.addTransform(listener.ends[endsFed]);
        }
    }

    // A gizmo's own observables: its transformations, its arrowheads' turns, every line's
    // colour, visibility and draw method, and its scale reference.
    static void FeedGizmo(Digest& digest, const mxGizmoNode& gizmo) {
        digest.addInt(gizmo.getMode());
        digest.addTransform(gizmo.getLocalTransform());
        digest.addTransform(gizmo.getWorldTransform());
        for (unsigned int axis = 0; axis < 3; ++axis) {
            digest.addTransform(gizmo.getTranslateGizmo().getArrowHead(axis)->getLocalTransform());
        }
        for (int slot = 0; slot < gizmo.getChildCount(); ++slot) {
            const mxLine* line = static_cast<const mxLine*>(gizmo.getChild(slot));
            digest.addColor(line->getColor());
            digest.addInt(line->getCullingMode());
            digest.addInt(line->getDrawMethod());
        }
        digest.addVector(gizmo.getScaleReference());
    }

    const mxCamera* viewCamera() const { return engine.getCameraNode()->getCamera(); }

    // The mouse calls, with their answers fed and a frame after each.
    void hover(Digest& digest, const WindowPixel& pixel) {
        digest.addBool(controller.setMousePos(pixel.x, pixel.y));
        frame(digest);
    }
    void press(Digest& digest, const WindowPixel& pixel) {
        digest.addBool(
            controller.setMousePressed(viewCamera(), pixel.x, pixel.y, csWidth, csHeight));
        frame(digest);
    }
    void release(Digest& digest, const WindowPixel& pixel) {
        digest.addBool(controller.setMouseReleased(pixel.x, pixel.y));
        frame(digest);
    }

    // A whole gesture: a hover on the handle, the press there, the moves and the release,
    // each in a frame of its own.
    void gesture(Digest& digest, const WindowPixel& at, const std::vector<WindowPixel>& moves,
                 const WindowPixel& end) {
        hover(digest, at);
        press(digest, at);
        for (const WindowPixel& move : moves) {
            hover(digest, move);
        }
        release(digest, end);
    }
};

// The window pixel over the point along lengths of a gizmo's axis from its centre.
WindowPixel OnAxis(const mxCamera& camera, const mxGizmoNode& gizmo, int axis, float along) {
    const Vec3 local = UnitAxis(static_cast<unsigned int>(axis)) * along;
    return WindowPixelAt(PixelOfGizmoPoint(camera, gizmo, local), csHeight);
}

// A press 0.7 along the axis, a pixel off it, then seven moves along the axis on screen with a
// pixel or two of wobble across it, and the release a little beyond the last. The moves are 11
// pixels apart, or a fifth of the axis's length on screen when that is shorter, so that an
// axis seen nearly end-on is not dragged past its vanishing point.
struct AxisGesture {
    WindowPixel at;
    std::vector<WindowPixel> moves;
    WindowPixel end;
};

AxisGesture AlongAxis(const mxCamera& camera, const mxGizmoNode& gizmo, int axis) {
    const Vec2 centre = PixelOfGizmoPoint(camera, gizmo, Vec3::ZERO);
    const Vec2 tip = PixelOfGizmoPoint(camera, gizmo, UnitAxis(static_cast<unsigned int>(axis)));
    Vec2 along = tip - centre;
    const float step = std::clamp(0.2f * along.Length(), 1.0f, 11.0f);
    along.Normalize();
    const Vec2 across(-along.Y(), along.X());
    AxisGesture gesture;
    const Vec2 start = centre + (tip - centre) * 0.7f + across;
    gesture.at = WindowPixelAt(start, csHeight);
    for (int k = 1; k <= 7; ++k) {
        const float wobble = static_cast<float>(k % 3 - 1) * 2.0f;
        gesture.moves.push_back(Clamped(WindowPixelAt(
            start + along * (step * static_cast<float>(k)) + across * wobble, csHeight)));
    }
    gesture.end = Clamped(WindowPixel{gesture.moves.back().x + 3, gesture.moves.back().y - 2});
    return gesture;
}

// The window pixels over the points c + s (tip - c) of a gizmo's axis, for each s.
std::vector<WindowPixel> AlongAxisAt(const mxCamera& camera, const mxGizmoNode& gizmo, int axis,
                                     const std::vector<float>& lengths) {
    std::vector<WindowPixel> pixels;
    for (float s : lengths) {
        pixels.push_back(OnAxis(camera, gizmo, axis, s));
    }
    return pixels;
}

// ---------------------------------------------------------------------------------------------
// Idle placement

// Three gizmos, one per mode: the translate gizmo around one object below the general parent
// (Local turns it by that parent's orthonormalised frame), the rotate gizmo below the turned
// holder around one object below grand (a rotation with non-uniform scale), the scale gizmo
// around two objects (Local leaves it unturned). Every orientation reference, with and without
// the custom translation, while the eye moves, in perspective and then orthographic.
TEST(mxPinnedResultsTest, IdlePlacementAcrossOrientationReferencesAndMovingCameras) {
    const Vec3 target(0.15f, -0.2f, -0.35f);
    PinScene scene(true, Vec3(2.3f, 4.1f, 11.7f), target);
    mxMesh* belowGeneral = scene.addPoint(Vec3(1.3f, -0.4f, 0.9f), scene.general.get());
    mxMesh* belowGrand = scene.addSolid(Vec3(-1.6f, 0.7f, 0.2f), scene.grand.get());
    mxMesh* atRoot = scene.addPoint(Vec3(0.4f, 1.9f, -1.1f));
    mxGizmoNode* translate = scene.addGizmo(mxGizmoNode::GIZMO_TRANSLATE, {belowGeneral});
    mxGizmoNode* rotate =
        scene.addGizmo(mxGizmoNode::GIZMO_ROTATE, {belowGrand}, scene.holder.get());
    mxGizmoNode* scale = scene.addGizmo(mxGizmoNode::GIZMO_SCALE, {atRoot, belowGeneral});
    Transform custom;
    custom.SetRotate(Rotation(0.7f, -0.3f, 0.5f, 1.9f));
    custom.SetUniformScale(2.5f);
    custom.SetTranslate(Vec3(-0.8f, 1.1f, 0.35f));
    scene.controller.setCustomTransformation(custom);

    Digest digest;
    scene.start(digest);
    const Vec3 eyes[3] = {Vec3(2.3f, 4.1f, 11.7f), Vec3(-5.9f, 2.7f, 9.3f),
                          Vec3(7.1f, -3.3f, 6.2f)};
    const Reference references[6] = {mxGizmoController::World,     mxGizmoController::Local,
                                     mxGizmoController::View,      mxGizmoController::Custom,
                                     mxGizmoController::CustomAlt, static_cast<Reference>(7)};
    for (bool perspective : {true, false}) {
        for (Reference reference : references) {
            scene.controller.setOrientationReference(reference);
            for (bool customTranslate : {false, true}) {
                scene.controller.useCustomTranslate(customTranslate);
                for (const Vec3& eye : eyes) {
                    SetView(*scene.camera, perspective, eye, target);
                    scene.frame(digest);
                }
                // Readable checks on the last frame of each setting.
                if (reference == mxGizmoController::World && !customTranslate) {
                    // Unturned at the object, sized for the eye.
                    const Transform& world = translate->getWorldTransform();
                    EXPECT_TRUE(world.GetRotate() == Mat3::IDENTITY);
                    EXPECT_TRUE(VectorNear(world.GetTranslate(),
                                           belowGeneral->getWorldTransform().GetTranslate(), 0.0));
                    EXPECT_EQ(world.GetUniformScale(), mxGizmoNode::ComputeGizmoScale(
                                                           scene.camera.get(), world.GetTranslate(),
                                                           csGizmoPixels, csHeight));
                }
                if (reference == mxGizmoController::View) {
                    // Right, into the view, up.
                    const Mat3& rotation = scale->getWorldTransform().GetRotate();
                    EXPECT_TRUE(VectorNear(ColumnOf(rotation, 0), scene.camera->getRVector(), 0.0));
                    EXPECT_TRUE(VectorNear(ColumnOf(rotation, 1), scene.camera->getDVector(), 0.0));
                    EXPECT_TRUE(VectorNear(ColumnOf(rotation, 2), scene.camera->getUVector(), 0.0));
                }
                if (reference == mxGizmoController::Custom) {
                    // The custom frame, position included, below the turned holder too.
                    EXPECT_TRUE(VectorNear(rotate->getWorldTransform().GetTranslate(),
                                           custom.GetTranslate(), 1e-5));
                }
            }
        }
    }
    EXPECT_EQ(scene.listener.events.size(), 0u);
    EXPECT_EQ(digest.value(), 0x20909af4d2fd65baull) << Hex(digest.value());
}

// ---------------------------------------------------------------------------------------------
// Hover sweeps

// Three gizmos of one mode: the first around two objects, the second around one object below
// the general parent (Local turns it), the third around one object 0.9 units from the first
// one's centre, so that their pictures overlap and the order of the gizmos decides. A recorded
// move over every seventh pixel of the view, one frame each, in perspective and then
// orthographic; then one move onto an axis of the isolated gizmo.
Digest HoverSweep(mxGizmoNode::GizmoMode mode, int& pickedOnSecond, bool& showsOnSecond) {
    PinScene scene(true, Vec3(2.3f, 4.1f, 11.7f), Vec3(0.2f, -0.3f, -0.5f));
    std::vector<mxSpatial*> first = {scene.addPoint(Vec3(-2.6f, 1.2f, 0.3f)),
                                     scene.addSolid(Vec3(-1.9f, 0.4f, -0.5f))};
    mxMesh* turned = scene.addPoint(Vec3(2.9f, -1.4f, -1.2f), scene.general.get());
    mxMesh* overlapping = scene.addPoint(Vec3(-1.7f, 0.2f, 0.9f));
    scene.addGizmo(mode, first);
    mxGizmoNode* second = scene.addGizmo(mode, {turned});
    scene.addGizmo(mode, {overlapping});

    Digest digest;
    scene.start(digest);
    for (bool perspective : {true, false}) {
        SetView(*scene.camera, perspective, Vec3(2.3f, 4.1f, 11.7f), Vec3(0.2f, -0.3f, -0.5f));
        for (int y = 2; y < csHeight; y += 7) {
            for (int x = 3; x < csWidth; x += 7) {
                scene.hover(digest, WindowPixel{x, y});
            }
        }
    }
    // On the first axis of the second gizmo: its shaft, or for rotate the circle about it on
    // the side facing the eye.
    Vec3 onHandle = UnitAxis(0) * 0.6f;
    if (mode == mxGizmoNode::GIZMO_ROTATE) {
        const Transform& world = second->getWorldTransform();
        const Circle circle = CircleAbout(ToDouble(world.GetTranslate()),
                                          ToDouble(world.GetRotate()), 0, world.GetUniformScale());
        const double front = mx::test::Radians(circle.frontDegrees(*scene.camera) + 20.0);
        onHandle =
            Vec3(0.0f, static_cast<float>(std::cos(front)), static_cast<float>(std::sin(front)));
    }
    scene.hover(digest,
                WindowPixelAt(PixelOfGizmoPoint(*scene.camera, *second, onHandle), csHeight));
    pickedOnSecond = scene.controller.getPickedAxeIndex(second);
    showsOnSecond = ShowsHover(*second, 0);
    return digest;
}

TEST(mxPinnedResultsTest, HoverSweepOverThreeTranslateGizmos) {
    int picked = -1;
    bool shows = false;
    const Digest digest = HoverSweep(mxGizmoNode::GIZMO_TRANSLATE, picked, shows);
    EXPECT_EQ(picked, 0);
    EXPECT_TRUE(shows);
    EXPECT_EQ(digest.value(), 0x83bbf142dc8131a1ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, HoverSweepOverThreeRotateGizmos) {
    int picked = -1;
    bool shows = false;
    const Digest digest = HoverSweep(mxGizmoNode::GIZMO_ROTATE, picked, shows);
    EXPECT_EQ(picked, 0);
    EXPECT_TRUE(shows);
    EXPECT_EQ(digest.value(), 0xfb6fb602685edca1ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, HoverSweepOverThreeScaleGizmos) {
    int picked = -1;
    bool shows = false;
    const Digest digest = HoverSweep(mxGizmoNode::GIZMO_SCALE, picked, shows);
    EXPECT_EQ(picked, 0);
    EXPECT_TRUE(shows);
    EXPECT_EQ(digest.value(), 0x9c47eb735e1b5b4dull) << Hex(digest.value());
}

// ---------------------------------------------------------------------------------------------
// Exact distances

// The bits of the smallest non-negative float tolerance that isOver accepts: the exact float
// distance of the nearest enabled axis, since an axis counts when tolerance >= distance and
// the float bit patterns of non-negative numbers are ordered like the numbers. 0xffffffff when
// not even infinity is accepted (a NaN distance).
template <class Controller>
std::uint32_t ExactDistanceBits(const Controller& controller, const mxGizmoNode& node,
                                const mxCamera& camera, const Vec2& mouse) {
    auto accepts = [&](std::uint32_t bits) {
        float tolerance = 0.0f;
        std::memcpy(&tolerance, &bits, sizeof tolerance);
        return controller.isOver(&node, &camera, mouse, tolerance, csWidth, csHeight);
    };
    std::uint32_t low = 0;
    std::uint32_t high = 0x7f800000u;
    if (!accepts(high)) {
        return 0xffffffffu;
    }
    while (low < high) {
        const std::uint32_t middle = low + (high - low) / 2;
        if (accepts(middle)) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return high;
}

float FloatOfBits(std::uint32_t bits) {
    float value = 0.0f;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// A gizmo framed by rotation at position for camera, below root or below a turned node, as
// the per-frame placement leaves it.
struct FramedGizmo {
    mxPointer<mxNode> root;
    mxPointer<mxNode> holder;
    mxPointer<mxGizmoNode> node;

    FramedGizmo(mxGizmoNode::GizmoMode mode, bool belowTurnedNode)
        : root(new mxNode), holder(new mxNode), node(new mxGizmoNode) {
        root->attachChild(holder.get());
        if (belowTurnedNode) {
            holder->editLocalTransform(true).SetRotate(Rotation(1.0f, 2.0f, 2.0f, 0.7f));
            holder->editLocalTransform(true).SetUniformScale(1.3f);
            holder->editLocalTransform(true).SetTranslate(Vec3(0.4f, 0.1f, -0.3f));
        }
        holder->attachChild(node.get());
        node->setMode(mode);
        node->setCullingMode(mx::test::csShown);
        root->UpdateGS();
    }

    void place(const mxCamera& camera, const Mat3& rotation, const Vec3& position) {
        Transform frame;
        frame.SetRotate(rotation);
        frame.SetTranslate(position);
        node->calculateFrameFromObjectWorldTranform(frame, &camera, csGizmoPixels, csHeight);
        root->UpdateGS();
        node->updateCameraFacing(&camera);
        root->UpdateGS();
    }
};

struct DistanceChecks {
    // The distance of each axis from the gizmo's centre, with the oblique perspective camera
    // and the unturned frame.
    float atCentre[3] = {-1.0f, -1.0f, -1.0f};
    // The distance from the centre to the circle about the frame's Y axis seen face-on in the
    // orthographic view, for both frames.
    float faceOnCircle[2] = {-1.0f, -1.0f};
};

// Per frame (unturned, and turned below a turned node), per camera (from above, edge-on along
// the frame's X axis, oblique, and orthographic along the frame's Y axis), per axis alone: the
// exact distance at 9 x 9 positions 19 pixels apart around the gizmo's centre and at four far
// ones.
template <class Controller>
Digest ExactDistances(mxGizmoNode::GizmoMode mode, const Controller& controller,
                      DistanceChecks& checks) {
    Digest digest;
    const Vec3 position(0.6f, -0.35f, 0.2f);
    const Vec2 far[4] = {Vec2(0.0f, 0.0f), Vec2(1.0f, 1.0f), Vec2(0.97f, 0.02f), Vec2(-0.3f, 1.7f)};
    for (int turned = 0; turned < 2; ++turned) {
        FramedGizmo gizmo(mode, turned == 1);
        const Mat3 rotation = turned == 1 ? Rotation(-0.5f, 1.0f, 0.3f, 1.15f) : Mat3::IDENTITY;
        mxPointer<mxCamera> camera = new mxCamera(true);
        // The frame's axes in the world, for the cameras along them.
        gizmo.place(*camera, rotation, position);
        const Mat3 axes = gizmo.node->getWorldTransform().GetRotate();
        const Vec3 centre = gizmo.node->getWorldTransform().GetTranslate();
        struct View {
            bool perspective;
            Vec3 eye;
        };
        const View views[4] = {{true, centre + Vec3(0.03f, 11.3f, 0.05f)},
                               {true, centre + Vec3(axes(0, 0), axes(1, 0), axes(2, 0)) * 11.3f},
                               {true, centre + Vec3(6.1f, 4.7f, 8.9f)},
                               {false, centre + Vec3(axes(0, 1), axes(1, 1), axes(2, 1)) * 11.3f}};
        for (int v = 0; v < 4; ++v) {
            SetView(*camera, views[v].perspective, views[v].eye, centre);
            gizmo.place(*camera, rotation, position);
            SCOPED_TRACE(::testing::Message() << "turned " << turned << ", view " << v);
            digest.addTransform(gizmo.node->getWorldTransform());
            const Vec2 middle = PixelOfGizmoPoint(*camera, *gizmo.node, Vec3::ZERO);
            std::vector<Vec2> mice;
            for (int j = -4; j <= 4; ++j) {
                for (int i = -4; i <= 4; ++i) {
                    const Vec2 pixel =
                        middle + Vec2(19.0f * static_cast<float>(i), 19.0f * static_cast<float>(j));
                    mice.push_back(Vec2(pixel.X() / static_cast<float>(csWidth),
                                        pixel.Y() / static_cast<float>(csHeight)));
                }
            }
            mice.insert(mice.end(), std::begin(far), std::end(far));
            for (unsigned int axis = 0; axis < 3; ++axis) {
                gizmo.node->setEnabledAxis(mode, static_cast<unsigned char>(1u << axis));
                for (std::size_t m = 0; m < mice.size(); ++m) {
                    const std::uint32_t bits =
                        ExactDistanceBits(controller, *gizmo.node, *camera, mice[m]);
                    digest.addBits(bits);
                    // The middle of the grid is the gizmo's centre.
                    if (m == 40 && v == 2 && turned == 0) {
                        checks.atCentre[axis] = FloatOfBits(bits);
                    }
                    if (m == 40 && v == 3 && axis == 1) {
                        checks.faceOnCircle[turned] = FloatOfBits(bits);
                    }
                }
            }
            gizmo.node->setEnabledAxis(mode, 0x7);
        }
    }
    return digest;
}

TEST(mxPinnedResultsTest, ExactTranslateAxisDistancesAcrossFramesAndCameras) {
    std::vector<mx3DManipulatorMotionListener*> listeners;
    const mxGizmoControllerTranslate translate(listeners);
    DistanceChecks checks;
    const Digest digest = ExactDistances(mxGizmoNode::GIZMO_TRANSLATE, translate, checks);
    // Every shaft starts at the centre.
    for (float distance : checks.atCentre) {
        EXPECT_GE(distance, 0.0f);
        EXPECT_LT(distance, 0.01f);
    }
    EXPECT_EQ(digest.value(), 0x87ad3d1e280a6bb3ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, ExactRotateCircleDistancesAcrossFramesAndCameras) {
    std::vector<mx3DManipulatorMotionListener*> listeners;
    const mxGizmoControllerRotate rotate(listeners);
    DistanceChecks checks;
    const Digest digest = ExactDistances(mxGizmoNode::GIZMO_ROTATE, rotate, checks);
    // A circle seen face-on is 60 pixels from its centre, and nearest to it in the middle of
    // its closing step, which skips a sample and so spans 18 degrees: 60 cos 9 degrees.
    for (float distance : checks.faceOnCircle) {
        EXPECT_NEAR(distance, 60.0 * std::cos(mx::test::Radians(9.0)), 0.01);
    }
    EXPECT_EQ(digest.value(), 0x2db18449332a67b1ull) << Hex(digest.value());
}

// The scale handles are picked exactly as the translate ones: the same distances, the same
// digest, pinned on their own in case the two ever diverge.
TEST(mxPinnedResultsTest, ExactScaleAxisDistancesAcrossFramesAndCameras) {
    std::vector<mx3DManipulatorMotionListener*> listeners;
    const mxGizmoControllerScale scale(listeners);
    DistanceChecks checks;
    const Digest digest = ExactDistances(mxGizmoNode::GIZMO_SCALE, scale, checks);
    for (float distance : checks.atCentre) {
        EXPECT_GE(distance, 0.0f);
        EXPECT_LT(distance, 0.01f);
    }
    EXPECT_EQ(digest.value(), 0x87ad3d1e280a6bb3ull) << Hex(digest.value());
}

// ---------------------------------------------------------------------------------------------
// Press hit tests

// A translate gizmo, a rotate gizmo overlapping it, and a scale gizmo around one object below
// the general parent; a press on every fifth pixel of the view, answered at once and then
// forgotten, in perspective and then orthographic. Every seventh press is followed by a move
// and a release before it is forgotten.
TEST(mxPinnedResultsTest, PressHitTestsOverThreeGizmosOfDifferentModes) {
    const Vec3 eye(-3.1f, 3.7f, 10.9f);
    const Vec3 target(0.3f, -0.1f, -0.4f);
    PinScene scene(true, eye, target);
    mxGizmoNode* translate =
        scene.addGizmo(mxGizmoNode::GIZMO_TRANSLATE, {scene.addPoint(Vec3(-2.4f, 0.9f, 0.0f))});
    scene.addGizmo(mxGizmoNode::GIZMO_ROTATE, {scene.addPoint(Vec3(-1.5f, 0.3f, 0.8f))});
    scene.addGizmo(mxGizmoNode::GIZMO_SCALE,
                   {scene.addSolid(Vec3(2.6f, -1.2f, -0.9f), scene.general.get())});

    Digest digest;
    scene.start(digest);
    int accepted = 0;
    int presses = 0;
    bool onShaft = false;
    bool inCorner = true;
    for (bool perspective : {true, false}) {
        SetView(*scene.camera, perspective, eye, target);
        scene.frame(digest);
        for (int y = 2; y < csHeight; y += 5) {
            for (int x = 2; x < csWidth; x += 5) {
                const bool answer =
                    scene.controller.setMousePressed(scene.viewCamera(), x, y, csWidth, csHeight);
                digest.addBool(answer);
                accepted += answer ? 1 : 0;
                if (++presses % 7 == 0) {
                    digest.addBool(scene.controller.setMousePos(x + 1, y - 1));
                    digest.addBool(scene.controller.setMouseReleased(x + 1, y - 1));
                }
                scene.controller.clearControllerEvents();
            }
        }
        // The middle of the translate gizmo's X shaft, and the top left corner.
        const WindowPixel shaft = OnAxis(*scene.camera, *translate, 0, 0.5f);
        onShaft = scene.controller.setMousePressed(scene.viewCamera(), shaft.x, shaft.y, csWidth,
                                                   csHeight);
        scene.controller.clearControllerEvents();
        inCorner = scene.controller.setMousePressed(scene.viewCamera(), 0, 0, csWidth, csHeight);
        scene.controller.clearControllerEvents();
        digest.addBool(onShaft);
        digest.addBool(inCorner);
        EXPECT_TRUE(onShaft);
        EXPECT_FALSE(inCorner);
    }
    // Nothing was replayed: the presses were forgotten before any frame.
    scene.frame(digest);
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_GT(accepted, 0);
    EXPECT_LT(accepted, presses);
    EXPECT_EQ(digest.value(), 0x3db94d87f40c626aull) << Hex(digest.value());
}

// ---------------------------------------------------------------------------------------------
// Translate drags

// The objects of the drags: one below the general parent, one below the scene, a node with a
// child of its own, a null entry, one excluded from drags, and a solid one whose centre is its
// bound's.
struct DragObjects {
    mxMesh* belowGeneral = nullptr;
    mxMesh* atRoot = nullptr;
    mxNode* withChild = nullptr;
    mxMesh* excluded = nullptr;
    mxMesh* solid = nullptr;

    explicit DragObjects(PinScene& scene) {
        belowGeneral = scene.addPoint(Vec3(1.2f, 0.5f, 0.45f), scene.general.get());
        atRoot = scene.addPoint(Vec3(-1.05f, 0.85f, -0.55f));
        withChild = scene.addNodeWithChild(Vec3(-0.35f, -1.3f, 0.2f));
        excluded = scene.addPoint(Vec3(0.6f, -0.4f, 1.1f));
        excluded->setStateFlags(excluded->getStateFlags() | mxSpatial::STATE_EXCLUDED);
        solid = scene.addSolid(Vec3(0.25f, 0.9f, -0.95f));
    }

    std::vector<mxSpatial*> references() const {
        return {belowGeneral, atRoot, withChild, nullptr, excluded, solid};
    }
};

const Vec3 csDragEye(4.7f, 3.9f, 12.3f);
const Vec3 csDragTarget(0.4f, -0.2f, -0.6f);

// Drags of the X, Y and Z axes in turn, one gesture each.
Digest TranslateDrags(Reference reference, Transform& lastEnd, Vec3& lastPickedAxis,
                      Mat3& frameAtEnd, bool& excludedStayed) {
    PinScene scene(true, csDragEye, csDragTarget);
    DragObjects objects(scene);
    // Local turns only a gizmo of one object: the node below the general parent, with a
    // child of its own.
    mxNode* single = scene.addNodeWithChild(Vec3(0.15f, 0.35f, -0.2f), scene.general.get());
    mxGizmoNode* gizmo =
        scene.addGizmo(mxGizmoNode::GIZMO_TRANSLATE, reference == mxGizmoController::Local
                                                         ? std::vector<mxSpatial*>{single}
                                                         : objects.references());
    scene.controller.setOrientationReference(reference);
    const Transform excludedAtStart = objects.excluded->getWorldTransform();

    Digest digest;
    scene.start(digest);
    for (int axis = 0; axis < 3; ++axis) {
        const AxisGesture gesture = AlongAxis(*scene.camera, *gizmo, axis);
        scene.hover(digest, gesture.at);
        scene.press(digest, gesture.at);
        for (const WindowPixel& move : gesture.moves) {
            scene.hover(digest, move);
        }
        lastPickedAxis = scene.controller.getPickedWorldAxe(gizmo);
        frameAtEnd = gizmo->getWorldTransform().GetRotate();
        scene.release(digest, gesture.end);
    }
    lastEnd = scene.listener.ends.back();
    excludedStayed = objects.excluded->getWorldTransform() == excludedAtStart;
    digest.addInt(static_cast<int>(scene.listener.ends.size()));
    return digest;
}

TEST(mxPinnedResultsTest, TranslateDragsOfEachAxisInTheWorldFrame) {
    Transform end;
    Vec3 picked;
    Mat3 frame;
    bool excludedStayed = false;
    const Digest digest =
        TranslateDrags(mxGizmoController::World, end, picked, frame, excludedStayed);
    // The Z drag moves along Z only, exactly.
    EXPECT_EQ(end.GetTranslate().X(), 0.0f);
    EXPECT_EQ(end.GetTranslate().Y(), 0.0f);
    EXPECT_NE(end.GetTranslate().Z(), 0.0f);
    EXPECT_TRUE(VectorNear(picked, Vec3::UNIT_Z, 0.0));
    EXPECT_TRUE(excludedStayed);
    EXPECT_EQ(digest.value(), 0x555e1e1f8e34a966ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, TranslateDragsOfEachAxisInTheGeneralParentsLocalFrame) {
    Transform end;
    Vec3 picked;
    Mat3 frame;
    bool excludedStayed = false;
    const Digest digest =
        TranslateDrags(mxGizmoController::Local, end, picked, frame, excludedStayed);
    // Along the third axis of the frame taken from the general parent.
    EXPECT_FALSE(frame == Mat3::IDENTITY);
    EXPECT_TRUE(VectorNear(picked, ColumnOf(frame, 2), 1e-6));
    Vec3 moved = end.GetTranslate();
    moved.Normalize();
    EXPECT_NEAR(std::fabs(moved.Dot(ColumnOf(frame, 2))), 1.0f, 1e-5f);
    EXPECT_TRUE(excludedStayed);
    EXPECT_EQ(digest.value(), 0xc2b15acd16859c03ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, TranslateDragsOfEachAxisInTheViewFrame) {
    Transform end;
    Vec3 picked;
    Mat3 frame;
    bool excludedStayed = false;
    const Digest digest =
        TranslateDrags(mxGizmoController::View, end, picked, frame, excludedStayed);
    // The third axis of the view frame is the camera's up vector.
    mxCamera camera(true);
    SetView(camera, true, csDragEye, csDragTarget);
    EXPECT_TRUE(VectorNear(ColumnOf(frame, 2), camera.getUVector(), 0.0));
    EXPECT_TRUE(VectorNear(picked, camera.getUVector(), 1e-6));
    EXPECT_TRUE(excludedStayed);
    EXPECT_EQ(digest.value(), 0x9215b9cf627f788dull) << Hex(digest.value());
}

// A drag of the world Z axis, seen 22 degrees off the line of sight, towards its vanishing
// point and a little past it, with the position kept between the near and far planes.
TEST(mxPinnedResultsTest, TranslateDragTowardsTheVanishingPointStaysBetweenNearAndFar) {
    const Vec3 eye(5.6f, 0.9f, 12.3f);
    PinScene scene(true, eye, csDragTarget);
    DragObjects objects(scene);
    mxGizmoNode* gizmo = scene.addGizmo(mxGizmoNode::GIZMO_TRANSLATE, objects.references());
    gizmo->restrictPositionBetweenNearFar(true);
    scene.controller.setOrientationReference(mxGizmoController::World);

    Digest digest;
    scene.start(digest);
    const Vec2 press = PixelOfGizmoPoint(*scene.camera, *gizmo, Vec3(0.0f, 0.0f, 0.7f));
    const Vec2 vanishing =
        PixelOf(*scene.camera, eye + Vec3(0.0f, 0.0f, -1000.0f), csWidth, csHeight);
    auto towards = [&](float fraction) {
        return WindowPixelAt(press + (vanishing - press) * fraction, csHeight);
    };
    const float axisLength = gizmo->getWorldTransform().GetUniformScale();
    // The point pressed, 0.7 along the axis, and an object that follows the drag.
    const Vec3 pressed =
        gizmo->getWorldTransform().GetTranslate() + Vec3(0.0f, 0.0f, 0.7f * axisLength);
    const Vec3 objectAtPress = objects.atRoot->getWorldTransform().GetTranslate();
    scene.gesture(digest, towards(0.0f),
                  {towards(0.3f), towards(0.6f), towards(0.9f), towards(0.95f), towards(1.05f),
                   towards(0.98f)},
                  towards(0.98f));
    // The pressed point went as far as the far plane, and not beyond; to within the rounding of
    // the press to a whole pixel, a few hundredths of the axis.
    const Vec3 moved = objects.atRoot->getWorldTransform().GetTranslate() - objectAtPress;
    EXPECT_NEAR(DepthOf(*scene.camera, pressed + moved), csFar, 0.05f * axisLength);
    EXPECT_EQ(scene.listener.ends.size(), 1u);
    EXPECT_EQ(digest.value(), 0x79888ca174afe2a5ull) << Hex(digest.value());
}

// An orthographic view along (-3, -4, -4): the pick ray meets the two planes through the
// world X axis (normals Y and Z) exactly equally face-on, and the drag keeps the first, whose
// normal is Y. Off the axis by a pixel, the two planes would give different points.
TEST(mxPinnedResultsTest, TranslateDragWithBothPlanesEquallyFaceOnRunsInTheFirst) {
    PinScene scene(false, Vec3(0.0f, 0.0f, 10.0f), Vec3::ZERO);
    DragObjects objects(scene);
    mxGizmoNode* gizmo = scene.addGizmo(mxGizmoNode::GIZMO_TRANSLATE, objects.references());
    const Vec3 centre = gizmo->getCenterReferences();
    SetView(*scene.camera, false, centre + Vec3(3.0f, 4.0f, 4.0f) * 1.7f, centre);
    ASSERT_EQ(scene.camera->getDVector().Y(), scene.camera->getDVector().Z());
    scene.controller.setOrientationReference(mxGizmoController::World);

    Digest digest;
    scene.start(digest);
    const AxisGesture gesture = AlongAxis(*scene.camera, *gizmo, 0);
    // Both drags worked out again in double, from the centre and the frame at the press.
    const mx::test::AxisDrag first = mx::test::PressAxisDrag(
        *scene.camera, mx::test::MouseOfWindowPixel(gesture.at, csWidth, csHeight),
        ToDouble(gizmo->getCenterReferences()), Wm4::Matrix3<double>::IDENTITY, 0);
    mx::test::AxisDrag second = first;
    second.normal = Wm4::Vector3<double>(0.0, 0.0, 1.0);
    second.pressPoint = second.pointUnder(
        *scene.camera, mx::test::MouseOfWindowPixel(gesture.at, csWidth, csHeight));
    const Vec2 endMouse = mx::test::MouseOfWindowPixel(gesture.end, csWidth, csHeight);
    const Vec3 byFirst =
        mx::test::ToFloat(first.pointUnder(*scene.camera, endMouse) - first.pressPoint);
    const Vec3 bySecond =
        mx::test::ToFloat(second.pointUnder(*scene.camera, endMouse) - second.pressPoint);

    scene.gesture(digest, gesture.at, gesture.moves, gesture.end);
    ASSERT_EQ(scene.listener.ends.size(), 1u);
    EXPECT_TRUE(VectorNear(first.normal, Wm4::Vector3<double>(0.0, 1.0, 0.0), 0.0));
    EXPECT_GT((byFirst - bySecond).Length(), 1e-3f);
    EXPECT_TRUE(VectorNear(scene.listener.ends[0].GetTranslate(), byFirst, 1e-4));
    EXPECT_EQ(digest.value(), 0x84950000b1e1e2b5ull) << Hex(digest.value());
}

// A drag with the custom translation in use: the gizmo stands at the custom position, which
// follows the objects' centre.
TEST(mxPinnedResultsTest, TranslateDragCarriesTheCustomTranslation) {
    PinScene scene(true, csDragEye, csDragTarget);
    DragObjects objects(scene);
    mxGizmoNode* gizmo = scene.addGizmo(mxGizmoNode::GIZMO_TRANSLATE, objects.references());
    Transform custom;
    custom.SetRotate(Rotation(0.2f, 0.6f, -0.9f, 0.5f));
    custom.SetTranslate(Vec3(0.9f, -1.3f, 0.4f));
    scene.controller.setCustomTransformation(custom);
    scene.controller.useCustomTranslate(true);
    scene.controller.setOrientationReference(mxGizmoController::World);

    Digest digest;
    scene.start(digest);
    const Vec3 centreBefore = gizmo->getCenterReferences();
    // Released where the last move was, so that the release moves nothing more.
    const AxisGesture gesture = AlongAxis(*scene.camera, *gizmo, 0);
    scene.gesture(digest, gesture.at, gesture.moves, gesture.moves.back());
    const Vec3 followed =
        scene.controller.getCustomTransformation().GetTranslate() - custom.GetTranslate();
    // Four of the six entries move (not the null one nor the excluded one): the centre moves by
    // two thirds of the drag.
    ASSERT_EQ(scene.listener.ends.size(), 1u);
    EXPECT_TRUE(VectorNear(followed, gizmo->getCenterReferences() - centreBefore, 1e-5));
    EXPECT_TRUE(VectorNear(followed, scene.listener.ends[0].GetTranslate() * (4.0f / 6.0f), 1e-4));
    EXPECT_GT(followed.Length(), 0.5f);
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(),
                           scene.controller.getCustomTransformation().GetTranslate(), 0.0));
    EXPECT_EQ(digest.value(), 0xa7c0f0817f876e3dull) << Hex(digest.value());
}

// ---------------------------------------------------------------------------------------------
// Rotate drags

// The angle, in degrees, of a point 25 or 40 degrees from the front of a circle, the one
// farthest from the points the circle shares with the others (every 90 degrees); and which
// way round to move from there to stay on the front.
double PressAngle(double front, double& direction) {
    double best = front + 25.0;
    double distance = -1.0;
    for (double offset : {25.0, -25.0, 40.0, -40.0}) {
        const double angle = front + offset;
        const double fromShared = std::fabs(std::remainder(angle, 90.0));
        if (fromShared > distance) {
            distance = fromShared;
            best = angle;
            direction = offset > 0.0 ? 1.0 : -1.0;
        }
    }
    return best;
}

// The circle about axis of a gizmo as it stands.
Circle CircleOfGizmo(const mxGizmoNode& gizmo, int axis) {
    const Transform& world = gizmo.getWorldTransform();
    return CircleAbout(ToDouble(world.GetTranslate()), ToDouble(world.GetRotate()), axis,
                       world.GetUniformScale());
}

WindowPixel OnCircle(const mxCamera& camera, const Circle& circle, double degrees) {
    return WindowPixelOver(camera, mx::test::ToFloat(circle.pointAt(degrees)));
}

// The angle of a rotation matrix, in degrees.
double AngleOf(const Mat3& m) {
    const double cosine = (static_cast<double>(m(0, 0)) + m(1, 1) + m(2, 2) - 1.0) / 2.0;
    return std::acos(std::clamp(cosine, -1.0, 1.0)) * 180.0 / mx::test::csPi;
}

// For each axis, without and then with the snap option: a press on the front of the circle
// and eight moves round it in 7-degree steps, so that the 5-degree rounding shows.
Digest RotateDrags(bool perspective) {
    const Vec3 eye(6.3f, 5.1f, 8.7f);
    const Vec3 target(0.1f, 0.2f, -0.3f);
    PinScene scene(perspective, eye, target);
    DragObjects objects(scene);
    mxGizmoNode* gizmo = scene.addGizmo(mxGizmoNode::GIZMO_ROTATE,
                                        {objects.belowGeneral, objects.atRoot, objects.withChild});
    scene.controller.setOrientationReference(mxGizmoController::World);

    Digest digest;
    scene.start(digest);
    for (int axis = 0; axis < 3; ++axis) {
        for (bool snap : {false, true}) {
            SCOPED_TRACE(::testing::Message() << "axis " << axis << ", snap " << snap);
            gizmo->setSnapRotationToAxis(snap);
            const Circle circle = CircleOfGizmo(*gizmo, axis);
            double direction = 1.0;
            const double start = PressAngle(circle.frontDegrees(*scene.camera), direction);
            const WindowPixel at = OnCircle(*scene.camera, circle, start);
            scene.hover(digest, at);
            scene.press(digest, at);
            EXPECT_EQ(scene.controller.getPickedAxeIndex(gizmo), axis);
            EXPECT_TRUE(VectorNear(scene.controller.getPickedWorldAxe(gizmo),
                                   UnitAxis(static_cast<unsigned int>(axis)), 1e-6));
            for (int k = 1; k <= 8; ++k) {
                scene.hover(digest, OnCircle(*scene.camera, circle, start + direction * 7.0 * k));
            }
            scene.release(digest, OnCircle(*scene.camera, circle, start + direction * 58.0));
            // A turn about the axis by a multiple of 5 degrees.
            const Transform& end = scene.listener.ends.back();
            const Vec3 unit = UnitAxis(static_cast<unsigned int>(axis));
            EXPECT_TRUE(VectorNear(end.GetRotate() * unit, unit, 1e-5));
            const double degrees = AngleOf(end.GetRotate());
            EXPECT_NEAR(degrees / 5.0, std::round(degrees / 5.0), 1e-3);
            EXPECT_GT(degrees, 20.0);
        }
    }
    EXPECT_EQ(scene.listener.ends.size(), 6u);
    return digest;
}

TEST(mxPinnedResultsTest, RotateDragsOfEachCircleWithAndWithoutSnapInPerspective) {
    const Digest digest = RotateDrags(true);
    EXPECT_EQ(digest.value(), 0x733f59fdf3002465ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, RotateDragsOfEachCircleWithAndWithoutSnapInOrthographic) {
    const Digest digest = RotateDrags(false);
    EXPECT_EQ(digest.value(), 0x90b3105d8393a5baull) << Hex(digest.value());
}

// The rotate controller driven directly, so that the gizmo's orientation squared at the
// release can be read before any placement replaces it: a turned gizmo, each circle, without
// and with the snap option.
TEST(mxPinnedResultsTest, RotateReleaseSquaresTheTurnedGizmoOnlyWithSnap) {
    std::vector<mx3DManipulatorMotionListener*> listeners;
    RecordingListener listener;
    listeners.push_back(&listener);
    mxGizmoControllerRotate rotate(listeners);
    mxPointer<mxCamera> camera = new mxCamera(true);
    const Vec3 eye(-4.3f, 6.1f, 9.2f);
    const Vec3 position(0.35f, -0.2f, 0.15f);
    SetView(*camera, true, eye, position);
    FramedGizmo gizmo(mxGizmoNode::GIZMO_ROTATE, true);
    mxPointer<mxMesh> first = mx::test::MakeObject(Vec3(0.9f, -0.6f, 0.4f), gizmo.root.get());
    mxPointer<mxMesh> second = mx::test::MakeObject(Vec3(-0.7f, 0.3f, -0.2f), gizmo.root.get());
    gizmo.node->setReferenceObjects({first.get(), second.get()});
    const Mat3 turn = Rotation(0.3f, 1.0f, 0.2f, 0.77f);

    Digest digest;
    auto feed = [&]() {
        digest.addTransform(gizmo.node->getLocalTransform());
        digest.addTransform(gizmo.node->getWorldTransform());
        digest.addTransform(first->getWorldTransform());
        digest.addTransform(second->getLocalTransform());
        digest.addInt(rotate.getPickedAxe());
        digest.addVector(rotate.getPickedWorldAxe());
        PinScene::FeedGizmo(digest, *gizmo.node);
    };
    auto mouseOf = [&](const WindowPixel& pixel) {
        return mx::test::MouseOfWindowPixel(pixel, csWidth, csHeight);
    };
    for (bool snap : {false, true}) {
        gizmo.node->setSnapRotationToAxis(snap);
        for (int axis = 0; axis < 3; ++axis) {
            gizmo.place(*camera, turn, position);
            feed();
            const Circle circle = CircleOfGizmo(*gizmo.node, axis);
            double direction = 1.0;
            const double start = PressAngle(circle.frontDegrees(*camera), direction);
            const Vec2 at = mouseOf(OnCircle(*camera, circle, start));
            digest.addBool(rotate.updateRotateHover(gizmo.node.get(), camera.get(), at, csTolerance,
                                                    csWidth, csHeight));
            EXPECT_EQ(rotate.getPickedAxe(), axis);
            rotate.setMousePressed(gizmo.node.get(), camera.get(), at, csWidth, csHeight);
            feed();
            // The edges of the view belong to it.
            const bool onEdge = rotate.setMousePos(gizmo.node.get(), camera.get(),
                                                   Vec2(1.0f, at.Y()), csWidth, csHeight);
            digest.addBool(onEdge);
            EXPECT_TRUE(onEdge);
            feed();
            for (int k = 1; k <= 8; ++k) {
                const Vec2 mouse = mouseOf(OnCircle(*camera, circle, start + direction * 7.0 * k));
                digest.addBool(
                    rotate.setMousePos(gizmo.node.get(), camera.get(), mouse, csWidth, csHeight));
                feed();
            }
            const Mat3 before = gizmo.node->getLocalTransform().GetRotate();
            rotate.setMouseReleased(gizmo.node.get(), camera.get(),
                                    mouseOf(OnCircle(*camera, circle, start + direction * 58.0)),
                                    csWidth, csHeight);
            feed();
            const Mat3& after = gizmo.node->getLocalTransform().GetRotate();
            if (!snap) {
                EXPECT_TRUE(after == before);
            } else {
                // Each of the first two columns at an elevation and azimuth of whole 5-degree
                // steps.
                for (int c = 0; c < 2; ++c) {
                    const Vec3 column = ColumnOf(after, c);
                    const double elevation =
                        std::asin(std::clamp(static_cast<double>(column.Z()), -1.0, 1.0)) * 36.0 /
                        mx::test::csPi;
                    const double azimuth =
                        std::atan2(column.Y(), column.X()) * 36.0 / mx::test::csPi;
                    EXPECT_NEAR(elevation, std::round(elevation), 1e-3);
                    EXPECT_NEAR(azimuth, std::round(azimuth), 1e-3);
                }
                EXPECT_FALSE(after == before);
            }
        }
    }
    for (const Transform& end : listener.ends) {
        digest.addTransform(end);
    }
    EXPECT_EQ(listener.ends.size(), 6u);
    EXPECT_EQ(digest.value(), 0x63186f4e21d06105ull) << Hex(digest.value());
}

// ---------------------------------------------------------------------------------------------
// Scale drags

// The gizmo of one node below the general parent, turned by Local so that the scaling runs
// along a turned frame (a general matrix); for each axis, non-uniform then uniform, a press
// 0.7 along the axis and moves to the given lengths along it.
Digest ScaleDrags(const std::vector<float>& lengths, Vec3& lastScale, Vec3& firstScale) {
    PinScene scene(true, Vec3(-3.6f, 4.4f, 10.8f), Vec3(0.3f, 0.1f, -0.2f));
    mxNode* single = scene.addNodeWithChild(Vec3(0.2f, 0.3f, -0.1f), scene.general.get());
    mxGizmoNode* gizmo = scene.addGizmo(mxGizmoNode::GIZMO_SCALE, {single});
    scene.controller.setOrientationReference(mxGizmoController::Local);

    Digest digest;
    scene.start(digest);
    EXPECT_FALSE(gizmo->getWorldTransform().GetRotate() == Mat3::IDENTITY);
    bool first = true;
    for (int axis = 0; axis < 3; ++axis) {
        for (bool uniform : {false, true}) {
            gizmo->setUseUniformScale(uniform);
            const WindowPixel at = OnAxis(*scene.camera, *gizmo, axis, 0.7f);
            const std::vector<WindowPixel> moves =
                AlongAxisAt(*scene.camera, *gizmo, axis, lengths);
            scene.gesture(digest, at, moves, moves.back());
            if (first) {
                firstScale = gizmo->getScaleReference();
                first = false;
            }
            lastScale = gizmo->getScaleReference();
        }
    }
    EXPECT_EQ(scene.listener.ends.size(), 6u);
    return digest;
}

TEST(mxPinnedResultsTest, ScaleDragsOutwardsAlongATurnedFrame) {
    Vec3 last;
    Vec3 first;
    const Digest digest = ScaleDrags({0.8f, 0.95f, 1.1f, 1.3f, 1.55f, 1.8f}, last, first);
    // From 0.7 to 1.8 lengths: 1 + 1.1, to within the rounding of the mouse to whole pixels.
    EXPECT_TRUE(VectorNear(first, Vec3(2.1f, 1.0f, 1.0f), 0.03));
    EXPECT_TRUE(VectorNear(last, Vec3(2.1f, 2.1f, 2.1f), 0.03));
    EXPECT_EQ(digest.value(), 0x91e2ad91f33a5ee1ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, ScaleDragsInwardsPastTheCentreAlongATurnedFrame) {
    Vec3 last;
    Vec3 first;
    const Digest digest =
        ScaleDrags({0.55f, 0.35f, 0.15f, 0.02f, -0.2f, -0.5f, -0.9f}, last, first);
    // From 0.7 to -0.9 lengths: 1 / (1 + 1.6).
    EXPECT_TRUE(VectorNear(first, Vec3(1.0f / 2.6f, 1.0f, 1.0f), 0.01));
    EXPECT_TRUE(VectorNear(last, Vec3(1.0f / 2.6f, 1.0f / 2.6f, 1.0f / 2.6f), 0.01));
    EXPECT_EQ(digest.value(), 0x371da99612e01ef5ull) << Hex(digest.value());
}

// ---------------------------------------------------------------------------------------------
// Static arithmetic

// A 64-bit linear congruential generator (Knuth's MMIX constants) with a fixed seed: the same
// inputs on every run and every build.
class Lcg {
public:
    explicit Lcg(std::uint64_t seed) : state(seed) {}
    // In [0, 1), from the top 24 bits: exact in float.
    float unit() {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<float>(state >> 40) * (1.0f / 16777216.0f);
    }
    float in(float low, float high) { return low + (high - low) * unit(); }
    int below(int count) { return static_cast<int>(unit() * static_cast<float>(count)); }
    Vec3 vector(float low, float high) { return Vec3(in(low, high), in(low, high), in(low, high)); }
    Vec3 direction() {
        Vec3 v(in(-1.0f, 1.0f), in(-1.0f, 1.0f), in(-1.0f, 1.0f));
        if (v.Length() < 0.1f) {
            v = Vec3(0.3f, -0.5f, 0.8f);
        }
        v.Normalize();
        return v;
    }
    Mat3 rotation() {
        Mat3 m;
        m.MakeRotation(direction(), in(-3.1f, 3.1f));
        return m;
    }
    Mat3 matrix() {
        Mat3 m;
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                m(r, c) = in(-2.0f, 2.0f);
            }
        }
        return m;
    }

private:
    std::uint64_t state;
};

// A transformation of one of nine kinds: identity, translation, rotation, uniform scale alone,
// rotation with uniform scale, rotation with non-uniform scale (each with a translation), a
// general matrix, a general matrix without translation, and a rotation with scale in RS form
// then made general by a product.
Transform RandomTransform(Lcg& random, int kind) {
    Transform t;
    switch (kind) {
    case 0:
        break;
    case 1:
        t.SetTranslate(random.vector(-5.0f, 5.0f));
        break;
    case 2:
        t.SetRotate(random.rotation());
        break;
    case 3:
        t.SetUniformScale(random.in(0.25f, 4.0f));
        break;
    case 4:
        t.SetRotate(random.rotation());
        t.SetUniformScale(random.in(0.25f, 4.0f));
        t.SetTranslate(random.vector(-5.0f, 5.0f));
        break;
    case 5:
        t.SetRotate(random.rotation());
        t.SetScale(random.vector(0.25f, 4.0f));
        t.SetTranslate(random.vector(-5.0f, 5.0f));
        break;
    case 6:
        t.SetMatrix(random.matrix());
        t.SetTranslate(random.vector(-5.0f, 5.0f));
        break;
    case 7:
        t.SetMatrix(random.matrix());
        break;
    default: {
        Transform a;
        a.SetRotate(random.rotation());
        a.SetScale(random.vector(0.25f, 4.0f));
        Transform b;
        b.SetRotate(random.rotation());
        b.SetTranslate(random.vector(-5.0f, 5.0f));
        t.Product(a, b);
        break;
    }
    }
    return t;
}

constexpr int csKinds = 9;

TEST(mxPinnedResultsTest, TransformationProductInverseAndApplyForwardOverRandomInputs) {
    Lcg random(0x5eed1234abcdull);
    Digest digest;
    int checkedRoundTrips = 0;
    for (int i = 0; i < 400; ++i) {
        const Transform a = RandomTransform(random, i % csKinds);
        const Transform b = RandomTransform(random, random.below(csKinds));
        const Vec3 point = random.vector(-3.0f, 3.0f);
        Transform product;
        product.Product(a, b);
        Transform inverse;
        a.Inverse(inverse);
        Transform roundTrip;
        roundTrip.Product(inverse, a);
        // Aliased forms.
        Transform aliased = a;
        aliased.Product(aliased, b);
        Transform selfInverse = b;
        selfInverse.Inverse(selfInverse);
        const Transform* const results[] = {&a,         &b,       &product,    &inverse,
                                            &roundTrip, &aliased, &selfInverse};
        for (const Transform* t : results) {
            digest.addTransform(*t);
            digest.addVector(t->ApplyForward(point, true));
            digest.addVector(t->ApplyForward(point, false));
            digest.addMatrix(t->GetFullMatrix());
        }
        EXPECT_TRUE(aliased == product);
        // A well-conditioned transformation undone by its inverse.
        const float determinant = a.GetFullMatrix().Determinant();
        if (std::fabs(determinant) > 0.05f) {
            ++checkedRoundTrips;
            EXPECT_TRUE(
                VectorNear(inverse.ApplyForward(a.ApplyForward(point, true), true), point, 5e-3))
                << "transformation " << i;
            EXPECT_TRUE(VectorNear(product.ApplyForward(point, true),
                                   a.ApplyForward(b.ApplyForward(point, true), true), 1e-3))
                << "transformation " << i;
        }
    }
    EXPECT_GT(checkedRoundTrips, 300);
    EXPECT_EQ(digest.value(), 0xd21157ac87d58cb2ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, ComputeRotationBothOverloadsOverRandomInputs) {
    Lcg random(0xc0ffee17ull);
    Digest digest;
    for (int i = 0; i < 400; ++i) {
        const Vec3 axis = random.direction();
        // Every fifth angle nearly zero, every seventh centre nearly the origin: the identity
        // rotation and the dropped translation.
        const float angle = i % 5 == 0 ? random.in(-1e-7f, 1e-7f) : random.in(-3.1f, 3.1f);
        const Vec3 centre = i % 7 == 0 ? random.vector(-4e-4f, 4e-4f) : random.vector(-6.0f, 6.0f);
        Transform byAxis;
        mxGizmoNode::ComputeRotation(axis, angle, centre, byAxis);
        digest.addTransform(byAxis);
        Mat3 matrix;
        matrix.MakeRotation(axis, angle);
        Transform byMatrix;
        mxGizmoNode::ComputeRotation(matrix, centre, byMatrix);
        digest.addTransform(byMatrix);
        // The centre stays in place.
        EXPECT_TRUE(VectorNear(byAxis.ApplyForward(centre, true), centre, 2e-3)) << i;
    }
    Transform quarter;
    mxGizmoNode::ComputeRotation(Vec3::UNIT_Z, static_cast<float>(mx::test::csPi / 2.0),
                                 Vec3(1.0f, 0.0f, 0.0f), quarter);
    digest.addTransform(quarter);
    EXPECT_TRUE(VectorNear(quarter.ApplyForward(Vec3(2.0f, 0.0f, 0.0f), true),
                           Vec3(1.0f, 1.0f, 0.0f), 1e-6));
    EXPECT_EQ(digest.value(), 0xb72fd53dd934675cull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, ComputeHomotheticTransformOverRandomInputs) {
    Lcg random(0x51ca1eull);
    Digest digest;
    for (int i = 0; i < 400; ++i) {
        Vec3 scale = random.vector(0.25f, 4.0f);
        switch (i % 4) {
        case 0:
            scale = Vec3(scale.X(), scale.X(), scale.X());
            break;
        case 1:
            if (i % 3 == 0) {
                scale = Vec3(1.0f, 1.0f, 1.0f);
            }
            break;
        default:
            break;
        }
        const Mat3 frame = i % 3 == 0 ? Mat3::IDENTITY : random.rotation();
        const Vec3 centre = random.vector(-5.0f, 5.0f);
        Transform out;
        mxGizmoNode::ComputeHomotheticTransform(scale, frame, centre, out);
        digest.addTransform(out);
        EXPECT_TRUE(VectorNear(out.ApplyForward(centre, true), centre, 2e-3)) << i;
    }
    EXPECT_EQ(digest.value(), 0x0f23f1af92f7ea39ull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, ExtractRotationOverRandomAndDegenerateInputs) {
    Lcg random(0xe47c7ull);
    Digest digest;
    auto extract = [&](const Transform& t) {
        Mat3 rotation;
        mxGizmoNode::ExtractRotation(t, rotation);
        digest.addMatrix(rotation);
        return rotation;
    };
    for (int i = 0; i < 400; ++i) {
        const Mat3 rotation = extract(RandomTransform(random, i % csKinds));
        EXPECT_NEAR(rotation.Determinant(), 1.0f, 1e-4f) << i;
    }
    // Missing and parallel columns, in every position, and the zero matrix.
    const Vec3 zero = Vec3::ZERO;
    const Vec3 u = random.direction() * 2.5f;
    const Vec3 v = random.direction() * 0.4f;
    const Vec3 columns[][3] = {{zero, zero, zero},
                               {u, zero, zero},
                               {zero, u, zero},
                               {zero, zero, u},
                               {u, v, zero},
                               {u, zero, v},
                               {zero, u, v},
                               {u, u * 3.0f, v},
                               {u, v, u * 0.5f},
                               {u, u, u},
                               {Vec3::UNIT_X, zero, zero},
                               {zero, -Vec3::UNIT_X, zero}};
    for (const auto& c : columns) {
        Transform t;
        t.SetMatrix(Mat3(c[0], c[1], c[2], true));
        const Mat3 rotation = extract(t);
        EXPECT_NEAR(rotation.Determinant(), 1.0f, 1e-4f);
    }
    EXPECT_EQ(digest.value(), 0xc348c4d1dcb2cb8bull) << Hex(digest.value());
}

TEST(mxPinnedResultsTest, ComputeGizmoScaleOverRandomInputs) {
    Lcg random(0x6125ca1eull);
    Digest digest;
    mxPointer<mxCamera> perspective = new mxCamera(true);
    SetView(*perspective, true, Vec3(2.3f, 4.1f, 11.7f), Vec3(0.2f, -0.3f, -0.5f));
    mxPointer<mxCamera> orthographic = new mxCamera(true);
    SetView(*orthographic, false, Vec3(-3.9f, 2.2f, 8.4f), Vec3(0.6f, 0.1f, -0.2f));
    const int heights[3] = {240, 97, 1080};
    for (int i = 0; i < 300; ++i) {
        const Vec3 position = random.vector(-8.0f, 8.0f);
        const float pixels = random.in(20.0f, 100.0f);
        const int height = heights[i % 3];
        const float near =
            mxGizmoNode::ComputeGizmoScale(perspective.get(), position, pixels, height);
        const float box =
            mxGizmoNode::ComputeGizmoScale(orthographic.get(), position, pixels, height);
        digest.addFloat(near);
        digest.addFloat(box);
        digest.addFloat(mxGizmoNode::ComputeGizmoScale(nullptr, position, pixels, height));
        // The orthographic size is the same everywhere.
        EXPECT_NEAR(box, 2.0f * csBoxHalfHeight / static_cast<float>(height) * pixels, 1e-5f);
    }
    EXPECT_EQ(digest.value(), 0xc5cecd5cb363d98bull) << Hex(digest.value());
}

} // namespace
