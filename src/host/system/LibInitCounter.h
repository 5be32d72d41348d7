// mx::impl::LibInitCounter: counts the nested initialise/terminate calls of one library so
// that the library hooks itself into the host once and unhooks once.
//
// incrementInitCounter() returns true on the first increment (0 -> 1);
// decrementInitCounter() returns true on the decrement back to zero (1 -> 0). A decrement at
// zero returns false and leaves the count at zero: the count is never negative.
#pragma once

#include <mutex>
#include <string>

namespace mx {
namespace impl {

class LibInitCounter {
public:
    // name: the library's name, for diagnostics. threadSafe: guard the count with a lock, for
    // libraries whose initialisation may race between threads.
    LibInitCounter(const char* name, bool threadSafe);
    ~LibInitCounter();
    LibInitCounter(const LibInitCounter&) = delete;
    LibInitCounter& operator=(const LibInitCounter&) = delete;

    bool incrementInitCounter();
    bool decrementInitCounter();

    int getCount() const;
    const std::string& getName() const;
    bool isThreadSafe() const;

private:
    std::string name;
    bool threadSafe;
    int count;
    mutable std::mutex mutex;
};

} // namespace impl
} // namespace mx
