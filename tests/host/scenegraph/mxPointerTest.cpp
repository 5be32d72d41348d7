#include "scenegraph/mxObject.h"
#include "scenegraph/mxPointer.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <utility>
#include <vector>

using mx::mxObject;
using mx::mxPointer;

namespace {

// An object that reports its own deletion.
class Watched : public mxObject {
public:
    explicit Watched(int& deletions) : deletions(deletions) {}
    ~Watched() override { ++deletions; }

private:
    int& deletions;
};

class DerivedWatched : public Watched {
public:
    explicit DerivedWatched(int& deletions) : Watched(deletions) {}
    int answer() const { return 42; }
};

// An object that owns another one through a member pointer.
class Owner : public Watched {
public:
    Owner(int& deletions, mxObject* owned) : Watched(deletions), owned(owned) {}
    mxPointer<mxObject> owned;
};

// An object whose destructor releases a pointer it does not own as a member.
class Releaser : public Watched {
public:
    Releaser(int& deletions, mxPointer<mxObject>& other) : Watched(deletions), other(other) {}
    ~Releaser() override { other.reset(); }

private:
    mxPointer<mxObject>& other;
};

// An object whose destructor reaches back to the pointer that held it: it records whether
// that pointer was already cleared, then resets it once more.
class ReachingBack : public Watched {
public:
    ReachingBack(int& deletions, mxPointer<ReachingBack>*& holder, bool& holderWasEmpty)
        : Watched(deletions), holder(holder), holderWasEmpty(holderWasEmpty) {}
    ~ReachingBack() override {
        holderWasEmpty = holder && !*holder;
        if (holder) {
            holder->reset();
        }
    }

private:
    mxPointer<ReachingBack>*& holder;
    bool& holderWasEmpty;
};

// Not an mxObject: anything with the two counting calls can be held.
struct Counter {
    void IncrementReferences() const { ++increments; }
    void DecrementReferences() const { ++decrements; }
    mutable int increments = 0;
    mutable int decrements = 0;
};

} // namespace

TEST(mxPointerTest, DefaultPointerIsNull) {
    mxPointer<mxObject> pointer;
    EXPECT_EQ(nullptr, pointer.get());
    EXPECT_FALSE(pointer);
    EXPECT_TRUE(pointer == nullptr);
    EXPECT_FALSE(pointer != nullptr);
}

TEST(mxPointerTest, PointerFromNullIsNull) {
    mxPointer<mxObject> pointer(nullptr);
    mxPointer<mxObject> fromRawNull(static_cast<mxObject*>(nullptr));
    EXPECT_FALSE(pointer);
    EXPECT_FALSE(fromRawNull);
}

TEST(mxPointerTest, PointerTakesAReferenceToItsObject) {
    int deletions = 0;
    Watched* object = new Watched(deletions);
    mxPointer<Watched> pointer(object);
    EXPECT_EQ(object, pointer.get());
    EXPECT_TRUE(pointer);
    EXPECT_EQ(1, object->GetReferences());
}

TEST(mxPointerTest, ObjectIsDeletedWhenItsOnlyPointerGoesAway) {
    int deletions = 0;
    {
        mxPointer<Watched> pointer = new Watched(deletions);
        EXPECT_EQ(0, deletions);
    }
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, DereferenceReachesTheObject) {
    int deletions = 0;
    mxPointer<DerivedWatched> pointer = new DerivedWatched(deletions);
    EXPECT_EQ(42, pointer->answer());
    EXPECT_EQ(42, (*pointer).answer());
    EXPECT_EQ(pointer.get(), &*pointer);
}

TEST(mxPointerTest, CopySharesTheObjectAndCountsIt) {
    int deletions = 0;
    mxPointer<Watched> first = new Watched(deletions);
    {
        mxPointer<Watched> second(first);
        EXPECT_EQ(first.get(), second.get());
        EXPECT_EQ(2, first->GetReferences());
    }
    EXPECT_EQ(0, deletions);
    EXPECT_EQ(1, first->GetReferences());
}

TEST(mxPointerTest, CopyOfNullIsNull) {
    mxPointer<mxObject> empty;
    mxPointer<mxObject> copy(empty);
    EXPECT_FALSE(copy);
}

TEST(mxPointerTest, MoveTransfersTheReferenceWithoutCounting) {
    int deletions = 0;
    mxPointer<Watched> source = new Watched(deletions);
    Watched* object = source.get();
    mxPointer<Watched> target(std::move(source));
    EXPECT_EQ(nullptr, source.get());
    EXPECT_EQ(object, target.get());
    EXPECT_EQ(1, object->GetReferences());
    target.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, CopyAssignmentReleasesTheOldObjectAndSharesTheNewOne) {
    int oldDeletions = 0;
    int newDeletions = 0;
    mxPointer<Watched> target = new Watched(oldDeletions);
    mxPointer<Watched> source = new Watched(newDeletions);
    target = source;
    EXPECT_EQ(1, oldDeletions);
    EXPECT_EQ(0, newDeletions);
    EXPECT_EQ(source.get(), target.get());
    EXPECT_EQ(2, source->GetReferences());
}

TEST(mxPointerTest, MoveAssignmentReleasesTheOldObjectAndEmptiesTheSource) {
    int oldDeletions = 0;
    int newDeletions = 0;
    mxPointer<Watched> target = new Watched(oldDeletions);
    mxPointer<Watched> source = new Watched(newDeletions);
    Watched* object = source.get();
    target = std::move(source);
    EXPECT_EQ(1, oldDeletions);
    EXPECT_EQ(0, newDeletions);
    EXPECT_EQ(nullptr, source.get());
    EXPECT_EQ(object, target.get());
    EXPECT_EQ(1, object->GetReferences());
}

TEST(mxPointerTest, RawAssignmentReleasesTheOldObjectAndTakesTheNewOne) {
    int oldDeletions = 0;
    int newDeletions = 0;
    mxPointer<Watched> pointer = new Watched(oldDeletions);
    Watched* object = new Watched(newDeletions);
    pointer = object;
    EXPECT_EQ(1, oldDeletions);
    EXPECT_EQ(object, pointer.get());
    EXPECT_EQ(1, object->GetReferences());
    pointer.reset();
    EXPECT_EQ(1, newDeletions);
}

TEST(mxPointerTest, SelfCopyAssignmentKeepsTheObject) {
    int deletions = 0;
    mxPointer<Watched> pointer = new Watched(deletions);
    mxPointer<Watched>& alias = pointer;
    pointer = alias;
    EXPECT_EQ(0, deletions);
    ASSERT_TRUE(pointer);
    EXPECT_EQ(1, pointer->GetReferences());
}

TEST(mxPointerTest, SelfMoveAssignmentKeepsTheObject) {
    int deletions = 0;
    mxPointer<Watched> pointer = new Watched(deletions);
    mxPointer<Watched>& alias = pointer;
    pointer = std::move(alias);
    EXPECT_EQ(0, deletions);
    ASSERT_TRUE(pointer);
    EXPECT_EQ(1, pointer->GetReferences());
}

TEST(mxPointerTest, AssigningTheHeldRawPointerKeepsTheObject) {
    int deletions = 0;
    mxPointer<Watched> pointer = new Watched(deletions);
    pointer = pointer.get();
    EXPECT_EQ(0, deletions);
    ASSERT_TRUE(pointer);
    EXPECT_EQ(1, pointer->GetReferences());
}

TEST(mxPointerTest, AssigningNullReleasesTheObject) {
    int deletions = 0;
    mxPointer<Watched> pointer = new Watched(deletions);
    pointer = nullptr;
    EXPECT_EQ(1, deletions);
    EXPECT_FALSE(pointer);
}

TEST(mxPointerTest, ResetReleasesTheObjectOnce) {
    int deletions = 0;
    mxPointer<Watched> pointer = new Watched(deletions);
    pointer.reset();
    EXPECT_EQ(1, deletions);
    EXPECT_FALSE(pointer);
    pointer.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, SwapExchangesObjectsWithoutCounting) {
    int deletionsA = 0;
    int deletionsB = 0;
    Watched* a = new Watched(deletionsA);
    Watched* b = new Watched(deletionsB);
    mxPointer<Watched> first = a;
    mxPointer<Watched> second = b;
    first.swap(second);
    EXPECT_EQ(b, first.get());
    EXPECT_EQ(a, second.get());
    EXPECT_EQ(1, a->GetReferences());
    EXPECT_EQ(1, b->GetReferences());
    second.reset();
    EXPECT_EQ(1, deletionsA);
    EXPECT_EQ(0, deletionsB);
}

TEST(mxPointerTest, SwapWithNullMovesTheObjectAcross) {
    int deletions = 0;
    mxPointer<Watched> full = new Watched(deletions);
    mxPointer<Watched> empty;
    Watched* object = full.get();
    full.swap(empty);
    EXPECT_FALSE(full);
    EXPECT_EQ(object, empty.get());
    EXPECT_EQ(1, object->GetReferences());
}

TEST(mxPointerTest, PointerToBaseCanBeMadeFromPointerToDerived) {
    int deletions = 0;
    mxPointer<DerivedWatched> derived = new DerivedWatched(deletions);
    {
        mxPointer<mxObject> base(derived);
        EXPECT_EQ(static_cast<mxObject*>(derived.get()), base.get());
        EXPECT_EQ(2, derived->GetReferences());
    }
    EXPECT_EQ(1, derived->GetReferences());
    derived.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, PointerToBaseOutlivesThePointerToDerived) {
    int deletions = 0;
    mxPointer<mxObject> base;
    {
        mxPointer<DerivedWatched> derived = new DerivedWatched(deletions);
        base = derived;
    }
    EXPECT_EQ(0, deletions);
    EXPECT_EQ(1, base->GetReferences());
    base.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, PointerToConstObjectCounts) {
    int deletions = 0;
    const Watched* object = new Watched(deletions);
    {
        mxPointer<const Watched> pointer = object;
        EXPECT_EQ(1, object->GetReferences());
    }
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, PointersCompareByTheObjectTheyHold) {
    int deletions = 0;
    mxPointer<Watched> a = new Watched(deletions);
    mxPointer<Watched> alsoA = a;
    mxPointer<Watched> b = new Watched(deletions);
    EXPECT_TRUE(a == alsoA);
    EXPECT_FALSE(a != alsoA);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
}

TEST(mxPointerTest, PointerComparesWithRawPointersOnEitherSide) {
    int deletions = 0;
    mxPointer<Watched> pointer = new Watched(deletions);
    Watched* same = pointer.get();
    Watched* other = new Watched(deletions);
    EXPECT_TRUE(pointer == same);
    EXPECT_TRUE(same == pointer);
    EXPECT_FALSE(pointer != same);
    EXPECT_FALSE(same != pointer);
    EXPECT_FALSE(pointer == other);
    EXPECT_FALSE(other == pointer);
    EXPECT_TRUE(pointer != other);
    EXPECT_TRUE(other != pointer);
    delete other;
}

TEST(mxPointerTest, PointerComparesWithNullptr) {
    int deletions = 0;
    mxPointer<Watched> full = new Watched(deletions);
    mxPointer<Watched> empty;
    EXPECT_FALSE(full == nullptr);
    EXPECT_TRUE(full != nullptr);
    EXPECT_TRUE(empty == nullptr);
    EXPECT_FALSE(empty != nullptr);
    EXPECT_TRUE(nullptr == empty);
    EXPECT_TRUE(nullptr != full);
}

TEST(mxPointerTest, LessThanOrdersLikeTheHeldAddresses) {
    int deletions = 0;
    mxPointer<Watched> a = new Watched(deletions);
    mxPointer<Watched> b = new Watched(deletions);
    const bool aFirst = std::less<Watched*>()(a.get(), b.get());
    EXPECT_EQ(aFirst, a < b);
    EXPECT_EQ(!aFirst, b < a);
    EXPECT_FALSE(a < a);
    std::set<mxPointer<Watched>> set{a, b, a};
    EXPECT_EQ(2u, set.size());
    EXPECT_EQ(2, a->GetReferences()); // a itself and the one copy the set keeps
}

TEST(mxPointerTest, ObjectHeldBySeveralPointersIsDeletedOnceWhenTheLastGoes) {
    int deletions = 0;
    std::vector<mxPointer<Watched>> pointers;
    pointers.emplace_back(new Watched(deletions));
    for (int i = 0; i < 9; ++i) {
        pointers.push_back(pointers.front());
    }
    EXPECT_EQ(10, pointers.front()->GetReferences());
    // Release from the front and the back alternately; only the last one deletes.
    while (pointers.size() > 1) {
        pointers.erase(pointers.begin());
        EXPECT_EQ(0, deletions);
        if (pointers.size() > 1) {
            pointers.pop_back();
            EXPECT_EQ(0, deletions);
        }
    }
    EXPECT_EQ(1, pointers.front()->GetReferences());
    pointers.clear();
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, MixedReleasesDeleteTheObjectExactlyOnce) {
    int deletions = 0;
    mxPointer<Watched> a = new Watched(deletions);
    mxPointer<Watched> b = a;
    mxPointer<mxObject> c(a);
    mxPointer<Watched> d;
    d = b;
    a.reset();
    b = nullptr;
    EXPECT_EQ(0, deletions);
    mxPointer<Watched> e(std::move(d));
    c.reset();
    EXPECT_EQ(0, deletions);
    e = e.get();
    EXPECT_EQ(0, deletions);
    e.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxPointerTest, ReleasingAnOwnerReleasesWhatItOwns) {
    int ownerDeletions = 0;
    int ownedDeletions = 0;
    mxPointer<Owner> owner = new Owner(ownerDeletions, new Watched(ownedDeletions));
    EXPECT_EQ(1, owner->owned->GetReferences());
    owner.reset();
    EXPECT_EQ(1, ownerDeletions);
    EXPECT_EQ(1, ownedDeletions);
}

TEST(mxPointerTest, OwnedObjectHeldElsewhereSurvivesItsOwner) {
    int ownerDeletions = 0;
    int ownedDeletions = 0;
    mxPointer<Watched> kept = new Watched(ownedDeletions);
    mxPointer<Owner> owner = new Owner(ownerDeletions, kept.get());
    EXPECT_EQ(2, kept->GetReferences());
    owner.reset();
    EXPECT_EQ(1, ownerDeletions);
    EXPECT_EQ(0, ownedDeletions);
    EXPECT_EQ(1, kept->GetReferences());
}

TEST(mxPointerTest, ChainOfOwnersIsReleasedLinkByLink) {
    std::vector<int> deletions(5, 0);
    mxObject* chain = new Watched(deletions[0]);
    for (std::size_t i = 1; i < deletions.size(); ++i) {
        chain = new Owner(deletions[i], chain);
    }
    mxPointer<mxObject> head = chain;
    head.reset();
    for (int count : deletions) {
        EXPECT_EQ(1, count);
    }
}

TEST(mxPointerTest, DestructorThatReleasesAnotherPointerDeletesThatObjectOnce) {
    int releaserDeletions = 0;
    int otherDeletions = 0;
    mxPointer<mxObject> other = new Watched(otherDeletions);
    mxPointer<Releaser> releaser = new Releaser(releaserDeletions, other);
    releaser.reset();
    EXPECT_EQ(1, releaserDeletions);
    EXPECT_EQ(1, otherDeletions);
    EXPECT_FALSE(other);
    // The pointer was emptied by the destructor: dropping it now deletes nothing more.
    other.reset();
    EXPECT_EQ(1, otherDeletions);
}

TEST(mxPointerTest, DestructorThatReleasesAPointerToItselfDoesNotDeleteTwice) {
    int deletions = 0;
    mxPointer<mxObject> self;
    Releaser* object = new Releaser(deletions, self);
    self = object;
    self.reset();
    EXPECT_EQ(1, deletions);
    EXPECT_FALSE(self);
}

TEST(mxPointerTest, PointerIsAlreadyEmptyWhenTheObjectItReleasesIsDestroyed) {
    int deletions = 0;
    bool holderWasEmpty = false;
    mxPointer<ReachingBack>* holder = nullptr;
    {
        mxPointer<ReachingBack> pointer = new ReachingBack(deletions, holder, holderWasEmpty);
        holder = &pointer;
        pointer.reset();
        EXPECT_TRUE(holderWasEmpty);
        EXPECT_EQ(1, deletions);
    }
    holder = nullptr;
    {
        mxPointer<ReachingBack> pointer = new ReachingBack(deletions, holder, holderWasEmpty);
        holder = &pointer;
        holderWasEmpty = false;
        pointer = nullptr;
        EXPECT_TRUE(holderWasEmpty);
        EXPECT_EQ(2, deletions);
    }
    holder = nullptr;
    {
        holderWasEmpty = false;
        mxPointer<ReachingBack> pointer = new ReachingBack(deletions, holder, holderWasEmpty);
        holder = &pointer;
        // Going out of scope releases through the destructor.
    }
    EXPECT_TRUE(holderWasEmpty);
    EXPECT_EQ(3, deletions);
}

TEST(mxPointerTest, AnyTypeWithCountingCallsIsCountedOncePerHolder) {
    Counter counter;
    {
        mxPointer<Counter> first = &counter;
        mxPointer<Counter> second = first;
        mxPointer<Counter> third(std::move(second));
        third = first;
        EXPECT_EQ(3, counter.increments);
        EXPECT_EQ(1, counter.decrements);
    }
    EXPECT_EQ(counter.increments, counter.decrements);
}
