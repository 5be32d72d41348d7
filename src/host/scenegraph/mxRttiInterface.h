// mxRttiInterface: the root of the host's class tree; every object can name its run-time type.
#pragma once

#include "mxRtti.h"

namespace mx {

class mxRttiInterface {
public:
    virtual ~mxRttiInterface();
    virtual const mxRtti& GetType() const = 0;

    // True if the object's type is type or derives from it.
    bool IsDerived(const mxRtti& type) const { return GetType().isDerived(type); }
    // True if the object's type is exactly type.
    bool IsExactly(const mxRtti& type) const { return &GetType() == &type; }
};

} // namespace mx
