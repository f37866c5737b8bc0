// SPDX-License-Identifier: MIT
#pragma once

#include "SdkMacros.h"

SDK_NONNULL_BEGIN
typedef const void* CFTypeRef;
typedef unsigned char Boolean;
typedef signed long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFHashCode;
typedef const struct SDK_BRIDGED(NSString) __CFString* CFStringRef;
typedef const struct SDK_BRIDGED(NSArray) __CFArray* CFArrayRef;
typedef const struct SDK_BRIDGED(NSDictionary) __CFDictionary* CFDictionaryRef;
typedef const struct SDK_BRIDGED(NSNumber) __CFBoolean* CFBooleanRef;
typedef const struct SDK_BRIDGED(NSNumber) __CFNumber* CFNumberRef;
SDK_EXTERN CFTypeRef CFRetain(CFTypeRef cf);
SDK_EXTERN void CFRelease(CFTypeRef cf);
SDK_EXTERN CFTypeID CFGetTypeID(CFTypeRef cf);
SDK_EXTERN CFHashCode CFHash(CFTypeRef cf);
SDK_EXTERN Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2);
SDK_EXTERN CFTypeID CFStringGetTypeID(void);
SDK_EXTERN CFTypeID CFArrayGetTypeID(void);
SDK_EXTERN CFTypeID CFBooleanGetTypeID(void);
SDK_EXTERN CFTypeID CFNumberGetTypeID(void);
SDK_EXTERN CFIndex CFArrayGetCount(CFArrayRef theArray);
SDK_EXTERN const void* _Null_unspecified CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx);
SDK_EXTERN Boolean CFBooleanGetValue(CFBooleanRef boolean);
SDK_NONNULL_END
