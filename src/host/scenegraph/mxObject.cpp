#include "mxObject.h"

#include "system/mxLogObject.h"

#include <atomic>
#include <sstream>

namespace mx {

namespace {
std::atomic<unsigned int> nextObjectId{1};
} // namespace

const mxRtti mxObject::TYPE("mxCore.mxObject", nullptr);

mxObject::mxObject() : references(0), id(nextObjectId++) {}

mxObject::~mxObject() = default;

const mxRtti& mxObject::GetType() const { return TYPE; }

void mxObject::IncrementReferences() const { ++references; }

void mxObject::DecrementReferences() const {
    if (references <= 0) {
        return;
    }
    if (--references == 0) {
        delete this;
    }
}

int mxObject::GetReferences() const { return references; }

mxObject* mxObject::GetObjectByName(const std::string& wanted) {
    return name == wanted ? this : nullptr;
}

void mxObject::GetAllObjectsByName(const std::string& wanted, std::vector<mxObject*>& objects) {
    if (name == wanted) {
        objects.push_back(this);
    }
}

mxObject* mxObject::GetObjectByID(unsigned int wanted) { return id == wanted ? this : nullptr; }

void mxObject::SetName(const std::string& newName) { name = newName; }

const std::string& mxObject::GetName() const { return name; }

void mxObject::debugObject(int indent) const {
    mxLogObject(MX_LOG_INFO, nullptr, mxLog::msInstance, nullptr, true)
        << std::string(indent > 0 ? static_cast<std::size_t>(indent) : 0u, ' ') << describe();
}

std::string mxObject::describe() const {
    std::ostringstream text;
    // A failed allocation comes out rather than leaving the description cut short.
    text.exceptions(std::ios_base::badbit);
    text << GetType().getName() << " '" << name << "' #" << id << " refs " << references;
    return text.str();
}

} // namespace mx
