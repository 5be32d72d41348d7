// mxScene: the root node of a scene; the engine owns one.
#pragma once

#include "mxNode.h"

namespace mx {

class mxScene : public mxNode {
public:
    static const mxRtti TYPE;

    mxScene();
    ~mxScene() override;
    const mxRtti& GetType() const override;
};

} // namespace mx
