#include "mxRenderableSpatial.h"

namespace mx {

const mxRtti mxRenderableSpatial::TYPE("mxCore.mxRenderableSpatial", &mxSpatial::TYPE);

mxRenderableSpatial::mxRenderableSpatial() = default;

mxRenderableSpatial::~mxRenderableSpatial() = default;

const mxRtti& mxRenderableSpatial::GetType() const { return TYPE; }

} // namespace mx
