// mxGenericControllerInterface: a controller the engine runs. updateController is called
// once per frame, in the order the controllers were attached; beforeDraw before each
// rendering; clearController when the engine resets its controllers. The other operations
// have empty default bodies.
#pragma once

#include <vector>

namespace mx {

class mxGenericRenderingContext;
class mxVisibleSetProducer;

class mxGenericControllerInterface {
public:
    virtual ~mxGenericControllerInterface();
    virtual void updateController(mxGenericRenderingContext* context) = 0;
    virtual void beforeDraw(mxGenericRenderingContext* context);
    virtual void clearController();
    virtual void newPipeline();
    virtual void setVisibleProducter(std::vector<mxVisibleSetProducer*>& producers);
    virtual void setControllerEnabled(bool enabled);
};

} // namespace mx
