// mxGenericRenderingContext: what the engine hands its controllers each frame.
#pragma once

namespace mx {

class mxEngineInterface;

class mxGenericRenderingContext {
public:
    explicit mxGenericRenderingContext(mxEngineInterface* engine) : engine(engine) {}

    // The engine running the frame.
    mxEngineInterface* getEngine() const { return engine; }

private:
    mxEngineInterface* engine;
};

} // namespace mx
