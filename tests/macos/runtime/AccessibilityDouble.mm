// SPDX-License-Identifier: MIT
// The functions of CoreFoundation and of the Accessibility API.
#include "Doubles.h"

#include <cstdlib>

using namespace corvanta::testing;

namespace {

long references = 0;

enum Type : CFTypeID { other = 1, text = 7, number = 19, flag = 21, array = 22, element = 300, geometry = 301 };

id object(CFTypeRef reference) {
    return (__bridge id)reference;
}

std::string name(CFStringRef reference) {
    return textIn((__bridge NSString*)reference);
}

DoubleElement* element_(AXUIElementRef reference) {
    return (__bridge DoubleElement*)reference;
}

const void* handOut(id given) {
    ++references;
    return objc_retain((__bridge void*)given);
}

} // namespace

@interface DoubleGeometry : NSObject {
@public
    AXValueType type;
    CGPoint point;
    CGSize size;
}
@end

@implementation DoubleGeometry
@end

@implementation DoubleElement

+ (DoubleElement*)numbered:(int)number {
    DoubleElement* const made = [[DoubleElement alloc] init];
    made->number = number;
    return made;
}

- (BOOL)isEqual:(id)compared {
    return [compared isKindOfClass:[DoubleElement class]] && ((DoubleElement*)compared)->number == number;
}

- (NSUInteger)hash {
    return static_cast<NSUInteger>(number);
}

@end

namespace corvanta::testing {

World& world() {
    static auto& all = *new World;
    return all;
}

long ownedReferences() {
    return references;
}

CGPoint pointIn(id value) {
    return ((DoubleGeometry*)value)->point;
}

CGSize sizeIn(id value) {
    return ((DoubleGeometry*)value)->size;
}

id makePoint(CGFloat x, CGFloat y) {
    DoubleGeometry* const made = [[DoubleGeometry alloc] init];
    made->type = kAXValueTypeCGPoint;
    made->point = {x, y};
    return made;
}

id makeSize(CGFloat width, CGFloat height) {
    DoubleGeometry* const made = [[DoubleGeometry alloc] init];
    made->type = kAXValueTypeCGSize;
    made->size = {width, height};
    return made;
}

id makeRect() {
    DoubleGeometry* const made = [[DoubleGeometry alloc] init];
    made->type = kAXValueTypeCGRect;
    return made;
}

} // namespace corvanta::testing

extern "C" {
CFTypeRef CFRetain(CFTypeRef reference) {
    return handOut(object(reference));
}

void CFRelease(CFTypeRef reference) {
    if (reference == nullptr)
        std::abort();
    --references;
    objc_release(const_cast<void*>(reference));
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
    if ([object(reference) isKindOfClass:[NSString class]])
        return text;
    if ([object(reference) isKindOfClass:[NSNumber class]])
        return isFlag(object(reference)) ? flag : number;
    if ([object(reference) isKindOfClass:[NSArray class]])
        return array;
    if ([object(reference) isKindOfClass:[DoubleElement class]])
        return element;
    return [object(reference) isKindOfClass:[DoubleGeometry class]] ? geometry : other;
}

CFHashCode CFHash(CFTypeRef reference) {
    return [object(reference) hash];
}

Boolean CFEqual(CFTypeRef left, CFTypeRef right) {
    return [object(left) isEqual:object(right)];
}

CFTypeID CFStringGetTypeID(void) {
    return text;
}

CFTypeID CFArrayGetTypeID(void) {
    return array;
}

CFTypeID CFBooleanGetTypeID(void) {
    return flag;
}

CFTypeID CFNumberGetTypeID(void) {
    return number;
}

CFTypeID AXUIElementGetTypeID(void) {
    return element;
}

CFTypeID AXValueGetTypeID(void) {
    return geometry;
}

CFIndex CFArrayGetCount(CFArrayRef reference) {
    return static_cast<CFIndex>(((__bridge NSArray*)reference).count);
}

const void* CFArrayGetValueAtIndex(CFArrayRef reference, CFIndex index) {
    return (__bridge void*)((__bridge NSArray*)reference)[static_cast<NSUInteger>(index)];
}

Boolean CFBooleanGetValue(CFBooleanRef reference) {
    return ((__bridge NSNumber*)reference).boolValue;
}

CFStringRef kAXTrustedCheckOptionPrompt = (__bridge CFStringRef) @"AXTrustedCheckOptionPrompt";

Boolean AXIsProcessTrusted(void) {
    return world().isTrusted;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    NSDictionary* const dictionary = (__bridge NSDictionary*)options;
    world().wasPrompted = [dictionary[(__bridge NSString*)kAXTrustedCheckOptionPrompt] boolValue];
    world().isTrusted |= world().wasPrompted && world().isTrustGrantedWhenAsked;
    return world().isTrusted;
}

AXUIElementRef AXUIElementCreateApplication(pid_t program) {
    return static_cast<AXUIElementRef>(handOut(world().applications.at(program)));
}

AXUIElementRef AXUIElementCreateSystemWide(void) {
    return static_cast<AXUIElementRef>(handOut([DoubleElement numbered:-1]));
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef reference, float limit) {
    element_(reference)->limit = limit;
    if (element_(reference)->number == -1)
        world().everyonesLimit = limit;
    return kAXErrorSuccess;
}

AXError AXUIElementGetPid(AXUIElementRef reference, pid_t* program) {
    *program = element_(reference)->program;
    return kAXErrorSuccess;
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef reference, CFStringRef attribute, CFTypeRef* value) {
    DoubleElement* const asked = element_(reference);
    ++asked->questions;
    if (!world().isTrusted)
        return kAXErrorAPIDisabled;
    if (asked->failure != kAXErrorSuccess)
        return asked->failure;
    const auto found = asked->attributes.find(name(attribute));
    if (found == asked->attributes.end())
        return kAXErrorNoValue;
    *value = handOut(found->second);
    // Some programs fail after they have answered.
    return asked->refused.count(name(attribute)) != 0 ? kAXErrorFailure : kAXErrorSuccess;
}

AXError AXUIElementSetAttributeValue(AXUIElementRef reference, CFStringRef attribute, CFTypeRef value) {
    DoubleElement* const asked = element_(reference);
    ++asked->questions;
    if (asked->failure != kAXErrorSuccess)
        return asked->failure;
    if (asked->refused.count(name(attribute)) != 0)
        return kAXErrorAttributeUnsupported;
    asked->written.push_back(name(attribute));
    asked->attributes[name(attribute)] = object(value);
    return kAXErrorSuccess;
}

AXError AXUIElementPerformAction(AXUIElementRef reference, CFStringRef action) {
    DoubleElement* const asked = element_(reference);
    ++asked->questions;
    if (asked->failure != kAXErrorSuccess)
        return asked->failure;
    if (asked->refused.count(name(action)) != 0)
        return kAXErrorActionUnsupported;
    asked->actions.push_back(name(action));
    asked->actionLimits.push_back(asked->limit);
    return kAXErrorSuccess;
}

AXValueRef AXValueCreate(AXValueType type, const void* value) {
    DoubleGeometry* const made = [[DoubleGeometry alloc] init];
    made->type = type;
    if (type == kAXValueTypeCGPoint)
        made->point = *static_cast<const CGPoint*>(value);
    else
        made->size = *static_cast<const CGSize*>(value);
    return static_cast<AXValueRef>(handOut(made));
}

Boolean AXValueGetValue(AXValueRef reference, AXValueType type, void* value) {
    DoubleGeometry* const read = (__bridge DoubleGeometry*)reference;
    if (read->type != type)
        return false;
    if (type == kAXValueTypeCGPoint)
        *static_cast<CGPoint*>(value) = read->point;
    else
        *static_cast<CGSize*>(value) = read->size;
    return true;
}
}
