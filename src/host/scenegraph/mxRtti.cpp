#include "mxRtti.h"

namespace mx {

mxRtti::~mxRtti() = default;

bool mxRtti::isDerived(const mxRtti& type) const {
    for (const mxRtti* record = this; record; record = record->parent) {
        if (record == &type) {
            return true;
        }
    }
    return false;
}

} // namespace mx
