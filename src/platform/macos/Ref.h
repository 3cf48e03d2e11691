#pragma once

#include <utility>

#include <CoreFoundation/CoreFoundation.h>

namespace hollowfernpike::macos {

/// A Core Foundation object that we own, or none. Each copy owns it once, and releases it once.
template <class Object>
class Ref {
public:
    Ref() = default;
    Ref(const Ref& other) : Ref(retained(other.object_)) {}
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() {
        if (object_ != nullptr) {
            CFRelease(object_);
        }
    }

    /// From a function with Create or Copy in its name, which gives us the object.
    static Ref owned(Object object) {
        Ref ref;
        ref.object_ = object;
        return ref;
    }

    /// From any other function, which only shows us the object of somebody else.
    static Ref retained(Object object) {
        if (object != nullptr) {
            CFRetain(object);
        }
        return owned(object);
    }

    Object get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    Object object_ = nullptr;
};

} // namespace hollowfernpike::macos
