#include "mxScene.h"

namespace mx {

const mxRtti mxScene::TYPE("mxCore.mxScene", &mxNode::TYPE);

mxScene::mxScene() = default;

mxScene::~mxScene() = default;

const mxRtti& mxScene::GetType() const { return TYPE; }

} // namespace mx
