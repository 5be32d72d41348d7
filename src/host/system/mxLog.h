// mxLog: the process log. Each line is written to standard error (unless switched off) and
// kept in a bounded memory of recent lines, which tests and tools read back.
//
// A line reads "<type>: <message>", with "[category] " before the message and " (origin)"
// after it when those are given; for example "warning: The gizmo must have an RS matrix (...)".
// All operations are safe to call from several threads.
#pragma once

#include "mxLogType.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace mx {

class mxLog {
public:
    // The process log, never null; lives as long as the mxSystem library.
    static mxLog* msInstance;

    // How many recent lines a new log keeps.
    static constexpr std::size_t csDefaultRecentLineCapacity = 256;

    mxLog();
    mxLog(const mxLog&) = delete;
    mxLog& operator=(const mxLog&) = delete;

    // Writes one line. category and origin may be null (left out of the line).
    void write(int type, const char* category, const char* origin, const std::string& message);

    // The most recent lines, oldest first, at most getRecentLineCapacity() of them.
    std::vector<std::string> getRecentLines() const;
    void clearRecentLines();
    std::size_t getRecentLineCapacity() const;
    // A capacity of 0 keeps no line; shrinking drops the oldest lines.
    void setRecentLineCapacity(std::size_t capacity);

    // Whether lines also go to standard error (true by default).
    bool isEchoingToStandardError() const;
    void setEchoToStandardError(bool echo);

    // The text of a line as write() forms it.
    static std::string formatLine(int type, const char* category, const char* origin,
                                  const std::string& message);

private:
    mutable std::mutex mutex;
    std::deque<std::string> recentLines;
    std::size_t recentLineCapacity;
    bool echoToStandardError;
};

} // namespace mx
