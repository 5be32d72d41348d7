// mxRenderableSpatial: a spatial that a renderer draws (the base of every geometry).
#pragma once

#include "mxSpatial.h"

namespace mx {

class mxRenderableSpatial : public mxSpatial {
public:
    static const mxRtti TYPE;

    ~mxRenderableSpatial() override;
    const mxRtti& GetType() const override;

protected:
    mxRenderableSpatial();
};

} // namespace mx
