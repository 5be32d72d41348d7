// mxDescriptionInterface: an object that keeps a short human-readable description of itself
// (for tools and debugging), brought up to date by updateObjectDescription().
#pragma once

#include <string>

namespace mx {

class mxDescriptionInterface {
public:
    virtual ~mxDescriptionInterface();
    virtual void updateObjectDescription() = 0;

    const std::string& getObjectDescription() const { return objectDescription; }

protected:
    std::string objectDescription;
};

} // namespace mx
