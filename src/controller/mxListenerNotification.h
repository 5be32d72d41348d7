// How the controllers tell their listeners. Internal to the library: not installed.
#pragma once

#include "controller/mx3DManipulatorMotionListener.h"

#include <cstddef>
#include <vector>

namespace mx {
namespace impl {

// Calls slot with args on every listener of the list, in list order. A null entry is passed
// over. The list is read afresh at every step, so a listener may install or uninstall
// listeners from its callback without invalidating the walk.
template <class Slot, class... Args>
void notifyListeners(const std::vector<mx3DManipulatorMotionListener*>& listeners, Slot slot,
                     const Args&... args) {
    for (std::size_t i = 0; i < listeners.size(); ++i) {
        if (mx3DManipulatorMotionListener* listener = listeners[i]) {
            (listener->*slot)(args...);
        }
    }
}

} // namespace impl
} // namespace mx
