#pragma once

#include <concepts>
#include <cstddef>
#include <utility>

namespace orvane {

/// A counted reference to an object of one of the library's own classes; Nothing when empty.
template <class T>
class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    /// Shares the object.
    explicit Ref(T* object) : object_(object) {
        if (object_ != nullptr) object_->addRef();
    }
    /// Takes over a reference.
    static Ref adopt(T* object) {
        Ref result;
        result.object_ = object;
        return result;
    }
    Ref(const Ref& other) : Ref(other.object_) {}
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() {
        if (object_ != nullptr) object_->release();
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    T* detach() { return std::exchange(object_, nullptr); }
    friend bool operator==(const Ref&, const Ref&) = default;

private:
    T* object_ = nullptr;
};

/// A new object of a library class, made as the class factory makes it.
template <class T, class... Arguments>
Ref<T> make(Arguments&&... arguments) {
    return Ref<T>::adopt(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace orvane
