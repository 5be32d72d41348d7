#include "mxEngineInterface.h"

namespace mx {

mxEngineInterface::mxEngineInterface() = default;

mxEngineInterface::~mxEngineInterface() = default;

} // namespace mx
