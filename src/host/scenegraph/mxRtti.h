// mxRtti: a run-time type record, a name and the record of the parent type. Records are
// static objects that live as long as their library; they are compared by address.
#pragma once

namespace mx {

class mxRtti {
public:
    // name must outlive the record (a string literal); parent is null for a root type.
    constexpr mxRtti(const char* name, const mxRtti* parent) : name(name), parent(parent) {}
    ~mxRtti();
    mxRtti(const mxRtti&) = delete;
    mxRtti& operator=(const mxRtti&) = delete;

    const char* getName() const { return name; }
    const mxRtti* getParent() const { return parent; }

    // Whether this record is type or derives from it (follows the parent chain).
    bool isDerived(const mxRtti& type) const;

private:
    const char* name;
    const mxRtti* parent;
};

} // namespace mx
