// mxObject: a named, counted object of the host.
//
// The reference count is intrusive: IncrementReferences() takes a reference,
// DecrementReferences() releases one and deletes the object when the count drops to 0. A new
// object starts at 0: the first mxPointer (or the first IncrementReferences) owns it. A
// release at count 0 does nothing. Objects are created with new; copy and move are deleted.
//
// Every object has a process-unique id (GetObjectByID) and a name (empty by default).
#pragma once

#include "mxRttiInterface.h"

#include <string>
#include <vector>

namespace mx {

class mxObject : public mxRttiInterface {
public:
    static const mxRtti TYPE;

    mxObject();
    ~mxObject() override;
    mxObject(const mxObject&) = delete;
    mxObject& operator=(const mxObject&) = delete;

    const mxRtti& GetType() const override;

    virtual void IncrementReferences() const;
    virtual void DecrementReferences() const;
    virtual int GetReferences() const;

    // The first object named name in this object and what it owns (for a node: its subtree,
    // depth first), or null.
    virtual mxObject* GetObjectByName(const std::string& name);
    // Appends every object named name in this object and what it owns.
    virtual void GetAllObjectsByName(const std::string& name, std::vector<mxObject*>& objects);
    // The object with that id in this object and what it owns, or null.
    virtual mxObject* GetObjectByID(unsigned int id);

    virtual void SetName(const std::string& name);
    virtual const std::string& GetName() const;

    // Writes a description of the object (a node: of its subtree) to the process log as
    // info lines, indented by indent blanks.
    virtual void debugObject(int indent) const;

    unsigned int GetID() const { return id; }

protected:
    // The one-line description debugObject writes: type, name, id and reference count.
    std::string describe() const;

private:
    mutable int references;
    unsigned int id;
    std::string name;
};

} // namespace mx
