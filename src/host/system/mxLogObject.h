// mxLogObject: one log line under construction. Build it, stream the message into it with
// <<, and the line is written to the log when the object is destroyed, typically at the end
// of the statement:
//
//     mxLogObject(MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, true) << "text";
//
// A null log, or enabled false, writes nothing.
#pragma once

#include "mxLog.h"

#include <sstream>
#include <string>

namespace mx {

class mxLogObject {
public:
    mxLogObject(int type, const char* category, mxLog* log, const char* origin, bool enabled);
    ~mxLogObject();
    mxLogObject(const mxLogObject&) = delete;
    mxLogObject& operator=(const mxLogObject&) = delete;

    // A null text appends nothing.
    mxLogObject& operator<<(const char* text);
    mxLogObject& operator<<(const std::string& text);
    mxLogObject& operator<<(char value);
    mxLogObject& operator<<(int value);
    mxLogObject& operator<<(unsigned int value);
    mxLogObject& operator<<(long value);
    mxLogObject& operator<<(unsigned long value);
    mxLogObject& operator<<(long long value);
    mxLogObject& operator<<(unsigned long long value);
    mxLogObject& operator<<(double value);
    mxLogObject& operator<<(bool value);
    mxLogObject& operator<<(const void* pointer);

    // The message streamed so far.
    std::string getMessage() const;

private:
    int type;
    std::string category;
    std::string origin;
    bool hasCategory;
    bool hasOrigin;
    mxLog* log;
    bool enabled;
    std::ostringstream message;
};

} // namespace mx
