#pragma once

// A counted reference to an object of the host or of the platform, empty until it is set. Using an empty one
// is the run-time error 91 of automation, never undefined behaviour.

#include <memory>
#include <utility>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

template <class T>
class ObjectRef {
  public:
    ObjectRef() = default;
    ObjectRef(std::nullptr_t) {}
    ObjectRef(std::shared_ptr<T> object) : object_(std::move(object)) {}
    template <class U>
    requires std::convertible_to<std::shared_ptr<U>, std::shared_ptr<T>> ObjectRef(std::shared_ptr<U> object)
        : object_(std::move(object)) {}
    template <class U>
    requires std::convertible_to<std::shared_ptr<U>, std::shared_ptr<T>> ObjectRef(const ObjectRef<U>& other)
        : object_(other.shared()) {}

    /// Raises 91 (ObjectNotSet) when the reference is empty.
    T* operator->() const { return &**this; }
    T& operator*() const {
        if (!object_) throw RuntimeError(ErrorNumber::ObjectNotSet);
        return *object_;
    }

    explicit operator bool() const noexcept { return object_ != nullptr; }
    const std::shared_ptr<T>& shared() const noexcept { return object_; }
    void reset() noexcept { object_.reset(); }
    friend bool operator==(const ObjectRef& a, const ObjectRef& b) noexcept { return a.object_ == b.object_; }

  private:
    std::shared_ptr<T> object_;
};

template <class T, class... Arguments>
ObjectRef<T> makeObject(Arguments&&... arguments) {
    return ObjectRef<T>(std::make_shared<T>(std::forward<Arguments>(arguments)...));
}

}  // namespace pxtarvo
