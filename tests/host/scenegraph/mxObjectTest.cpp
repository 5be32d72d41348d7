#include "scenegraph/mxObject.h"
#include "scenegraph/mxPointer.h"

#include "support/mxLogCapture.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using mx::mxObject;
using mx::mxPointer;

namespace {

// An object that reports its own deletion.
class WatchedObject : public mxObject {
public:
    explicit WatchedObject(int& deletions) : deletions(deletions) {}
    ~WatchedObject() override { ++deletions; }

private:
    int& deletions;
};

} // namespace

TEST(mxObjectTest, NewObjectHasNoReference) {
    mxObject* object = new mxObject();
    EXPECT_EQ(0, object->GetReferences());
    delete object;
}

TEST(mxObjectTest, IncrementAndDecrementCountReferences) {
    int deletions = 0;
    WatchedObject* object = new WatchedObject(deletions);
    object->IncrementReferences();
    EXPECT_EQ(1, object->GetReferences());
    object->IncrementReferences();
    object->IncrementReferences();
    EXPECT_EQ(3, object->GetReferences());
    object->DecrementReferences();
    EXPECT_EQ(2, object->GetReferences());
    EXPECT_EQ(0, deletions);
    object->DecrementReferences();
    object->DecrementReferences();
    EXPECT_EQ(1, deletions);
}

TEST(mxObjectTest, ObjectIsDeletedWhenTheLastReferenceIsReleased) {
    int deletions = 0;
    WatchedObject* object = new WatchedObject(deletions);
    object->IncrementReferences();
    EXPECT_EQ(0, deletions);
    object->DecrementReferences();
    EXPECT_EQ(1, deletions);
}

TEST(mxObjectTest, ReleaseAtCountZeroDoesNothing) {
    int deletions = 0;
    WatchedObject* object = new WatchedObject(deletions);
    object->DecrementReferences();
    EXPECT_EQ(0, deletions);
    EXPECT_EQ(0, object->GetReferences());
    // The count does not go negative: one increment still owns the object->
    object->IncrementReferences();
    EXPECT_EQ(1, object->GetReferences());
    object->DecrementReferences();
    EXPECT_EQ(1, deletions);
}

TEST(mxObjectTest, ConstObjectCanBeCounted) {
    int deletions = 0;
    const mxObject* object = new WatchedObject(deletions);
    object->IncrementReferences();
    EXPECT_EQ(1, object->GetReferences());
    object->DecrementReferences();
    EXPECT_EQ(1, deletions);
}

TEST(mxObjectTest, EveryObjectHasADistinctId) {
    std::vector<mxObject*> objects;
    std::set<unsigned int> ids;
    for (int i = 0; i < 50; ++i) {
        objects.push_back(new mxObject());
        ids.insert(objects.back()->GetID());
    }
    EXPECT_EQ(objects.size(), ids.size());
    for (mxObject* object : objects) {
        delete object;
    }
}

TEST(mxObjectTest, IdsAreNotReusedAfterDeletion) {
    mxObject* first = new mxObject();
    const unsigned int firstId = first->GetID();
    delete first;
    mxPointer<mxObject> second = new mxObject();
    EXPECT_NE(firstId, second->GetID());
}

TEST(mxObjectTest, NameIsEmptyUntilSet) {
    mxPointer<mxObject> object = new mxObject();
    EXPECT_EQ("", object->GetName());
    object->SetName("handle");
    EXPECT_EQ("handle", object->GetName());
    object->SetName("renamed");
    EXPECT_EQ("renamed", object->GetName());
}

TEST(mxObjectTest, GetObjectByNameFindsTheObjectOnlyUnderItsOwnName) {
    mxPointer<mxObject> object = new mxObject();
    object->SetName("cube");
    EXPECT_EQ(object.get(), object->GetObjectByName("cube"));
    EXPECT_EQ(nullptr, object->GetObjectByName("sphere"));
    EXPECT_EQ(nullptr, object->GetObjectByName("Cube"));
}

TEST(mxObjectTest, GetAllObjectsByNameAppendsAMatchingObject) {
    mxPointer<mxObject> object = new mxObject();
    object->SetName("cube");
    mxPointer<mxObject> other = new mxObject();
    std::vector<mxObject*> found{other.get()};
    object->GetAllObjectsByName("cube", found);
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(other.get(), found[0]);
    EXPECT_EQ(object.get(), found[1]);
    object->GetAllObjectsByName("sphere", found);
    EXPECT_EQ(2u, found.size());
}

TEST(mxObjectTest, GetObjectByIDFindsTheObjectOnlyUnderItsOwnId) {
    mxPointer<mxObject> object = new mxObject();
    mxPointer<mxObject> other = new mxObject();
    EXPECT_EQ(object.get(), object->GetObjectByID(object->GetID()));
    EXPECT_EQ(nullptr, object->GetObjectByID(other->GetID()));
}

TEST(mxObjectTest, TypeIsObject) {
    mxPointer<mxObject> object = new mxObject();
    EXPECT_EQ(&mxObject::TYPE, &object->GetType());
    EXPECT_STREQ("mxCore.mxObject", object->GetType().getName());
}

TEST(mxObjectTest, DebugObjectWritesOneInfoLineNamingTheObject) {
    mxPointer<mxObject> object = new mxObject();
    object->SetName("probe");
    mx::test::mxLogCapture capture;
    object->debugObject(0);
    const std::vector<std::string> lines = capture.lines();
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ(0u, lines[0].rfind("info: ", 0)) << lines[0];
    EXPECT_NE(std::string::npos, lines[0].find("mxCore.mxObject")) << lines[0];
    EXPECT_NE(std::string::npos, lines[0].find("'probe'")) << lines[0];
    EXPECT_NE(std::string::npos, lines[0].find("#" + std::to_string(object->GetID())))
        << lines[0];
}

TEST(mxObjectTest, DebugObjectIndentsByTheGivenNumberOfBlanks) {
    mxPointer<mxObject> object = new mxObject();
    mx::test::mxLogCapture capture;
    object->debugObject(4);
    object->debugObject(-3);
    const std::vector<std::string> lines = capture.lines();
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ(0u, lines[0].rfind("info:     mxCore.mxObject", 0)) << lines[0];
    // A negative indent is no indent.
    EXPECT_EQ(0u, lines[1].rfind("info: mxCore.mxObject", 0)) << lines[1];
}
