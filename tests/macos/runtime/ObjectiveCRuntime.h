// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#import <Foundation/Foundation.h>

/// What the doubles and the tests ask of the small Objective-C runtime.
namespace corvanta::testing {

/// How many objects of each class are alive, heap blocks under "(block)". Classes without any are left out.
[[nodiscard]] std::map<std::string, long> livingObjects();

/// What NSObject's dealloc does in the end.
void endObject(void* object);

} // namespace corvanta::testing

extern "C" {
/// Whether the object's class, or one that it inherits from, has a method for the selector.
bool corvanta_responds(id object, SEL selector);
bool corvanta_is_kind_of(id object, Class type);
void* objc_retain(void* object);
void objc_release(void* object);
id objc_autorelease(id object);
id objc_alloc(Class type);
id objc_msgSend(id object, SEL selector, ...);
}
