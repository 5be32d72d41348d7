// Severity of a log line. The numbers are part of the host contract: 5 is a warning.
#pragma once

namespace mx {

enum mxLogType {
    MX_LOG_TRACE = 0,
    MX_LOG_DEBUG = 1,
    MX_LOG_INFO = 2,
    MX_LOG_NOTICE = 3,
    MX_LOG_SUCCESS = 4,
    MX_LOG_WARNING = 5,
    MX_LOG_ERROR = 6,
    MX_LOG_FATAL = 7
};

// "trace", "debug", "info", "notice", "success", "warning", "error", "fatal"; "log" for any
// other value.
const char* mxLogTypeName(int type);

} // namespace mx
