// mxSoakSession: plays a long random session of mouse events and engine frames against an
// mxSoakScene and checks, frame by frame, what the listeners hear and what becomes of the
// objects. An event is one public mouse call (setMousePressed, setMousePos, setMouseReleased)
// or one engine frame (mxEngine::updateFrame).
//
// The events come from a std::mt19937 seeded with the given seed, through fixed arithmetic of
// our own (no standard distributions, whose results differ between standard libraries), so a
// seed replays the same session. Two rules shape the frames, so that every callback and every
// announced gizmo can be traced to the event that made it: a frame replays at most one press
// and one release, and the press is its first event unless it follows the release that ends
// the gesture open when the frame began. Around them, any number of moves may be queued.
//
// What is checked after every frame (the rules are the gizmo controller's documented ones):
// - the gizmo and handle a press picks: the first gizmo, in the controller's order, with a
//   handle within 10 pixels, and on it the nearest axis, a tie going to the later axis (worked
//   out here for translate and scale gizmos; a rotate gizmo on the way leaves it open); the
//   answers of the public mouse calls;
// - the callbacks heard: a press on a translate handle is announced by
//   onTranslateManipulatorStart, on a scale handle by onTranslateManipulatorStart then
//   onScaleManipulatorStart, on a rotate circle by onRotateManipulatorStart unless the press
//   lies within 1.6 pixels of the gizmo's centre or its ray runs along the circle's plane; the
//   release of a drag that started is announced by exactly one End of its kind; a drag without
//   a Start hears no End; a second press before the release abandons the first drag without
//   an End; a release without a press is replayed against the gizmo that the last release
//   left under the mouse, if any, and then hears that gizmo's End (translate and scale
//   always, rotate only with a circle picked); onGizmoManipulated comes last, once for each
//   gizmo that took part, in ascending pointer order;
// - the objects: at the release, every moved reference object of the dragged gizmo has the
//   world transformation End * (its world at the press), when the End comes and after the
//   frame; a release without a press that moves objects puts them at End * (their world at
//   that gizmo's last press); excluded objects never change, bit for bit; no other object
//   changes; every object's world agrees with its parent's world times its local
//   transformation; nothing becomes infinite or NaN;
// - the Ends: a translation is a pure translation, a rotation turns by a multiple of 5
//   degrees, a scaling is a symmetric matrix with a positive diagonal.
#pragma once

#include "mxSoakScene.h"

#include "scenegraph/mxGenericTransformation.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace mx::soak {

class mxSoakSession {
public:
    // The kinds of drag, in the order of the report's counters.
    enum Drag { TRANSLATE = 0, ROTATE = 1, SCALE = 2, NO_DRAG = 3 };

    struct Memory {
        std::uint64_t peakResidentBytes = 0; // VmHWM of /proc/self/status
        std::uint64_t heapInUseBytes = 0;    // mallinfo2().uordblks
    };

    struct Report {
        std::uint64_t events = 0;
        std::uint64_t frames = 0;
        std::uint64_t presses = 0;
        std::uint64_t pressesOnGizmo = 0;
        std::uint64_t secondPresses = 0;
        // Presses replayed in the frame of the release before them.
        std::uint64_t pressesAfterRelease = 0;
        std::uint64_t moves = 0;
        std::uint64_t releases = 0;
        std::uint64_t strayReleases = 0;
        std::uint64_t dragsStarted[3] = {0, 0, 0};
        // Drags whose End was not the identity: the objects really moved.
        std::uint64_t dragsMoving[3] = {0, 0, 0};
        std::uint64_t rotatePressesWithoutStart = 0;
        // Presses on translate and scale handles whose picked axis was checked, and those of
        // them that had two axes exactly as near (the later one wins).
        std::uint64_t picksChecked = 0;
        // Presses, and releases without a press, whose gizmo was checked against the first
        // gizmo with a handle under the mouse (worked out when no rotate gizmo is in the way).
        std::uint64_t pressGizmosChecked = 0;
        std::uint64_t strayGizmosChecked = 0;
        std::uint64_t pickTiesChecked = 0;
        std::uint64_t dragsAbandoned = 0;
        std::uint64_t releasesChecked = 0;
        std::uint64_t strayEnds = 0;
        std::uint64_t strayEndsMovingObjects = 0;
        // The event whose frame first saw it, 0 for never.
        std::uint64_t firstStrayEndMovingObjects = 0;
        std::uint64_t modeChanges = 0;
        std::uint64_t orientationChanges = 0;
        std::uint64_t cameraChanges = 0;
        std::uint64_t projectionChanges = 0;
        std::uint64_t attachChanges = 0;
        std::uint64_t controllerResets = 0;
        std::uint64_t objectResets = 0;
        // Relative errors (see the tolerance in mxSoakSession.cpp).
        double largestEndError = 0.0;
        double largestLocalError = 0.0;
        Memory atTenPercent;
        Memory atEnd;
        double seconds = 0.0;
    };

    mxSoakSession(std::uint64_t events, std::uint32_t seed);

    // Plays the session; false at the first failed check (failure() says what failed).
    bool run();

    const Report& report() const { return results; }
    const std::string& failure() const { return failureText; }

    static Memory measureMemory();

private:
    enum class EventKind { PRESS, MOVE, RELEASE };
    struct Event {
        EventKind kind;
        int x;
        int y;
        // The button was down before this event (for a release: it ends a gesture).
        bool buttonDown;
        // What the public call answered.
        bool answer;
        // The gizmos are collected again by the frame that replays the event, so the answer
        // of a press was given against the list of the last frame.
        bool beforeCollection;
    };
    // The gesture that the last press began, as the checks follow it.
    struct Gesture {
        bool open = false;
        int gizmo = -1;
        Drag drag = NO_DRAG;
        std::vector<mxGenericTransformation<float>> start;
    };

    // The random source.
    std::uint32_t nextRandom();
    int uniformInt(int low, int high);
    double uniform01();
    double uniformReal(double low, double high);
    bool chance(double probability);

    // Events.
    void step();
    void pressButton();
    void moveMouse();
    void releaseButton();
    void runFrame();
    void countEvent();
    void betweenDrags();

    // Where the mouse goes.
    bool handlePixel(int gizmo, int axis, double along, int& x, int& y) const;
    void aimedPressPixel(int& x, int& y);
    void dragPixel(int& x, int& y);
    void hoverPixel(int& x, int& y);
    void releasePixel(int& x, int& y);
    void randomViewPixel(int& x, int& y);
    void outsidePixel(int& x, int& y);
    void farPixel(int& x, int& y);
    void nearPixel(int& x, int& y, int spread);

    // Checks.
    void checkFrame();
    bool checkStarts(int gizmo, const Event& press,
                     const std::vector<mxGenericTransformation<float>>& worldsAtPress,
                     std::size_t& next, Drag& drag);
    int expectedAxisPick(int gizmo, int x, int y, bool& exactTie) const;
    int expectedHoverGizmo(int x, int y) const;
    bool checkRelease(const mxSoakListener::Heard& end,
                      const std::vector<mxGenericTransformation<float>>& start, bool lastInFrame);
    bool checkStrayRelease(int gizmo, std::size_t& next, std::uint32_t& allowedToMove);
    void checkRotatePressWithoutStart(int gizmo, const Event& press);
    void checkEndShape(const mxSoakListener::Heard& end, int gizmo);
    // Every moved reference object of the gizmo at End * (its world at press): in atEnd (the
    // copy taken at the End) and, with alsoNow, as it stands now.
    void checkObjectsAtEnd(const mxGenericTransformation<float>& end, int gizmo,
                           const std::vector<mxGenericTransformation<float>>& start,
                           const std::vector<mxGenericTransformation<float>>& atEnd, bool alsoNow,
                           const char* what);
    void checkObjectsAfterFrame(std::uint32_t allowedToMove);
    void fail(const std::string& what);
    std::string where() const;
    std::string gizmoText(int gizmo) const;
    std::string gizmoSet(std::uint32_t gizmos) const;
    static int lowestGizmo(std::uint32_t gizmos);

    std::uint64_t eventBudget;
    std::mt19937 random;
    mxSoakScene scene;
    Report results;
    std::string failureText;
    bool failed;
    bool tenPercentMeasured;

    // The mouse as the generator drives it.
    bool buttonDown;
    bool pressedOnGizmo;
    int mouseX;
    int mouseY;
    int aimedGizmo;
    int aimedAxis;
    bool frameHasRelease;
    // The frame's release ends a gesture (its button was down).
    bool frameReleaseEndsGesture;
    int framePresses;
    bool collectionPending;
    std::vector<Event> frameEvents;

    // What the checks follow between frames.
    Gesture gesture;
    // The gizmo that the last release left under the mouse (the controller's active gizmo
    // while no button is down): -1 for none, -2 when the hover could not be worked out.
    int expectedActive;
    std::vector<bool> pressRecorded;
    std::vector<std::vector<mxGenericTransformation<float>>> worldsAtLastPress;
    std::vector<mxGenericTransformation<float>> worldsBefore;
    std::vector<mxGenericTransformation<float>> localsBefore;
    // The gizmos as the frame's events find them: placed by the frame before.
    std::vector<mxGenericTransformation<float>> gizmoWorldsBefore;
    std::vector<mxGenericTransformation<float>> gizmoLocalsBefore;
};

} // namespace mx::soak
