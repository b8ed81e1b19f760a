#pragma once

// Owner of one count on a COM object. Also compiled with wineg++: no wide type of the C++ library here or in
// the other automation files.

#include <utility>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::windows {

template <class T>
class Reference {
  public:
    Reference() = default;
    Reference(std::nullptr_t) {}
    Reference(const Reference& other) : Reference(share(other.object_)) {}
    Reference(Reference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Reference& operator=(Reference other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Reference() {
        if (object_) object_->Release();
    }

    /// Takes over a count that the caller has; `object` may be null.
    static Reference adopt(T* object) noexcept {
        Reference reference;
        reference.object_ = object;
        return reference;
    }
    /// Adds a count of its own; `object` may be null.
    static Reference share(T* object) {
        if (object) object->AddRef();
        return adopt(object);
    }

    T* get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    /// Where a function returns an object with a count for the caller; releases what is held.
    T** put() {
        *this = Reference();
        return &object_;
    }
    void** putVoid() { return reinterpret_cast<void**>(put()); }
    /// Where a function may replace the object, its count included.
    T** address() noexcept { return &object_; }
    /// Gives the count away.
    T* detach() noexcept { return std::exchange(object_, nullptr); }

    /// Another interface of the object; empty where it has none, or where there is no object.
    template <class Other>
    Reference<Other> query(REFIID iid) const {
        Reference<Other> other;
        if (object_ && FAILED(object_->QueryInterface(iid, other.putVoid()))) other.detach();
        return other;
    }

  private:
    T* object_ = nullptr;
};

/// A new object of one's own, whose first count the reference takes over. It deletes itself with its last
/// one.
template <class Object, class... Arguments>
Reference<Object> makeCounted(Arguments&&... arguments) {
    return Reference<Object>::adopt(new Object(std::forward<Arguments>(arguments)...));
}

/// The same, as automation hands it around.
template <class Object, class... Arguments>
Reference<IDispatch> makeDispatch(Arguments&&... arguments) {
    return Reference<IDispatch>::adopt(new Object(std::forward<Arguments>(arguments)...));
}

}  // namespace pxtarvo::windows
