#include "mxGizmoNodeRotate.h"

#include "wm4/Wm4Math.h"

#include <cmath>

namespace mx {

mxGizmoNodeRotate::mxGizmoNodeRotate() = default;

mxGizmoNodeRotate::~mxGizmoNodeRotate() = default;

void mxGizmoNodeRotate::build(mxGizmoNode* newOwner) {
    if (!newOwner) {
        return;
    }
    owner = newOwner;
    buildCircles();
    attachLines(circles, nullptr);
    highlightColor = Wm4::ColorRGBA::WHITE;
    setDefaultColors(true);
}

void mxGizmoNodeRotate::buildCircles() {
    resetLines(circles);
    for (mxPointer<mxLine>& circle : circles) {
        circle = new mxLine(csCirclePoints);
        circle->setDrawMethod(mxLine::DRAW_POLYLINE);
    }
    // The angle step is taken in double precision, 2 pi / 64, and so are cosine and sine.
    const double twoPi = Wm4::Math<double>::WM4_PI + Wm4::Math<double>::WM4_PI;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        mxLine& circle = *circles[axis];
        for (unsigned int k = 0; k < csCirclePoints; ++k) {
            const double angle = twoPi * 0.015625 * k;
            const float c = static_cast<float>(std::cos(angle));
            const float s = static_cast<float>(std::sin(angle));
            // Circle 0 turns about X from +Y, circle 1 about Y from +Z, circle 2 about Z
            // from +X.
            const Wm4::Vector3<float> points[3] = {Wm4::Vector3<float>(0.0f, c, s),
                                                   Wm4::Vector3<float>(s, 0.0f, c),
                                                   Wm4::Vector3<float>(c, s, 0.0f)};
            circle.setVertexPosition(k, points[axis]);
        }
        for (unsigned int k = 0; k < csCirclePoints; ++k) {
            circle.setIndex(k, k);
        }
        circle.setIndex(csCirclePoints - 1, 0);
    }
    finishLines(circles, 2.0f);
}

void mxGizmoNodeRotate::applyEnabledAxis(bool visible) {
    applyAxisCulling(circles, visible);
}

void mxGizmoNodeRotate::setDefaultColors(bool markDirty) {
    applyNormalColors(circles, nullptr, markDirty);
}

void mxGizmoNodeRotate::highlightAxis(unsigned int axis) {
    highlightLines(circles, nullptr, axis);
}

} // namespace mx
