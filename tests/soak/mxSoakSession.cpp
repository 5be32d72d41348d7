#include "mxSoakSession.h"

#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxSpatial.h"
#include "wm4/Wm4Matrix3.h"

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <fstream>
#include <functional>
#include <limits>
#include <sstream>

namespace mx::soak {

namespace {

using Transform = mxGenericTransformation<float>;
using Vector = Wm4::Vector3<float>;
using Callback = mxSoakListener::Callback;
using Heard = mxSoakListener::Heard;

constexpr double csPi = 3.14159265358979323846;
constexpr int csWidth = mxSoakScene::csWidth;
constexpr int csHeight = mxSoakScene::csHeight;

// The world checks compare transformations entry by entry (the full 3x3 matrix and the
// translation) and divide the largest difference by 1 + the largest entry involved. The library
// writes an object's world as End * (world at press) with the very float operations of
// mxGenericTransformation::Product, so that comparison should find no difference at all; its
// local transformation is (inverse of the parent's world at press) * world, and a host that
// recomputes the world from it (parent * local, as any full update does) lands a little off.
// That round trip costs about ten float roundings (unit roundoff 6e-8) amplified by the
// parent's condition number, at most 4 here (scales 2 and 0.5 on one parent): some 2.4e-6 of
// the magnitude (a million events see at most 5e-7). 1e-5 leaves a margin of four over the
// bound and still catches a wrong drag by far.
constexpr double csWorldTolerance = 1e-5;
// A rotation's angle is read back from its trace, which is ill-conditioned near 0 and 180
// degrees: about 6e-4 radians of float noise at 180; a 5-degree step is 0.087 radians.
constexpr double csAngleTolerance = 2e-3;
// Orthonormality of a rotation and symmetry of a scaling, relative to their largest entry.
constexpr double csShapeTolerance = 1e-5;

// An object drifts out of the scene after enough random drags (a ray almost along the drag
// plane moves it thousands of units); the application then puts it back, between drags.
constexpr float csRunawayDistance = 25.0f;
constexpr float csSmallestAxis = 0.1f;
constexpr float csLargestAxis = 10.0f;

bool sameBits(float a, float b) {
    return std::memcmp(&a, &b, sizeof(float)) == 0;
}

// Every stored float and the three hints, bit for bit.
bool sameBits(const Transform& a, const Transform& b) {
    if (a.IsIdentity() != b.IsIdentity() || a.IsRSMatrix() != b.IsRSMatrix() ||
        a.IsUniformScale() != b.IsUniformScale()) {
        return false;
    }
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (!sameBits(a.GetMatrix()(r, c), b.GetMatrix()(r, c))) {
                return false;
            }
        }
        if (!sameBits(a.GetTranslate()[r], b.GetTranslate()[r]) ||
            !sameBits(a.GetScale()[r], b.GetScale()[r])) {
            return false;
        }
    }
    return true;
}

bool isFinite(const Transform& t) {
    const Wm4::Matrix3<float> m = t.GetFullMatrix();
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (!std::isfinite(m(r, c))) {
                return false;
            }
        }
        if (!std::isfinite(t.GetTranslate()[r])) {
            return false;
        }
    }
    return true;
}

double largestEntry(const Transform& t) {
    const Wm4::Matrix3<float> m = t.GetFullMatrix();
    double largest = 0.0;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            largest = std::max(largest, std::fabs(static_cast<double>(m(r, c))));
        }
        largest = std::max(largest, std::fabs(static_cast<double>(t.GetTranslate()[r])));
    }
    return largest;
}

// The largest difference between the maps (full matrix and translation), relative to 1 + the
// largest entry of expected (or extraMagnitude, when larger). Infinite for NaN.
double relativeError(const Transform& actual, const Transform& expected,
                     double extraMagnitude = 0.0) {
    const Wm4::Matrix3<float> a = actual.GetFullMatrix();
    const Wm4::Matrix3<float> e = expected.GetFullMatrix();
    double worst = 0.0;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            const double d = std::fabs(static_cast<double>(a(r, c)) - e(r, c));
            if (!(d <= std::numeric_limits<double>::max())) {
                return std::numeric_limits<double>::infinity();
            }
            worst = std::max(worst, d);
        }
        const double d =
            std::fabs(static_cast<double>(actual.GetTranslate()[r]) - expected.GetTranslate()[r]);
        if (!(d <= std::numeric_limits<double>::max())) {
            return std::numeric_limits<double>::infinity();
        }
        worst = std::max(worst, d);
    }
    return worst / (1.0 + std::max(largestEntry(expected), extraMagnitude));
}

std::string describe(const Transform& t) {
    std::ostringstream out;
    out.precision(9);
    const Wm4::Matrix3<float>& m = t.GetMatrix();
    out << "{" << (t.IsIdentity() ? "identity, " : "") << (t.IsRSMatrix() ? "rotate " : "matrix ")
        << "[" << m(0, 0) << " " << m(0, 1) << " " << m(0, 2) << "; " << m(1, 0) << " " << m(1, 1)
        << " " << m(1, 2) << "; " << m(2, 0) << " " << m(2, 1) << " " << m(2, 2) << "], scale ("
        << t.GetScale().X() << ", " << t.GetScale().Y() << ", " << t.GetScale().Z()
        << "), translate (" << t.GetTranslate().X() << ", " << t.GetTranslate().Y() << ", "
        << t.GetTranslate().Z() << ")}";
    return out.str();
}

const char* modeName(mxGizmoNode::GizmoMode mode) {
    switch (mode) {
    case mxGizmoNode::GIZMO_TRANSLATE:
        return "translate";
    case mxGizmoNode::GIZMO_ROTATE:
        return "rotate";
    case mxGizmoNode::GIZMO_SCALE:
        return "scale";
    case mxGizmoNode::GIZMO_NONE:
        return "none";
    default:
        return "unset";
    }
}

Callback endOf(mxSoakSession::Drag drag) {
    switch (drag) {
    case mxSoakSession::ROTATE:
        return Callback::RotateEnd;
    case mxSoakSession::SCALE:
        return Callback::ScaleEnd;
    default:
        return Callback::TranslateEnd;
    }
}

const char* dragName(mxSoakSession::Drag drag) {
    switch (drag) {
    case mxSoakSession::TRANSLATE:
        return "translate";
    case mxSoakSession::ROTATE:
        return "rotate";
    case mxSoakSession::SCALE:
        return "scale";
    default:
        return "no";
    }
}

// Whether an object has wandered off far enough to be put back.
bool isRunaway(const Transform& world) {
    if (!isFinite(world)) {
        return true;
    }
    const Vector& t = world.GetTranslate();
    if (std::max({std::fabs(t.X()), std::fabs(t.Y()), std::fabs(t.Z())}) > csRunawayDistance) {
        return true;
    }
    const Wm4::Matrix3<float> m = world.GetFullMatrix();
    for (int c = 0; c < 3; ++c) {
        const float length = Vector(m(0, c), m(1, c), m(2, c)).Length();
        if (!(length >= csSmallestAxis && length <= csLargestAxis)) {
            return true;
        }
    }
    return false;
}

} // namespace

mxSoakSession::mxSoakSession(std::uint64_t events, std::uint32_t seed)
    : eventBudget(events), random(seed), failed(false), tenPercentMeasured(false),
      buttonDown(false), pressedOnGizmo(false), mouseX(csWidth / 2), mouseY(csHeight / 2),
      aimedGizmo(-1), aimedAxis(0), frameHasRelease(false), frameReleaseEndsGesture(false),
      framePresses(0), collectionPending(false), expectedActive(-1),
      pressRecorded(mxSoakScene::csGizmoCount, false), worldsAtLastPress(mxSoakScene::csGizmoCount),
      worldsBefore(scene.getObjects().size()), localsBefore(scene.getObjects().size()),
      gizmoWorldsBefore(mxSoakScene::csGizmoCount), gizmoLocalsBefore(mxSoakScene::csGizmoCount) {
    frameEvents.reserve(64);
    gesture.start.resize(scene.getObjects().size());
    for (auto& worlds : worldsAtLastPress) {
        worlds.resize(scene.getObjects().size());
    }
}

// ---------------------------------------------------------------------------------------------
// The random source: mt19937's 32-bit words through our own fixed arithmetic.

std::uint32_t mxSoakSession::nextRandom() {
    return static_cast<std::uint32_t>(random());
}

int mxSoakSession::uniformInt(int low, int high) {
    // The modulo bias is below 1e-3 for the ranges used here and the same on every platform.
    const std::uint64_t span =
        static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low) + 1u;
    return static_cast<int>(static_cast<std::int64_t>(low) +
                            static_cast<std::int64_t>(nextRandom() % span));
}

double mxSoakSession::uniform01() {
    return nextRandom() * (1.0 / 4294967296.0);
}

double mxSoakSession::uniformReal(double low, double high) {
    return low + (high - low) * uniform01();
}

bool mxSoakSession::chance(double probability) {
    return uniform01() < probability;
}

// ---------------------------------------------------------------------------------------------
// The session

bool mxSoakSession::run() {
    const auto begin = std::chrono::steady_clock::now();
    while (!failed && results.events < eventBudget) {
        step();
    }
    results.atEnd = measureMemory();
    if (!tenPercentMeasured) {
        results.atTenPercent = results.atEnd;
    }
    results.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return !failed;
}

void mxSoakSession::step() {
    // Now and then a frame without events, as a still application renders.
    if (!buttonDown && frameEvents.empty() && chance(0.03)) {
        runFrame();
        return;
    }
    const double r = uniform01();
    if (buttonDown) {
        if (r < 0.80) {
            moveMouse();
        } else if (r < 0.995) {
            releaseButton();
        } else {
            // A second press before the release.
            pressButton();
        }
    } else if (r < 0.40) {
        pressButton();
    } else if (r < 0.95) {
        moveMouse();
    } else {
        // A release without a press.
        releaseButton();
    }
    if (failed || results.events >= eventBudget) {
        return;
    }
    // Usually the engine's frame follows; sometimes several events wait for one frame.
    if (frameEvents.size() >= 10 || chance(0.6)) {
        runFrame();
    }
}

void mxSoakSession::countEvent() {
    ++results.events;
    if (!tenPercentMeasured && results.events >= std::max<std::uint64_t>(1u, eventBudget / 10u)) {
        results.atTenPercent = measureMemory();
        tenPercentMeasured = true;
    }
}

void mxSoakSession::pressButton() {
    // A press is the first event its frame replays, or follows the release that ended the
    // gesture open when the frame began (a quick click after a drag). Not when that release
    // may square a rotate gizmo (the press would find it turned since the call), nor when
    // the frame collects the gizmos again (the press's answer then says nothing).
    bool squaring = false;
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        squaring = squaring || (scene.getGizmo(g).getMode() == mxGizmoNode::GIZMO_ROTATE &&
                                scene.getGizmo(g).shouldSnapRotationToAxis());
    }
    const bool afterRelease = !buttonDown && frameHasRelease && framePresses == 0 &&
                              frameReleaseEndsGesture && !collectionPending && !squaring;
    if (!frameEvents.empty() && afterRelease) {
        ++results.pressesAfterRelease;
    } else if (!frameEvents.empty()) {
        runFrame();
        if (failed || results.events >= eventBudget) {
            return;
        }
    }
    int x = 0;
    int y = 0;
    if (chance(0.85)) {
        aimedPressPixel(x, y);
    } else {
        randomViewPixel(x, y);
        aimedGizmo = uniformInt(0, mxSoakScene::csGizmoCount - 1);
        aimedAxis = uniformInt(0, 2);
    }
    const bool answer =
        scene.editController().setMousePressed(&scene.getCamera(), x, y, csWidth, csHeight);
    if (buttonDown) {
        ++results.secondPresses;
    }
    frameEvents.push_back(Event{EventKind::PRESS, x, y, buttonDown, answer, collectionPending});
    ++framePresses;
    ++results.presses;
    buttonDown = true;
    pressedOnGizmo = answer;
    mouseX = x;
    mouseY = y;
    countEvent();
}

void mxSoakSession::moveMouse() {
    int x = 0;
    int y = 0;
    if (buttonDown) {
        dragPixel(x, y);
    } else {
        hoverPixel(x, y);
    }
    const bool answer = scene.editController().setMousePos(x, y);
    frameEvents.push_back(Event{EventKind::MOVE, x, y, buttonDown, answer, collectionPending});
    ++results.moves;
    mouseX = x;
    mouseY = y;
    countEvent();
    if (answer != pressedOnGizmo) {
        fail(std::string("setMousePos answered ") + (answer ? "true" : "false") +
             ", but the answer of the last press (since released: false) was " +
             (pressedOnGizmo ? "true" : "false"));
    }
}

void mxSoakSession::releaseButton() {
    // At most one release per frame.
    if (frameHasRelease) {
        runFrame();
        if (failed || results.events >= eventBudget) {
            return;
        }
    }
    int x = 0;
    int y = 0;
    releasePixel(x, y);
    const bool answer = scene.editController().setMouseReleased(x, y);
    frameEvents.push_back(Event{EventKind::RELEASE, x, y, buttonDown, answer, collectionPending});
    frameReleaseEndsGesture = buttonDown;
    ++results.releases;
    if (!buttonDown) {
        ++results.strayReleases;
    }
    const bool expected = pressedOnGizmo;
    buttonDown = false;
    pressedOnGizmo = false;
    frameHasRelease = true;
    mouseX = x;
    mouseY = y;
    countEvent();
    if (answer != expected) {
        fail(std::string("setMouseReleased answered ") + (answer ? "true" : "false") +
             ", but the answer of the last press (since released: false) was " +
             (expected ? "true" : "false"));
    }
}

void mxSoakSession::runFrame() {
    const std::vector<mxSpatial*>& objects = scene.getObjects();
    for (std::size_t o = 0; o < objects.size(); ++o) {
        worldsBefore[o] = objects[o]->getWorldTransform();
        localsBefore[o] = objects[o]->getLocalTransform();
    }
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        gizmoWorldsBefore[static_cast<std::size_t>(g)] = scene.getGizmo(g).getWorldTransform();
        gizmoLocalsBefore[static_cast<std::size_t>(g)] = scene.getGizmo(g).getLocalTransform();
    }
    scene.editListener().clearFrame();
    scene.editEngine().updateFrame();
    ++results.frames;
    countEvent();
    checkFrame();
    frameEvents.clear();
    frameHasRelease = false;
    frameReleaseEndsGesture = false;
    framePresses = 0;
    collectionPending = false;
    if (!failed && !buttonDown) {
        betweenDrags();
    }
}

void mxSoakSession::betweenDrags() {
    // Nothing is queued and no button is down: the application may change its scene and view.
    const std::vector<mxSpatial*>& objects = scene.getObjects();
    for (std::size_t o = 0; o < objects.size(); ++o) {
        if (!scene.isExcluded(o) && isRunaway(objects[o]->getWorldTransform())) {
            scene.resetObject(o);
            ++results.objectResets;
        }
    }
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        if (!chance(0.02)) {
            continue;
        }
        mxGizmoNode::GizmoMode mode = static_cast<mxGizmoNode::GizmoMode>(uniformInt(0, 2));
        // The first gizmo always shows a manipulator; the others now and then show none.
        if (g > 0 && chance(0.1)) {
            mode = mxGizmoNode::GIZMO_NONE;
        }
        if (mode != scene.getGizmo(g).getMode()) {
            scene.editGizmo(g).setMode(mode);
            ++results.modeChanges;
        }
    }
    if (chance(0.01)) {
        static const mxGizmoController::OrientationReference references[3] = {
            mxGizmoController::World, mxGizmoController::Local, mxGizmoController::View};
        scene.editController().setOrientationReference(references[uniformInt(0, 2)]);
        ++results.orientationChanges;
    }
    if (chance(0.05)) {
        scene.orbit(uniformReal(-12.0, 12.0), uniformReal(-6.0, 6.0), uniformReal(0.93, 1.07));
        ++results.cameraChanges;
    }
    if (chance(0.002)) {
        scene.setPerspective(!scene.isPerspective());
        ++results.projectionChanges;
    }
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        if (!chance(0.005)) {
            continue;
        }
        mxGizmoNode& gizmo = scene.editGizmo(g);
        switch (uniformInt(0, 2)) {
        case 0:
            gizmo.setUseUniformScale(!gizmo.shouldUseUniformScale());
            break;
        case 1:
            gizmo.setSnapRotationToAxis(!gizmo.shouldSnapRotationToAxis());
            break;
        default:
            gizmo.restrictPositionBetweenNearFar(!gizmo.shouldRestrictPositionBetweenNearFar());
            break;
        }
    }
    if (chance(0.001)) {
        const int g = mxSoakScene::csGizmoCount - 1;
        scene.setAttached(g, !scene.isAttached(g));
        collectionPending = true;
        ++results.attachChanges;
    }
    if (chance(0.0005)) {
        scene.resetControllers();
        // clearController forgets the gizmo under the mouse.
        expectedActive = -1;
        collectionPending = true;
        ++results.controllerResets;
    }
}

// ---------------------------------------------------------------------------------------------
// Where the mouse goes

bool mxSoakSession::handlePixel(int gizmo, int axis, double along, int& x, int& y) const {
    const mxGizmoNode& node = scene.getGizmo(gizmo);
    Vector local(0.0f, 0.0f, 0.0f);
    switch (node.getMode()) {
    case mxGizmoNode::GIZMO_TRANSLATE:
    case mxGizmoNode::GIZMO_SCALE:
        // along lengths of the axis from the centre.
        local[axis] = static_cast<float>(along);
        break;
    case mxGizmoNode::GIZMO_ROTATE: {
        // The circle about the axis at the angle along, as the gizmo draws it.
        const float c = static_cast<float>(std::cos(along));
        const float s = static_cast<float>(std::sin(along));
        local = axis == 0   ? Vector(0.0f, c, s)
                : axis == 1 ? Vector(c, 0.0f, s)
                            : Vector(c, s, 0.0f);
        break;
    }
    default:
        return false;
    }
    return scene.windowPixelOf(node.getWorldTransform().ApplyForward(local, true), x, y);
}

void mxSoakSession::aimedPressPixel(int& x, int& y) {
    int candidates[mxSoakScene::csGizmoCount];
    int count = 0;
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        const mxGizmoNode::GizmoMode mode = scene.getGizmo(g).getMode();
        if (scene.isAttached(g) && mode >= mxGizmoNode::GIZMO_TRANSLATE &&
            mode <= mxGizmoNode::GIZMO_SCALE) {
            candidates[count++] = g;
        }
    }
    const int gizmo = count > 0 ? candidates[uniformInt(0, count - 1)] : -1;
    const int axis = uniformInt(0, 2);
    if (gizmo >= 0) {
        const bool circle = scene.getGizmo(gizmo).getMode() == mxGizmoNode::GIZMO_ROTATE;
        const double along = circle ? uniformReal(0.0, 2.0 * csPi) : uniformReal(0.1, 1.05);
        if (handlePixel(gizmo, axis, along, x, y)) {
            x += uniformInt(-2, 2);
            y += uniformInt(-2, 2);
            if (x >= 0 && x < csWidth && y >= 0 && y < csHeight) {
                aimedGizmo = gizmo;
                aimedAxis = axis;
                return;
            }
        }
    }
    // The handle is off the view: a press somewhere in it instead.
    randomViewPixel(x, y);
    aimedGizmo = gizmo;
    aimedAxis = axis;
}

void mxSoakSession::dragPixel(int& x, int& y) {
    const double r = uniform01();
    if (r < 0.45) {
        nearPixel(x, y, 6);
        return;
    }
    if (r < 0.80) {
        // Along the pressed handle, inside and beyond it, or round its circle.
        if (aimedGizmo >= 0) {
            const bool circle = scene.getGizmo(aimedGizmo).getMode() == mxGizmoNode::GIZMO_ROTATE;
            const double along = circle ? uniformReal(0.0, 2.0 * csPi) : uniformReal(-2.5, 3.5);
            if (handlePixel(aimedGizmo, aimedAxis, along, x, y)) {
                x += uniformInt(-4, 4);
                y += uniformInt(-4, 4);
                return;
            }
        }
        nearPixel(x, y, 6);
        return;
    }
    if (r < 0.90) {
        randomViewPixel(x, y);
    } else if (r < 0.96) {
        outsidePixel(x, y);
    } else {
        farPixel(x, y);
    }
}

void mxSoakSession::hoverPixel(int& x, int& y) {
    const double r = uniform01();
    if (r < 0.35) {
        const int gizmo = uniformInt(0, mxSoakScene::csGizmoCount - 1);
        const bool circle = scene.getGizmo(gizmo).getMode() == mxGizmoNode::GIZMO_ROTATE;
        const double along = circle ? uniformReal(0.0, 2.0 * csPi) : uniformReal(0.0, 1.2);
        if (handlePixel(gizmo, uniformInt(0, 2), along, x, y)) {
            x += uniformInt(-12, 12);
            y += uniformInt(-12, 12);
            return;
        }
        randomViewPixel(x, y);
    } else if (r < 0.80) {
        randomViewPixel(x, y);
    } else if (r < 0.95) {
        outsidePixel(x, y);
    } else {
        farPixel(x, y);
    }
}

void mxSoakSession::releasePixel(int& x, int& y) {
    const double r = uniform01();
    if (r < 0.40) {
        x = mouseX;
        y = mouseY;
    } else if (r < 0.65) {
        nearPixel(x, y, 6);
    } else if (r < 0.80) {
        dragPixel(x, y);
    } else if (r < 0.92) {
        randomViewPixel(x, y);
    } else {
        farPixel(x, y);
    }
}

void mxSoakSession::randomViewPixel(int& x, int& y) {
    x = uniformInt(0, csWidth - 1);
    y = uniformInt(0, csHeight - 1);
}

void mxSoakSession::outsidePixel(int& x, int& y) {
    // A band of one view around the view (the view itself included).
    x = uniformInt(-csWidth, 2 * csWidth - 1);
    y = uniformInt(-csHeight, 2 * csHeight - 1);
}

void mxSoakSession::farPixel(int& x, int& y) {
    // Now and then at the very ends of int: a grabbed mouse far off the window.
    if (chance(0.1)) {
        constexpr int csEnds[4] = {
            std::numeric_limits<int>::min(), std::numeric_limits<int>::min() + 1,
            std::numeric_limits<int>::max() - 1, std::numeric_limits<int>::max()};
        x = csEnds[uniformInt(0, 3)];
        y = csEnds[uniformInt(0, 3)];
        return;
    }
    x = uniformInt(-1000000, 1000000);
    y = uniformInt(-1000000, 1000000);
}

void mxSoakSession::nearPixel(int& x, int& y, int spread) {
    // Saturated, so that a step from the ends of int stays an int.
    auto step = [this, spread](int from) {
        const std::int64_t to = static_cast<std::int64_t>(from) + uniformInt(-spread, spread);
        return static_cast<int>(std::clamp<std::int64_t>(to, std::numeric_limits<int>::min(),
                                                         std::numeric_limits<int>::max()));
    };
    x = step(mouseX);
    y = step(mouseY);
}

// ---------------------------------------------------------------------------------------------
// Checks

void mxSoakSession::checkFrame() {
    mxSoakListener& listener = scene.editListener();
    const std::vector<Heard>& heard = listener.heard();
    const std::vector<mxGizmoNode*>& announced = listener.manipulated();
    if (listener.heardAfterAnnouncement()) {
        fail("a Start or End callback came after onGizmoManipulated in the same frame");
        return;
    }
    std::uint32_t announcedGizmos = 0;
    for (std::size_t i = 0; i < announced.size(); ++i) {
        const int gizmo = scene.indexOf(announced[i]);
        if (gizmo < 0) {
            fail("onGizmoManipulated announced a node that is none of the scene's gizmos");
            return;
        }
        if (i > 0 && !std::less<const mxGizmoNode*>()(announced[i - 1], announced[i])) {
            fail("onGizmoManipulated announced the gizmos out of ascending pointer order, or one "
                 "twice");
            return;
        }
        announcedGizmos |= 1u << gizmo;
    }

    // The frame holds at most one press and one release (the session's rules); a press that
    // is not the first event follows the release of the gesture open when the frame began.
    const std::size_t none = frameEvents.size();
    std::size_t pressAt = none;
    std::size_t releaseAt = none;
    for (std::size_t k = 0; k < frameEvents.size(); ++k) {
        if (frameEvents[k].kind == EventKind::PRESS) {
            pressAt = k;
        } else if (frameEvents[k].kind == EventKind::RELEASE) {
            releaseAt = k;
        }
    }
    const bool hasPress = pressAt != none;
    const bool hasRelease = releaseAt != none;
    std::size_t next = 0;
    std::uint32_t allowedToMove = 0;
    std::uint32_t takingPart = 0;
    // The objects' worlds as the next event finds them.
    const std::vector<Transform>* worldsNow = &worldsBefore;

    // 1. The gesture open when the frame began: its moves (until a second press) and its
    //    release. Only its gizmo takes part; a drag that started hears exactly one End.
    if (gesture.open && pressAt != 0) {
        bool touched = false;
        bool released = false;
        for (std::size_t k = 0; k < std::min(pressAt, none) && !released; ++k) {
            touched = touched || frameEvents[k].kind != EventKind::PRESS;
            released = frameEvents[k].kind == EventKind::RELEASE;
        }
        if (hasPress && !released) {
            fail("the session queued a press after other events of an open gesture");
            return;
        }
        if (touched && gesture.gizmo >= 0) {
            takingPart |= 1u << gesture.gizmo;
        }
        if (gesture.drag != NO_DRAG) {
            allowedToMove |= scene.movedBy(gesture.gizmo);
        }
        if (released) {
            if (gesture.drag != NO_DRAG) {
                const Callback expected = endOf(gesture.drag);
                if (next >= heard.size() || heard[next].callback != expected) {
                    fail(std::string("the release of the ") + dragName(gesture.drag) + " drag on " +
                         gizmoText(gesture.gizmo) + ", which heard its Start, heard " +
                         (next < heard.size() ? mxSoakListener::nameOf(heard[next].callback)
                                              : "nothing") +
                         " where exactly one " + mxSoakListener::nameOf(expected) + " was due");
                    return;
                }
                const Heard& end = heard[next++];
                if (!checkRelease(end, gesture.start, !hasPress)) {
                    return;
                }
                worldsNow = &listener.snapshot(end.snapshot);
            }
            gesture.open = false;
        }
    }

    // 2. A release without a press (the frame then holds no press): replayed against the
    //    gizmo that the last release left under the mouse, the only one it may announce.
    if (hasRelease && !frameEvents[releaseAt].buttonDown) {
        if (hasPress) {
            fail("the session queued a press in the frame of a release without a press");
            return;
        }
        if (announced.size() > 1) {
            fail("a release without a press announced " + std::to_string(announced.size()) +
                 " gizmos");
            return;
        }
        const int gizmo = announced.empty() ? -1 : scene.indexOf(announced.front());
        if (expectedActive != -2 && gizmo != expectedActive) {
            fail("a release without a press took part with " + gizmoText(gizmo) +
                 " where the last release left " + gizmoText(expectedActive) + " under the mouse");
            return;
        }
        if (expectedActive != -2) {
            ++results.strayGizmosChecked;
        }
        takingPart = announcedGizmos;
        if (!checkStrayRelease(gizmo, next, allowedToMove)) {
            return;
        }
    }

    // 3. The press: it picks the gizmo under the mouse, if any, and starts a drag there; its
    //    moves and its release (when in this frame) take part with that gizmo.
    if (hasPress) {
        const Event& press = frameEvents[pressAt];
        const std::uint32_t unexplained = announcedGizmos & ~takingPart;
        if ((unexplained & (unexplained - 1u)) != 0) {
            fail("the frame of a press announced more gizmos than the press and the release "
                 "before it took part with");
            return;
        }
        int gizmo = -1;
        for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
            if ((unexplained >> g & 1u) != 0) {
                gizmo = g;
            }
        }
        if (gizmo < 0 && pressAt > 0 && press.answer) {
            // Announced already for the release before it: the press took the same gizmo.
            gizmo = lowestGizmo(takingPart);
        }
        if (!press.beforeCollection && press.answer != (gizmo >= 0)) {
            fail(std::string("setMousePressed answered ") + (press.answer ? "true" : "false") +
                 " at the call, but the replayed press picked " + gizmoText(gizmo));
            return;
        }
        const int hovered = expectedHoverGizmo(press.x, press.y);
        if (hovered != -2 && hovered != gizmo) {
            fail("the press took part with " + gizmoText(gizmo) + " where the first gizmo " +
                 "with a handle within 10 pixels of it is " + gizmoText(hovered));
            return;
        }
        if (hovered != -2) {
            ++results.pressGizmosChecked;
        }
        if (gizmo >= 0) {
            takingPart |= 1u << gizmo;
        }
        Drag drag = NO_DRAG;
        if (!checkStarts(gizmo, press, *worldsNow, next, drag)) {
            return;
        }
        if (gesture.open && gesture.drag != NO_DRAG) {
            // The second press abandons the first drag: it never hears its End.
            ++results.dragsAbandoned;
        }
        if (gizmo >= 0) {
            ++results.pressesOnGizmo;
            // The press stores the gizmo's drag-start state whether or not a drag starts.
            pressRecorded[static_cast<std::size_t>(gizmo)] = true;
            worldsAtLastPress[static_cast<std::size_t>(gizmo)] = *worldsNow;
        }
        gesture.open = true;
        gesture.gizmo = gizmo;
        gesture.drag = drag;
        if (drag != NO_DRAG) {
            ++results.dragsStarted[drag];
            gesture.start = listener.snapshot(heard[next - 1].snapshot);
            allowedToMove |= scene.movedBy(gizmo);
        } else {
            gesture.start = *worldsNow;
            if (gizmo >= 0) {
                ++results.rotatePressesWithoutStart;
                checkRotatePressWithoutStart(gizmo, press);
                if (failed) {
                    return;
                }
            }
        }
        if (hasRelease && releaseAt > pressAt) {
            if (drag != NO_DRAG) {
                const Callback expected = endOf(drag);
                if (next >= heard.size() || heard[next].callback != expected) {
                    fail(std::string("the release of the ") + dragName(drag) + " drag on " +
                         gizmoText(gizmo) + ", which heard its Start in the same frame, heard " +
                         (next < heard.size() ? mxSoakListener::nameOf(heard[next].callback)
                                              : "nothing") +
                         " where exactly one " + mxSoakListener::nameOf(expected) + " was due");
                    return;
                }
                const Heard& end = heard[next++];
                if (!checkRelease(end, gesture.start, true)) {
                    return;
                }
            }
            gesture.open = false;
        }
    }

    if (announcedGizmos != takingPart) {
        fail("onGizmoManipulated announced gizmos " + gizmoSet(announcedGizmos) + " where " +
             gizmoSet(takingPart) + " took part in the frame's events");
        return;
    }
    if (next != heard.size()) {
        fail(std::string("the frame heard an unexpected ") +
             mxSoakListener::nameOf(heard[next].callback) + " (callback " +
             std::to_string(next + 1) + " of " + std::to_string(heard.size()) + ")");
        return;
    }
    checkObjectsAfterFrame(allowedToMove);
    if (hasRelease && (!hasPress || releaseAt > pressAt)) {
        // The release ends with a hover at its position: the gizmo found there stays active
        // until the next press, whatever the mouse does meanwhile.
        const Event& release = frameEvents[releaseAt];
        expectedActive = expectedHoverGizmo(release.x, release.y);
    }
}

bool mxSoakSession::checkRelease(const Heard& end, const std::vector<Transform>& start,
                                 bool lastInFrame) {
    checkEndShape(end, gesture.gizmo);
    if (failed) {
        return false;
    }
    if (end.snapshot < 0) {
        fail("too many callbacks in one frame to keep their copies");
        return false;
    }
    // As the release left the objects, and, when no later press of the frame moves them
    // again, as the frame left them.
    checkObjectsAtEnd(end.transformation, gesture.gizmo, start,
                      scene.editListener().snapshot(end.snapshot), lastInFrame, "the release");
    if (failed) {
        return false;
    }
    ++results.releasesChecked;
    if (!end.transformation.IsIdentity()) {
        ++results.dragsMoving[gesture.drag];
    }
    return true;
}

bool mxSoakSession::checkStrayRelease(int gizmo, std::size_t& next, std::uint32_t& allowedToMove) {
    const std::vector<Heard>& heard = scene.editListener().heard();
    // Its release operation: translate and scale always tell the End; rotate only with a
    // circle picked (the last hover over it may have picked one); other modes tell nothing.
    const mxGizmoNode::GizmoMode mode =
        gizmo >= 0 ? scene.getGizmo(gizmo).getMode() : mxGizmoNode::GIZMO_NONE;
    const bool due = mode == mxGizmoNode::GIZMO_TRANSLATE || mode == mxGizmoNode::GIZMO_SCALE;
    const bool allowed = due || mode == mxGizmoNode::GIZMO_ROTATE;
    const Callback expected = mode == mxGizmoNode::GIZMO_ROTATE  ? Callback::RotateEnd
                              : mode == mxGizmoNode::GIZMO_SCALE ? Callback::ScaleEnd
                                                                 : Callback::TranslateEnd;
    const bool heardEnd = allowed && next < heard.size() && heard[next].callback == expected;
    if (due && !heardEnd) {
        fail("a release without a press, with " + gizmoText(gizmo) +
             " left active by the last release, heard " +
             (next < heard.size() ? mxSoakListener::nameOf(heard[next].callback) : "nothing") +
             " where its " + mxSoakListener::nameOf(expected) + " was due");
        return false;
    }
    if (!heardEnd) {
        return true;
    }
    const Heard& end = heard[next++];
    ++results.strayEnds;
    checkEndShape(end, gizmo);
    if (failed) {
        return false;
    }
    const std::vector<mxSpatial*>& objects = scene.getObjects();
    bool moved = false;
    for (std::size_t o = 0; o < objects.size(); ++o) {
        if ((scene.movedBy(gizmo) >> o & 1u) != 0 &&
            (!sameBits(objects[o]->getWorldTransform(), worldsBefore[o]) ||
             !sameBits(objects[o]->getLocalTransform(), localsBefore[o]))) {
            moved = true;
        }
    }
    if (!moved) {
        return true;
    }
    // The release's last move replays the gizmo's last drag from the state its last press
    // stored, to where the mouse now is.
    ++results.strayEndsMovingObjects;
    if (results.firstStrayEndMovingObjects == 0) {
        results.firstStrayEndMovingObjects = results.events;
    }
    if (!pressRecorded[static_cast<std::size_t>(gizmo)]) {
        fail("a release without a press moved objects of " + gizmoText(gizmo) +
             ", which no press has ever taken hold of");
        return false;
    }
    if (end.snapshot < 0) {
        fail("too many callbacks in one frame to keep their copies");
        return false;
    }
    checkObjectsAtEnd(end.transformation, gizmo, worldsAtLastPress[static_cast<std::size_t>(gizmo)],
                      scene.editListener().snapshot(end.snapshot), true,
                      "a release without a press");
    allowedToMove |= scene.movedBy(gizmo);
    return !failed;
}

bool mxSoakSession::checkStarts(int gizmo, const Event& press,
                                const std::vector<Transform>& worldsAtPress, std::size_t& next,
                                Drag& drag) {
    const std::vector<Heard>& heard = scene.editListener().heard();
    if (gizmo < 0) {
        // No gizmo picked: no Start (a leftover Start fails the frame's last check).
        drag = NO_DRAG;
        return true;
    }
    const mxGizmoNode::GizmoMode mode = scene.getGizmo(gizmo).getMode();
    const std::size_t first = next;
    auto heardAt = [&heard, first](std::size_t i, Callback callback) {
        return first + i < heard.size() && heard[first + i].callback == callback;
    };
    switch (mode) {
    case mxGizmoNode::GIZMO_TRANSLATE:
        if (!heardAt(0, Callback::TranslateStart)) {
            fail("the press on " + gizmoText(gizmo) +
                 " did not hear onTranslateManipulatorStart first");
            return false;
        }
        next = first + 1;
        drag = TRANSLATE;
        break;
    case mxGizmoNode::GIZMO_SCALE:
        // A scale press announces a translate start, then the scale start.
        if (!heardAt(0, Callback::TranslateStart) || !heardAt(1, Callback::ScaleStart)) {
            fail("the press on " + gizmoText(gizmo) +
                 " did not hear onTranslateManipulatorStart then onScaleManipulatorStart");
            return false;
        }
        next = first + 2;
        drag = SCALE;
        break;
    case mxGizmoNode::GIZMO_ROTATE:
        // A press on the gizmo's centre, or along the circle's plane, starts nothing.
        if (heardAt(0, Callback::RotateStart)) {
            next = first + 1;
            drag = ROTATE;
        } else {
            drag = NO_DRAG;
        }
        break;
    default:
        fail("the press picked " + gizmoText(gizmo) + ", whose mode the controller passes over");
        return false;
    }
    if (drag == TRANSLATE || drag == SCALE) {
        // The handle under the mouse: the scale gizmo is picked exactly as the translate one.
        bool exactTie = false;
        const int expected = expectedAxisPick(gizmo, press.x, press.y, exactTie);
        const int picked = heard[first].pickedAxes[gizmo];
        // A translate press that meets neither plane through the axis drops its pick before
        // the Start: nothing to compare then.
        if (expected != -2 && picked >= 0) {
            if (picked != expected) {
                fail("the press on " + gizmoText(gizmo) + " picked axis " + std::to_string(picked) +
                     " where the nearest axis within " + "10 pixels (ties to the later axis) is " +
                     std::to_string(expected));
                return false;
            }
            ++results.picksChecked;
            if (exactTie) {
                ++results.pickTiesChecked;
            }
        }
    }
    // At its Start the objects stand where the events before the press left them.
    const std::vector<mxSpatial*>& objects = scene.getObjects();
    for (std::size_t i = first; i < next; ++i) {
        if (heard[i].snapshot < 0) {
            fail("too many Start callbacks to keep their copies");
            return false;
        }
        const std::vector<Transform>& copy = scene.editListener().snapshot(heard[i].snapshot);
        for (std::size_t o = 0; o < objects.size(); ++o) {
            if (!sameBits(copy[o], worldsAtPress[o])) {
                fail(std::string("at ") + mxSoakListener::nameOf(heard[i].callback) + " object " +
                     std::to_string(o) + " (" + scene.describeObject(o) +
                     ") had already moved: world " + describe(copy[o]) + ", before the press " +
                     describe(worldsAtPress[o]));
                return false;
            }
        }
    }
    return true;
}

int mxSoakSession::expectedAxisPick(int gizmo, int x, int y, bool& exactTie) const {
    // The hover over translate arrows (and scale axes: the same code): of the enabled axes,
    // the one whose screen segment, from the projected centre to the projected unit tip, lies
    // nearest the mouse, when within the pick tolerance of 10 pixels (the tolerance itself
    // accepted); a tie goes to the later axis; -1 for none. Worked out in double from the
    // gizmo as the press found it. -2 when float rounding could decide: a distance within 1e-3
    // pixel of the tolerance or of another one, except for the exact ties where the mouse lies
    // before the centre end of both segments, both distances then being the distance to the
    // centre, bit for bit.
    constexpr double csTolerance = 10.0;
    constexpr double csMargin = 1e-3;
    const mxGizmoNode& node = scene.getGizmo(gizmo);
    const Transform& world = gizmoWorldsBefore[static_cast<std::size_t>(gizmo)];
    const float* m = scene.getCamera().getViewProjectionMatrix();
    bool behind = false;
    auto project = [&](const Vector& local, double& px, double& py) {
        const Vector w = world.ApplyForward(local, true);
        const double cx = m[0] * w.X() + m[4] * w.Y() + m[8] * w.Z() + m[12];
        const double cy = m[1] * w.X() + m[5] * w.Y() + m[9] * w.Z() + m[13];
        const double cw = m[3] * w.X() + m[7] * w.Y() + m[11] * w.Z() + m[15];
        behind = behind || !(cw > 1e-6);
        px = (cx / cw + 1.0) * 0.5 * csWidth;
        py = (cy / cw + 1.0) * 0.5 * csHeight;
    };
    // The mouse in pixels from the lower left, from the same floats as the controller's.
    const float nx = (static_cast<float>(x) + 0.5f) / static_cast<float>(csWidth);
    const float ny = (static_cast<float>(static_cast<std::int64_t>(csHeight) - y) - 0.5f) /
                     static_cast<float>(csHeight);
    const double mouseX = static_cast<float>(csWidth) * nx;
    const double mouseY = static_cast<float>(csHeight) * ny;
    double ax = 0.0;
    double ay = 0.0;
    project(Vector(0.0f, 0.0f, 0.0f), ax, ay);
    const unsigned char mask = node.getEnabledAxis(node.getMode());
    double distances[3] = {0.0, 0.0, 0.0};
    bool beforeCentre[3] = {false, false, false};
    bool clearCase[3] = {true, true, true};
    for (int axis = 0; axis < 3; ++axis) {
        Vector tip(0.0f, 0.0f, 0.0f);
        tip[axis] = 1.0f;
        double bx = 0.0;
        double by = 0.0;
        project(tip, bx, by);
        const double dx = mouseX - ax, dy = mouseY - ay;
        const double ex = bx - ax, ey = by - ay;
        const double length = std::sqrt(ex * ex + ey * ey);
        const double alongFromCentre = dx * ex + dy * ey;
        const double alongToTip = (bx - mouseX) * ex + (by - mouseY) * ey;
        const double scale = (std::sqrt(dx * dx + dy * dy) + length + 1.0) * (length + 1e-30);
        clearCase[axis] = std::fabs(alongFromCentre) > 1e-6 * scale &&
                          std::fabs(alongToTip) > 1e-6 * scale && length > 1e-3;
        if (alongFromCentre <= 0.0) {
            beforeCentre[axis] = true;
            distances[axis] = std::sqrt(dx * dx + dy * dy);
        } else if (alongToTip <= 0.0) {
            distances[axis] =
                std::sqrt((mouseX - bx) * (mouseX - bx) + (mouseY - by) * (mouseY - by));
        } else {
            distances[axis] = std::fabs(dx * ey - dy * ex) / length;
        }
    }
    if (behind) {
        return -2;
    }
    int best = -1;
    double bestDistance = csTolerance;
    exactTie = false;
    for (int axis = 0; axis < 3; ++axis) {
        if ((mask >> axis & 1u) == 0) {
            continue;
        }
        if (std::fabs(distances[axis] - csTolerance) < csMargin) {
            return -2;
        }
        if (bestDistance >= distances[axis]) {
            bestDistance = distances[axis];
            best = axis;
        }
        for (int other = 0; other < axis; ++other) {
            if ((mask >> other & 1u) == 0 ||
                std::min(distances[axis], distances[other]) > csTolerance + csMargin ||
                std::fabs(distances[axis] - distances[other]) >= csMargin) {
                continue;
            }
            const bool sameDistance =
                beforeCentre[axis] && beforeCentre[other] && clearCase[axis] && clearCase[other];
            if (!sameDistance) {
                return -2;
            }
            exactTie = true;
        }
    }
    return best;
}

int mxSoakSession::expectedHoverGizmo(int x, int y) const {
    // The controller's hover walks its gizmos in order, passes over those without a mode and
    // stops at the first with a handle under the mouse. Circles are not worked out here: a
    // rotate gizmo on the way leaves the answer open (-2).
    for (const mxGizmoNode* node : scene.getController().get3DManipulators()) {
        const int gizmo = scene.indexOf(node);
        if (gizmo < 0) {
            return -2;
        }
        const mxGizmoNode::GizmoMode mode = node->getMode();
        if (mode == mxGizmoNode::GIZMO_ROTATE) {
            return -2;
        }
        if (mode != mxGizmoNode::GIZMO_TRANSLATE && mode != mxGizmoNode::GIZMO_SCALE) {
            continue;
        }
        bool exactTie = false;
        const int axis = expectedAxisPick(gizmo, x, y, exactTie);
        if (axis != -1) {
            return axis >= 0 ? gizmo : -2;
        }
    }
    return -1;
}

void mxSoakSession::checkRotatePressWithoutStart(int gizmo, const Event& press) {
    // A press on a circle starts no drag in two cases only: it lies within 1.6 pixels of the
    // gizmo's centre on both axes (no angle can be measured there), or its pick ray runs along
    // the circle's plane (an orthographic view of a circle seen edge-on), so that it meets no
    // point of it. Which circle was picked is not known here: any of the three will do. The
    // gizmo stood where the frame before placed it: this frame placed it anew after the press.
    const Vector& position = gizmoLocalsBefore[static_cast<std::size_t>(gizmo)].GetTranslate();
    const Wm4::Matrix3<float>& rotation =
        gizmoWorldsBefore[static_cast<std::size_t>(gizmo)].GetRotate();
    // The mouse as the controller reads it: the pixel's centre, from the lower left.
    const double mouseX = press.x + 0.5;
    const double mouseY = (csHeight - press.y) - 0.5;
    double centreX = 0.0;
    double centreY = 0.0;
    // A little over 1.6 pixels: the library projects in float.
    constexpr double csCentrePixels = 1.6 + 0.01;
    if (scene.screenPointOf(position, centreX, centreY) &&
        std::fabs(centreX - mouseX) < csCentrePixels &&
        std::fabs(centreY - mouseY) < csCentrePixels) {
        return;
    }
    Vector origin;
    Vector direction;
    const float x = (static_cast<float>(press.x) + 0.5f) / static_cast<float>(csWidth);
    const float y = (static_cast<float>(csHeight - press.y) - 0.5f) / static_cast<float>(csHeight);
    if (!scene.getCamera().getPickRay(x, y, origin, direction)) {
        fail("the press at (" + std::to_string(press.x) + ", " + std::to_string(press.y) +
             ") lies outside the view");
        return;
    }
    // Wild Magic counts a ray as parallel below 1e-6; far more room than that here.
    constexpr double csAlongPlane = 1e-4;
    double leastFacing = 1.0;
    for (int axis = 0; axis < 3; ++axis) {
        Vector normal(rotation(0, axis), rotation(1, axis), rotation(2, axis));
        normal.Normalize();
        leastFacing = std::min(leastFacing, std::fabs(static_cast<double>(normal.Dot(direction))));
    }
    if (leastFacing >= csAlongPlane) {
        double distance = 0.0;
        if (scene.screenPointOf(position, centreX, centreY)) {
            distance = std::max(std::fabs(centreX - mouseX), std::fabs(centreY - mouseY));
        }
        fail("the press on " + gizmoText(gizmo) + " picked a circle but heard no " +
             "onRotateManipulatorStart, though it lies " + std::to_string(distance) +
             " pixels off the centre and its ray meets every circle's plane (least |n.d| " +
             std::to_string(leastFacing) + ")");
    }
}

void mxSoakSession::checkEndShape(const Heard& end, int gizmo) {
    const Transform& t = end.transformation;
    // Spelled out only on failure: a frame builds no strings.
    auto what = [&](const char* shape) {
        return std::string(mxSoakListener::nameOf(end.callback)) + " of " + gizmoText(gizmo) +
               " passed " + describe(t) + ", which is not " + shape;
    };
    if (!isFinite(t)) {
        fail(what("finite"));
        return;
    }
    const Wm4::Matrix3<float>& m = t.GetMatrix();
    const Vector& scale = t.GetScale();
    const bool unitScale =
        sameBits(scale.X(), 1.0f) && sameBits(scale.Y(), 1.0f) && sameBits(scale.Z(), 1.0f);
    bool identityMatrix = true;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            identityMatrix = identityMatrix && sameBits(m(r, c), r == c ? 1.0f : 0.0f);
        }
    }
    switch (end.callback) {
    case Callback::TranslateEnd:
        if (!t.IsRSMatrix() || !identityMatrix || !unitScale) {
            fail(what("a pure translation"));
        }
        break;
    case Callback::RotateEnd: {
        if (!t.IsRSMatrix() || !unitScale) {
            fail(what("a rotation without scale"));
            return;
        }
        // Orthonormal and proper, and turning by a multiple of 5 degrees.
        const Wm4::Matrix3<float> product = m.TransposeTimes(m);
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                if (!(std::fabs(product(r, c) - (r == c ? 1.0 : 0.0)) <= csShapeTolerance)) {
                    fail(what("orthonormal"));
                    return;
                }
            }
        }
        if (!(m.Determinant() > 0.0f)) {
            fail(what("a proper rotation"));
            return;
        }
        const double cosine =
            std::clamp((static_cast<double>(m(0, 0)) + m(1, 1) + m(2, 2) - 1.0) * 0.5, -1.0, 1.0);
        const double angle = std::acos(cosine);
        const double step = csPi / 36.0;
        if (!(std::fabs(angle - std::round(angle / step) * step) <= csAngleTolerance)) {
            fail(what(("a turn by a multiple of 5 degrees (it turns by " +
                       std::to_string(angle * 180.0 / csPi) + " degrees)")
                          .c_str()));
        }
        break;
    }
    case Callback::ScaleEnd:
        if (t.IsRSMatrix()) {
            if (!identityMatrix || !(scale.X() > 0.0f && scale.Y() > 0.0f && scale.Z() > 0.0f)) {
                fail(what("a scaling by positive factors along the axes"));
            }
        } else {
            // frame * diag(factors) * frame^T: symmetric, and positive on the diagonal.
            const double magnitude = 1.0 + largestEntry(t);
            for (int r = 0; r < 3; ++r) {
                if (!(m(r, r) > 0.0f)) {
                    fail(what("a scaling by positive factors"));
                    return;
                }
                for (int c = r + 1; c < 3; ++c) {
                    if (!(std::fabs(static_cast<double>(m(r, c)) - m(c, r)) <=
                          csShapeTolerance * magnitude)) {
                        fail(what("symmetric, as a scaling along a frame is"));
                        return;
                    }
                }
            }
        }
        break;
    default:
        break;
    }
}

void mxSoakSession::checkObjectsAtEnd(const Transform& end, int gizmo,
                                      const std::vector<Transform>& start,
                                      const std::vector<Transform>& atEnd, bool alsoNow,
                                      const char* what) {
    const std::vector<mxSpatial*>& objects = scene.getObjects();
    for (std::size_t o = 0; o < objects.size(); ++o) {
        if ((scene.movedBy(gizmo) >> o & 1u) == 0) {
            continue;
        }
        Transform expected;
        expected.Product(end, start[o]);
        for (int pass = 0; pass < (alsoNow ? 2 : 1); ++pass) {
            const Transform& actual = pass == 0 ? atEnd[o] : objects[o]->getWorldTransform();
            const double error = relativeError(actual, expected);
            results.largestEndError = std::max(results.largestEndError, error);
            if (!(error <= csWorldTolerance)) {
                std::ostringstream out;
                out << what << " of the drag on " << gizmoText(gizmo) << " left object " << o
                    << " (" << scene.describeObject(o) << ") at world " << describe(actual)
                    << (pass == 0 ? " when its End came" : " after the frame")
                    << "; expected End * (world at press) = " << describe(expected) << " with End "
                    << describe(end) << " and world at press " << describe(start[o])
                    << "; relative error " << error << " > " << csWorldTolerance;
                fail(out.str());
                return;
            }
        }
    }
}

void mxSoakSession::checkObjectsAfterFrame(std::uint32_t allowedToMove) {
    const std::vector<mxSpatial*>& objects = scene.getObjects();
    for (std::size_t o = 0; o < objects.size(); ++o) {
        const mxSpatial& object = *objects[o];
        const Transform& world = object.getWorldTransform();
        const Transform& local = object.getLocalTransform();
        // Spelled out only on failure: a frame builds no strings.
        auto name = [&]() {
            return "object " + std::to_string(o) + " (" + scene.describeObject(o) + ")";
        };
        if (!isFinite(world) || !isFinite(local)) {
            fail(name() + " is no longer finite: world " + describe(world) + ", local " +
                 describe(local));
            return;
        }
        if (scene.isExcluded(o)) {
            if (!sameBits(world, scene.getInitialWorld(o)) ||
                !sameBits(local, scene.getInitialLocal(o))) {
                fail(name() + ", excluded from drags, changed: world " + describe(world) +
                     ", expected bit for bit " + describe(scene.getInitialWorld(o)) + "; local " +
                     describe(local) + ", expected " + describe(scene.getInitialLocal(o)));
                return;
            }
        } else if ((allowedToMove >> o & 1u) == 0 &&
                   (!sameBits(world, worldsBefore[o]) || !sameBits(local, localsBefore[o]))) {
            fail(name() + " moved in a frame where no drag of a gizmo holding it ran: world " +
                 describe(world) + ", before the frame " + describe(worldsBefore[o]));
            return;
        }
        // A full update would recompute the world as parent * local: it must land where the
        // drag put it, up to rounding.
        Transform recomputed = local;
        double parentMagnitude = 0.0;
        if (const mxNode* parent = object.getParent()) {
            recomputed.Product(parent->getWorldTransform(), local);
            parentMagnitude = largestEntry(parent->getWorldTransform());
        }
        const double error = relativeError(world, recomputed, parentMagnitude);
        results.largestLocalError = std::max(results.largestLocalError, error);
        if (!(error <= csWorldTolerance)) {
            fail(name() + ": parent world * local = " + describe(recomputed) +
                 " is not its world " + describe(world) + " (relative error " +
                 std::to_string(error) + ")");
            return;
        }
    }
    // The child of the node object follows it.
    const mxSpatial& follower = scene.getFollower();
    Transform recomputed;
    recomputed.Product(follower.getParent()->getWorldTransform(), follower.getLocalTransform());
    const double error = relativeError(follower.getWorldTransform(), recomputed,
                                       largestEntry(follower.getParent()->getWorldTransform()));
    results.largestLocalError = std::max(results.largestLocalError, error);
    if (!(error <= csWorldTolerance)) {
        fail("the child of the node object did not follow it: world " +
             describe(follower.getWorldTransform()) + ", node world * local " +
             describe(recomputed));
        return;
    }
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        if (scene.isAttached(g) && !isFinite(scene.getGizmo(g).getWorldTransform())) {
            fail(gizmoText(g) + " was placed at a transformation that is not finite: " +
                 describe(scene.getGizmo(g).getWorldTransform()));
            return;
        }
    }
}

void mxSoakSession::fail(const std::string& what) {
    if (failed) {
        return;
    }
    failed = true;
    std::ostringstream out;
    out << where() << ": " << what;
    failureText = out.str();
}

std::string mxSoakSession::where() const {
    std::ostringstream out;
    out << "event " << results.events << " (frame " << results.frames << ", "
        << (scene.isPerspective() ? "perspective" : "orthographic") << " view, orientation "
        << static_cast<int>(scene.getController().getOrientationReference()) << ")";
    if (!frameEvents.empty()) {
        out << ", the frame's events:";
        for (const Event& event : frameEvents) {
            out << (event.kind == EventKind::PRESS  ? " press"
                    : event.kind == EventKind::MOVE ? " move"
                                                    : " release")
                << "(" << event.x << ", " << event.y << (event.buttonDown ? ", button down" : "")
                << ")";
        }
    }
    return out.str();
}

std::string mxSoakSession::gizmoSet(std::uint32_t gizmos) const {
    std::string text = "{";
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        if ((gizmos >> g & 1u) != 0) {
            text += (text.size() > 1 ? ", " : "") + gizmoText(g);
        }
    }
    return text + "}";
}

int mxSoakSession::lowestGizmo(std::uint32_t gizmos) {
    for (int g = 0; g < mxSoakScene::csGizmoCount; ++g) {
        if ((gizmos >> g & 1u) != 0) {
            return g;
        }
    }
    return -1;
}

std::string mxSoakSession::gizmoText(int gizmo) const {
    if (gizmo < 0) {
        return "no gizmo";
    }
    return "gizmo " + std::to_string(gizmo) + " (" + modeName(scene.getGizmo(gizmo).getMode()) +
           " mode)";
}

mxSoakSession::Memory mxSoakSession::measureMemory() {
    Memory memory;
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.compare(0, 6, "VmHWM:") == 0) {
            // "VmHWM:    12345 kB"
            memory.peakResidentBytes = std::stoull(line.substr(6)) * 1024u;
            break;
        }
    }
    const struct mallinfo2 heap = mallinfo2();
    memory.heapInUseBytes = heap.uordblks;
    return memory;
}

} // namespace mx::soak
