#include "mxLogType.h"

namespace mx {

const char* mxLogTypeName(int type) {
    switch (type) {
    case MX_LOG_TRACE:
        return "trace";
    case MX_LOG_DEBUG:
        return "debug";
    case MX_LOG_INFO:
        return "info";
    case MX_LOG_NOTICE:
        return "notice";
    case MX_LOG_SUCCESS:
        return "success";
    case MX_LOG_WARNING:
        return "warning";
    case MX_LOG_ERROR:
        return "error";
    case MX_LOG_FATAL:
        return "fatal";
    default:
        return "log";
    }
}

} // namespace mx
