#include "mxDescriptionInterface.h"

namespace mx {

mxDescriptionInterface::~mxDescriptionInterface() = default;

} // namespace mx
