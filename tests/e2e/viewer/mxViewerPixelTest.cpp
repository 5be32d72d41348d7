// The viewer's pictures: screenshots of scripts read back pixel by pixel. The gizmo's lines are
// unlit, drawn over everything and, in script mode, without multisampling, so a pixel on a
// line holds the line's colour. Where a line lies on screen is worked out from the camera the
// library used (the report's) and the gizmo's placement recorded with each mouse step.
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "e2e/viewer/mxViewerTestSupport.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QRgb>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace {

using namespace mx::test;
using mx::mxGizmoNode;
using Vec3d = Wm4::Vector3<double>;

// Each channel within 3/255 of the colour.
constexpr int csTolerance = 3;

// The translate gizmo on the sphere seen from above and in front, so that the X and Y arrows
// run across the view apart from each other. The mouse waits in a corner, far from the gizmo,
// for the first picture; then it hovers the middle of the X arrow's shaft (0.6 along it); then
// key 2 hides the Y arrow. The last step only moves the mouse onto the Y handle, after every
// picture, so that its record gives the handle's pixel.
struct TranslatePictures {
    int hoverX = 0;
    int ontoY = 0;
    ViewerRun run;

    TranslatePictures() {
        ScriptText script;
        script.add("{\"camera\": {\"eye\": [6, 6, 8], \"target\": [0, 0.75, 0]}}");
        script.add("{\"key\": \"G\"}");
        script.add("{\"select\": [\"sphere\"]}");
        script.add("{\"frames\": 1}");
        script.add("{\"move\": [5, 5]}");
        script.add("{\"frames\": 1}");
        script.add("{\"screenshot\": \"idle\"}");
        hoverX = script.add("{\"move\": \"translate.x\"}");
        script.add("{\"frames\": 1}");
        script.add("{\"screenshot\": \"hover-x\"}");
        script.add("{\"key\": \"2\"}");
        script.add("{\"frames\": 1}");
        script.add("{\"screenshot\": \"no-y\"}");
        ontoY = script.add("{\"move\": \"translate.y\"}");
        run = RunScript(script.json());
    }
};

const TranslatePictures& Translate() {
    static const TranslatePictures pictures;
    return pictures;
}

// The rotate gizmo on the sphere, seen straight along -z from in front of it: the circle about
// Z faces the eye, a true circle on screen, with only the two other circles (seen edge on)
// touching it. The first picture has the mouse in a corner; the second is taken while the Z
// circle is being dragged (pressed at 30 degrees, turned by 45), before the release.
struct RotatePictures {
    int press = 0;
    int move = 0;
    ViewerRun run;

    RotatePictures() {
        ScriptText script;
        script.add("{\"camera\": {\"eye\": [0, 0.75, 8], \"target\": [0, 0.75, 0]}}");
        script.add("{\"key\": \"E\"}");
        script.add("{\"key\": \"G\"}");
        script.add("{\"select\": [\"sphere\"]}");
        script.add("{\"frames\": 1}");
        script.add("{\"move\": [5, 5]}");
        script.add("{\"frames\": 1}");
        script.add("{\"screenshot\": \"circle\"}");
        press = script.add("{\"press\": {\"handle\": \"rotate.z\", \"angle\": 30}}");
        script.add("{\"frames\": 1}");
        move = script.add("{\"move\": {\"handle\": \"rotate.z\", \"angle\": 30, \"turn\": 45}}");
        script.add("{\"frames\": 1}");
        script.add("{\"screenshot\": \"dragged\"}");
        script.add("{\"release\": null}");
        script.add("{\"frames\": 1}");
        run = RunScript(script.json());
    }
};

const RotatePictures& Rotate() {
    static const RotatePictures pictures;
    return pictures;
}

std::string Describe(const QImage& image, const WindowPixel& pixel) {
    return "pixel (" + std::to_string(pixel.x) + ", " + std::to_string(pixel.y) + ") is " +
           DescribePixel(image.pixel(pixel.x, pixel.y));
}

// Success when run exited 0 and wrote the screenshot name, which image then holds.
::testing::AssertionResult Screenshot(const ViewerRun& run, const char* name, QImage& image) {
    if (run.exitCode != 0) {
        return ::testing::AssertionFailure() << run.describe();
    }
    image = run.screenshot(QString::fromUtf8(name));
    if (image.isNull()) {
        return ::testing::AssertionFailure() << "no screenshot " << name << ".png";
    }
    return ::testing::AssertionSuccess();
}

// Success when, in the screenshot name of run, the pixel the mouse step numbered step happened
// at holds color, each channel within csTolerance.
::testing::AssertionResult StepPixelShows(const ViewerRun& run, const char* name, int step,
                                          const Wm4::ColorRGB& color) {
    QImage image;
    ::testing::AssertionResult loaded = Screenshot(run, name, image);
    if (!loaded) {
        return loaded;
    }
    const WindowPixel pixel = PixelOfStep(StepRecord(run.report, step));
    if (!image.valid(pixel.x, pixel.y)) {
        return ::testing::AssertionFailure()
               << "pixel (" << pixel.x << ", " << pixel.y << ") lies outside the " << image.width()
               << " x " << image.height() << " screenshot " << name;
    }
    if (ChannelDistance(image.pixel(pixel.x, pixel.y), color) > csTolerance) {
        return ::testing::AssertionFailure()
               << Describe(image, pixel) << " in " << name << ", expected " << DescribeColor(color);
    }
    return ::testing::AssertionSuccess();
}

// ---------------------------------------------------------------------------------------------
// Hover

TEST(mxViewerPixelTest, TranslateHandleStepLandsSixTenthsAlongTheShaftOnTheNearestPixel) {
    const TranslatePictures& pictures = Translate();
    ASSERT_EQ(pictures.run.exitCode, 0) << pictures.run.describe();
    const QJsonObject record = StepRecord(pictures.run.report, pictures.hoverX);
    const ReportTransform gizmo = GizmoOfStep(record);
    const Vec3d expected = gizmo.gizmoPoint(Vec3d(0.6, 0.0, 0.0));
    const Vec3d world = VectorOf(record.value(QStringLiteral("world")));
    EXPECT_LE((world - expected).Length(), 1e-5 * gizmo.unit());

    // The pixel whose centre lies nearest the point's projection, as the library reads it.
    const mx::mxPointer<mx::mxCamera> camera = CameraOf(pictures.run.report);
    const int height = ViewportHeight(pictures.run.report);
    const Wm4::Vector2<float> projected =
        PixelOf(*camera, ToFloat(expected), ViewportWidth(pictures.run.report), height);
    const WindowPixel pixel = PixelOfStep(record);
    EXPECT_LE(std::fabs(pixel.x + 0.5 - projected.X()), 0.5 + 1e-3);
    EXPECT_LE(std::fabs(height - pixel.y - 0.5 - projected.Y()), 0.5 + 1e-3);
}

TEST(mxViewerPixelTest, MiddleOfTheXShaftShowsTheNormalXColourBeforeAnyHover) {
    const TranslatePictures& pictures = Translate();
    EXPECT_TRUE(StepPixelShows(pictures.run, "idle", pictures.hoverX, mxGizmoNode::csColors[0]));
}

TEST(mxViewerPixelTest, MiddleOfTheXShaftShowsTheHoveredXShadeAfterTheMouseMovesThereAndAFrame) {
    const TranslatePictures& pictures = Translate();
    EXPECT_TRUE(StepPixelShows(pictures.run, "hover-x", pictures.hoverX,
                               mxGizmoNode::csColorsHighlight[0]));
}

// ---------------------------------------------------------------------------------------------
// Axis mask

TEST(mxViewerPixelTest, YArrowShowsItsNormalColourBeforeItsMaskBitIsCleared) {
    const TranslatePictures& pictures = Translate();
    EXPECT_TRUE(StepPixelShows(pictures.run, "idle", pictures.ontoY, mxGizmoNode::csColors[1]));
}

TEST(mxViewerPixelTest, KeyTwoHidesTheYArrowWithinTwoPixelsOfItsHandle) {
    const TranslatePictures& pictures = Translate();
    QImage hidden;
    ASSERT_TRUE(Screenshot(pictures.run, "no-y", hidden));
    const WindowPixel pixel = PixelOfStep(StepRecord(pictures.run.report, pictures.ontoY));

    for (const Wm4::ColorRGB& color :
         {mxGizmoNode::csColors[1], mxGizmoNode::csColorsHighlight[1]}) {
        EXPECT_GT(NearestDistance(hidden, pixel.x, pixel.y, 2, color), csTolerance)
            << "the Y arrow's colour " << DescribeColor(color) << " near "
            << Describe(hidden, pixel);
    }
    // The X arrow is still there, hovered.
    EXPECT_TRUE(
        StepPixelShows(pictures.run, "no-y", pictures.hoverX, mxGizmoNode::csColorsHighlight[0]));
}

TEST(mxViewerPixelTest, KeyTwoClearsOnlyBitOneOfTheTranslateMask) {
    const TranslatePictures& pictures = Translate();
    ASSERT_EQ(pictures.run.exitCode, 0) << pictures.run.describe();
    const QJsonArray masks = pictures.run.report.value(QStringLiteral("gizmo"))
                                 .toObject()
                                 .value(QStringLiteral("axisMasks"))
                                 .toArray();
    ASSERT_EQ(masks.size(), 3);
    // A new gizmo enables every bit (0xFF); the key flips bit 1 of the current mode's mask.
    EXPECT_EQ(masks.at(0).toInt(-1), 0xFD);
    EXPECT_EQ(masks.at(0).toInt(-1) & 0x07, 5);
    EXPECT_EQ(masks.at(1).toInt(-1), 0xFF);
    EXPECT_EQ(masks.at(2).toInt(-1), 0xFF);
}

// ---------------------------------------------------------------------------------------------
// The dragged circle

// How the circle about Z of the gizmo placed by gizmo looks in image, sampled at count angles
// from 0: '#' where the pixel nearest the projected point holds the normal Z colour, '+' the
// hovered shade, '.' anything else.
std::string CircleSamples(const QImage& image, const QJsonObject& report,
                          const ReportTransform& gizmo, int count) {
    const mx::mxPointer<mx::mxCamera> camera = CameraOf(report);
    const int width = ViewportWidth(report);
    const int height = ViewportHeight(report);
    std::string samples;
    for (int k = 0; k < count; ++k) {
        const double a = 2.0 * csPi * k / count;
        const Vec3d point = gizmo.gizmoPoint(Vec3d(std::cos(a), std::sin(a), 0.0));
        const WindowPixel pixel = WindowPixelOfPoint(*camera, point, width, height);
        if (!image.valid(pixel.x, pixel.y)) {
            samples += '?';
            continue;
        }
        const QRgb value = image.pixel(pixel.x, pixel.y);
        if (ChannelDistance(value, mxGizmoNode::csColors[2]) <= csTolerance) {
            samples += '#';
        } else if (ChannelDistance(value, mxGizmoNode::csColorsHighlight[2]) <= csTolerance) {
            samples += '+';
        } else {
            samples += '.';
        }
    }
    return samples;
}

// The runs of '.' around the closed circle (the first and last run join).
std::vector<int> Gaps(const std::string& samples) {
    std::vector<int> gaps;
    const std::size_t n = samples.size();
    // Start just after a sample on the circle, so that no gap is cut in two.
    std::size_t start = 0;
    while (start < n && samples[start] == '.') {
        ++start;
    }
    if (start == n) {
        return {static_cast<int>(n)};
    }
    int run = 0;
    for (std::size_t i = 1; i <= n; ++i) {
        if (samples[(start + i) % n] == '.') {
            ++run;
        } else if (run > 0) {
            gaps.push_back(run);
            run = 0;
        }
    }
    return gaps;
}

int Count(const std::string& samples, char c) {
    return static_cast<int>(std::count(samples.begin(), samples.end(), c));
}

// Success when run exited 0 and wrote the screenshot name, whose circle about Z, placed as the
// gizmo was at the mouse step numbered step, samples then holds (see CircleSamples, 256 angles).
::testing::AssertionResult ZCircleOf(const ViewerRun& run, const char* name, int step,
                                     std::string& samples) {
    QImage image;
    ::testing::AssertionResult loaded = Screenshot(run, name, image);
    if (loaded) {
        samples = CircleSamples(image, run.report, GizmoOfStep(StepRecord(run.report, step)), 256);
    }
    return loaded;
}

TEST(mxViewerPixelTest, UndraggedZCircleIsSolid) {
    const RotatePictures& pictures = Rotate();
    std::string samples;
    ASSERT_TRUE(ZCircleOf(pictures.run, "circle", pictures.press, samples));

    // In its normal colour all round; the circles seen edge on cross it at four points.
    EXPECT_GE(Count(samples, '#'), 240) << samples;
    EXPECT_EQ(Count(samples, '+'), 0) << samples;
    for (int gap : Gaps(samples)) {
        EXPECT_LE(gap, 2) << samples;
    }
}

TEST(mxViewerPixelTest, DraggedZCircleIsDashed) {
    const RotatePictures& pictures = Rotate();
    std::string samples;
    ASSERT_TRUE(ZCircleOf(pictures.run, "dragged", pictures.move, samples));

    const std::vector<int> gaps = Gaps(samples);
    EXPECT_GE(gaps.size(), 8u) << samples;
    // Dashes and gaps share the circle about evenly.
    const int on = Count(samples, '#') + Count(samples, '+');
    EXPECT_GT(on, 256 / 4) << samples;
    EXPECT_LT(on, 256 * 3 / 4) << samples;
}

TEST(mxViewerPixelTest, DraggedZCircleKeepsTheHoveredShade) {
    const RotatePictures& pictures = Rotate();
    std::string samples;
    ASSERT_TRUE(ZCircleOf(pictures.run, "dragged", pictures.move, samples));

    EXPECT_GT(Count(samples, '+'), 256 / 4) << samples;
    EXPECT_EQ(Count(samples, '#'), 0) << samples;
}

} // namespace
