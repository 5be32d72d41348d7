#include "mxLogCapture.h"

#include "system/mxLog.h"

namespace mx {
namespace test {

mxLogCapture::mxLogCapture() : wasEchoing(mxLog::msInstance->isEchoingToStandardError()) {
    mxLog::msInstance->clearRecentLines();
    mxLog::msInstance->setEchoToStandardError(false);
}

mxLogCapture::~mxLogCapture() {
    mxLog::msInstance->setEchoToStandardError(wasEchoing);
    mxLog::msInstance->clearRecentLines();
}

std::vector<std::string> mxLogCapture::lines() const {
    return mxLog::msInstance->getRecentLines();
}

void mxLogCapture::clear() { mxLog::msInstance->clearRecentLines(); }

} // namespace test
} // namespace mx
