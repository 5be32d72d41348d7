#include "mxRendererInterface.h"

namespace mx {

mxHardwareRendererInterface* mxRendererInterface::msHardwareRenderer = nullptr;

mxHardwareRendererInterface* mxRendererInterface::GetHardwareRenderer() {
    return msHardwareRenderer;
}

void mxRendererInterface::SetHardwareRenderer(mxHardwareRendererInterface* renderer) {
    msHardwareRenderer = renderer;
}

mxRendererInterface::~mxRendererInterface() = default;

} // namespace mx
