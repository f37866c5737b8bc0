// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace corvanta {

/// Owns one reference to a CoreFoundation object, or none.
class CFHandle {
public:
    CFHandle() = default;

    /// Takes over the reference that a call with Create or Copy in its name has handed out.
    [[nodiscard]] static CFHandle adopt(CFTypeRef object) { return CFHandle(object); }

    /// Adds a reference to an object that somebody else owns; `object` is not null.
    [[nodiscard]] static CFHandle retain(CFTypeRef object) { return CFHandle(CFRetain(object)); }

    CFHandle(CFHandle&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr)) {}

    CFHandle& operator=(CFHandle&& other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }

    ~CFHandle() {
        if (m_object != nullptr)
            CFRelease(m_object);
    }

    [[nodiscard]] CFTypeRef get() const { return m_object; }

    /// The object as what the caller knows it to be.
    template<typename Reference>
    [[nodiscard]] Reference as() const {
        return static_cast<Reference>(m_object);
    }

    explicit operator bool() const { return m_object != nullptr; }

private:
    explicit CFHandle(CFTypeRef object)
        : m_object(object) {}

    CFTypeRef m_object = nullptr;
};

} // namespace corvanta
