// SPDX-License-Identifier: MIT
#pragma once

#include <glib-object.h>

#include <memory>

namespace corvanta::lab {

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};

/// Keeps the object for as long as somebody holds the pointer, for functions that are called later.
template<typename Type>
std::shared_ptr<Type> held(Type* object) {
    return {static_cast<Type*>(g_object_ref(object)), Unreference()};
}

} // namespace corvanta::lab
