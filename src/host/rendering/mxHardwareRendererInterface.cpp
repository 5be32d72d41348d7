#include "mxHardwareRendererInterface.h"

namespace mx {

mxHardwareRendererInterface::~mxHardwareRendererInterface() = default;

} // namespace mx
