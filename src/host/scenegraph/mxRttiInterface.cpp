#include "mxRttiInterface.h"

namespace mx {

mxRttiInterface::~mxRttiInterface() = default;

} // namespace mx
