#include "controller/mx3DManipulatorMotionListener.h"

namespace mx {

mx3DManipulatorMotionListener::~mx3DManipulatorMotionListener() = default;

void mx3DManipulatorMotionListener::onTranslateManipulatorStart() {}

void mx3DManipulatorMotionListener::onTranslateManipulatorEnd(
    const mxGenericTransformation<float>&) {}

void mx3DManipulatorMotionListener::onRotateManipulatorStart() {}

void mx3DManipulatorMotionListener::onRotateManipulatorEnd(const mxGenericTransformation<float>&) {}

void mx3DManipulatorMotionListener::onScaleManipulatorStart() {}

void mx3DManipulatorMotionListener::onScaleManipulatorEnd(const mxGenericTransformation<float>&) {}

} // namespace mx
