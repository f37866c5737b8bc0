// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

// Global names of the SDK that ours must live beside.
typedef struct Point {
    short v;
    short h;
} Point;

typedef struct Rect {
    short top;
    short left;
    short bottom;
    short right;
} Rect;

typedef long Size;

SDK_NONNULL_BEGIN
typedef const struct SDK_BRIDGED(id) __AXUIElement* AXUIElementRef;
typedef const struct SDK_BRIDGED(id) __AXValue* AXValueRef;
typedef SDK_ENUM(int, AXError){
    kAXErrorSuccess = 0,
    kAXErrorFailure = -25200,
    kAXErrorCannotComplete = -25204,
    kAXErrorAttributeUnsupported = -25205,
    kAXErrorActionUnsupported = -25206,
    kAXErrorAPIDisabled = -25211,
    kAXErrorNoValue = -25212,
};
typedef SDK_ENUM(uint32_t, AXValueType){
    kAXValueTypeIllegal = 0,
    kAXValueTypeCGPoint = 1,
    kAXValueTypeCGSize = 2,
    kAXValueTypeCGRect = 3,
};
SDK_EXTERN CFTypeID AXUIElementGetTypeID(void);
SDK_EXTERN AXUIElementRef AXUIElementCreateApplication(pid_t pid) SDK_RETAINED;
SDK_EXTERN AXUIElementRef AXUIElementCreateSystemWide(void) SDK_RETAINED;
SDK_EXTERN AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                                 CFTypeRef _Nullable* _Nonnull SDK_RETAINED value);
SDK_EXTERN AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value);
SDK_EXTERN AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);
SDK_EXTERN AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid);
SDK_EXTERN AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds);
SDK_EXTERN CFTypeID AXValueGetTypeID(void);
SDK_EXTERN AXValueRef _Nullable AXValueCreate(AXValueType theType, const void* valuePtr) SDK_RETAINED;
SDK_EXTERN Boolean AXValueGetValue(AXValueRef value, AXValueType theType, void* valuePtr);
SDK_EXTERN Boolean AXIsProcessTrusted(void);
SDK_EXTERN Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options) SDK_AVAILABLE(10.9);
SDK_EXTERN CFStringRef kAXTrustedCheckOptionPrompt SDK_AVAILABLE(10.9);
SDK_NONNULL_END
