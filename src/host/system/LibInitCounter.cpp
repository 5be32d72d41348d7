#include "LibInitCounter.h"

namespace mx {
namespace impl {

LibInitCounter::LibInitCounter(const char* name, bool threadSafe)
    : name(name ? name : ""), threadSafe(threadSafe), count(0) {}

LibInitCounter::~LibInitCounter() = default;

bool LibInitCounter::incrementInitCounter() {
    std::unique_lock<std::mutex> lock(mutex, std::defer_lock);
    if (threadSafe) {
        lock.lock();
    }
    ++count;
    return count == 1;
}

bool LibInitCounter::decrementInitCounter() {
    std::unique_lock<std::mutex> lock(mutex, std::defer_lock);
    if (threadSafe) {
        lock.lock();
    }
    if (count == 0) {
        return false;
    }
    --count;
    return count == 0;
}

int LibInitCounter::getCount() const {
    std::unique_lock<std::mutex> lock(mutex, std::defer_lock);
    if (threadSafe) {
        lock.lock();
    }
    return count;
}

const std::string& LibInitCounter::getName() const { return name; }

bool LibInitCounter::isThreadSafe() const { return threadSafe; }

} // namespace impl
} // namespace mx
