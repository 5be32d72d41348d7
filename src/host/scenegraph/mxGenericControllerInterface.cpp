#include "mxGenericControllerInterface.h"

namespace mx {

mxGenericControllerInterface::~mxGenericControllerInterface() = default;

void mxGenericControllerInterface::beforeDraw(mxGenericRenderingContext*) {}

void mxGenericControllerInterface::clearController() {}

void mxGenericControllerInterface::newPipeline() {}

void mxGenericControllerInterface::setVisibleProducter(std::vector<mxVisibleSetProducer*>&) {}

void mxGenericControllerInterface::setControllerEnabled(bool) {}

} // namespace mx
