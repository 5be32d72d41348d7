#include "mxLog.h"

#include <cstdio>

namespace mx {

namespace {
// The log behind mxLog::msInstance. Built by this library's load-time initialisers, before
// any library that links mxSystem runs its own.
mxLog processLog;
} // namespace

mxLog* mxLog::msInstance = &processLog;

mxLog::mxLog() : recentLineCapacity(csDefaultRecentLineCapacity), echoToStandardError(true) {}

std::string mxLog::formatLine(int type, const char* category, const char* origin,
                              const std::string& message) {
    std::string line = mxLogTypeName(type);
    line += ": ";
    if (category) {
        line += '[';
        line += category;
        line += "] ";
    }
    line += message;
    if (origin) {
        line += " (";
        line += origin;
        line += ')';
    }
    return line;
}

void mxLog::write(int type, const char* category, const char* origin,
                  const std::string& message) {
    const std::string line = formatLine(type, category, origin, message);
    std::lock_guard<std::mutex> lock(mutex);
    if (echoToStandardError) {
        std::fprintf(stderr, "%s\n", line.c_str());
    }
    if (recentLineCapacity == 0) {
        return;
    }
    if (recentLines.size() == recentLineCapacity) {
        recentLines.pop_front();
    }
    recentLines.push_back(line);
}

std::vector<std::string> mxLog::getRecentLines() const {
    std::lock_guard<std::mutex> lock(mutex);
    return std::vector<std::string>(recentLines.begin(), recentLines.end());
}

void mxLog::clearRecentLines() {
    std::lock_guard<std::mutex> lock(mutex);
    recentLines.clear();
}

std::size_t mxLog::getRecentLineCapacity() const {
    std::lock_guard<std::mutex> lock(mutex);
    return recentLineCapacity;
}

void mxLog::setRecentLineCapacity(std::size_t capacity) {
    std::lock_guard<std::mutex> lock(mutex);
    recentLineCapacity = capacity;
    while (recentLines.size() > recentLineCapacity) {
        recentLines.pop_front();
    }
}

bool mxLog::isEchoingToStandardError() const {
    std::lock_guard<std::mutex> lock(mutex);
    return echoToStandardError;
}

void mxLog::setEchoToStandardError(bool echo) {
    std::lock_guard<std::mutex> lock(mutex);
    echoToStandardError = echo;
}

} // namespace mx
