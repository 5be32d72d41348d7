// mxLogCapture: reads what the process log wrote while the capture was alive. It empties the
// log's recent lines on construction and keeps standard error quiet until it goes away.
#pragma once

#include <string>
#include <vector>

namespace mx {
namespace test {

class mxLogCapture {
public:
    mxLogCapture();
    ~mxLogCapture();
    mxLogCapture(const mxLogCapture&) = delete;
    mxLogCapture& operator=(const mxLogCapture&) = delete;

    // The lines written since construction (or the last clear).
    std::vector<std::string> lines() const;
    void clear();

private:
    bool wasEchoing;
};

} // namespace test
} // namespace mx
