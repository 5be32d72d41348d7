// mxPointer<T>: a counted reference to an mxObject (or anything with IncrementReferences and
// DecrementReferences). Holding one keeps the object alive; the last release deletes it.
// Ownership runs downward: nodes hold children, geometries their buffers, by mxPointer; links
// back up (a spatial's parent) are raw pointers, so there are no cycles.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace mx {

template <class T> class mxPointer {
public:
    mxPointer() : object(nullptr) {}
    mxPointer(std::nullptr_t) : object(nullptr) {}
    mxPointer(T* object) : object(object) { acquire(); }
    mxPointer(const mxPointer& other) : object(other.object) { acquire(); }
    mxPointer(mxPointer&& other) noexcept : object(other.object) { other.object = nullptr; }
    template <class U> mxPointer(const mxPointer<U>& other) : object(other.get()) { acquire(); }
    ~mxPointer() { release(); }

    mxPointer& operator=(T* other) {
        mxPointer(other).swap(*this);
        return *this;
    }
    mxPointer& operator=(const mxPointer& other) {
        mxPointer(other).swap(*this);
        return *this;
    }
    mxPointer& operator=(mxPointer&& other) noexcept {
        mxPointer(std::move(other)).swap(*this);
        return *this;
    }

    T* get() const { return object; }
    T* operator->() const { return object; }
    T& operator*() const { return *object; }
    explicit operator bool() const { return object != nullptr; }

    void reset() { mxPointer().swap(*this); }
    void swap(mxPointer& other) noexcept { std::swap(object, other.object); }

    friend bool operator==(const mxPointer& a, const mxPointer& b) { return a.object == b.object; }
    friend bool operator!=(const mxPointer& a, const mxPointer& b) { return a.object != b.object; }
    friend bool operator==(const mxPointer& a, const T* b) { return a.object == b; }
    friend bool operator!=(const mxPointer& a, const T* b) { return a.object != b; }
    friend bool operator==(const T* a, const mxPointer& b) { return a == b.object; }
    friend bool operator!=(const T* a, const mxPointer& b) { return a != b.object; }
    friend bool operator==(const mxPointer& a, std::nullptr_t) { return a.object == nullptr; }
    friend bool operator!=(const mxPointer& a, std::nullptr_t) { return a.object != nullptr; }
    friend bool operator<(const mxPointer& a, const mxPointer& b) {
        return std::less<T*>()(a.object, b.object);
    }

private:
    void acquire() {
        if (object) {
            object->IncrementReferences();
        }
    }
    void release() {
        if (object) {
            // Cleared first: the object's destructor may reach back to this pointer.
            T* old = object;
            object = nullptr;
            old->DecrementReferences();
        }
    }

    T* object;
};

} // namespace mx
