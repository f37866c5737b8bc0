// SPDX-License-Identifier: MIT
#include "MacAccessibilityClient.h"

#include "CFHandle.h"
#include "NativeValues.h"
#include "SilentPrograms.h"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

#include <functional>

namespace corvanta {

namespace {

/// In seconds. An action may do its work before it answers, such as opening a window.
constexpr float readLimit = 0.5F;
constexpr float actionLimit = 2.0F;

class ElementNode final : public AccessibilityNode {
public:
    explicit ElementNode(CFHandle element)
        : m_element(std::move(element)) {}

    [[nodiscard]] AXUIElementRef element() const { return m_element.as<AXUIElementRef>(); }

    [[nodiscard]] bool equals(const AccessibilityNode& other) const override {
        const auto* const node = dynamic_cast<const ElementNode*>(&other);
        return node != nullptr && CFEqual(element(), node->element());
    }

    [[nodiscard]] std::size_t hash() const override { return CFHash(element()); }

private:
    CFHandle m_element;
};

AXUIElementRef native(const AccessibilityElement& element) {
    return dynamic_cast<const ElementNode&>(element.node()).element();
}

AccessibilityElement elementOf(CFHandle element) {
    return AccessibilityElement(std::make_shared<ElementNode>(std::move(element)));
}

std::optional<AccessibilityValue> geometryOf(AXValueRef value) {
    CGPoint point = {};
    if (AXValueGetValue(value, kAXValueTypeCGPoint, &point))
        return Point{point.x, point.y};
    CGSize size = {};
    if (AXValueGetValue(value, kAXValueTypeCGSize, &size))
        return Size{size.width, size.height};
    return std::nullopt;
}

std::optional<AccessibilityValue> elementsOf(CFArrayRef array) {
    std::vector<AccessibilityElement> elements;
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index) {
        const CFTypeRef member = CFArrayGetValueAtIndex(array, index);
        if (CFGetTypeID(member) != AXUIElementGetTypeID())
            return std::nullopt;
        elements.push_back(elementOf(CFHandle::retain(member)));
    }
    return elements;
}

/// Nothing for a value of a type that the seam does not know.
std::optional<AccessibilityValue> valueOf(CFTypeRef value) {
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFStringGetTypeID())
        return textOf((__bridge NSString*)static_cast<CFStringRef>(value));
    if (type == CFBooleanGetTypeID())
        return AccessibilityValue(std::in_place_type<bool>, CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0);
    if (type == CFNumberGetTypeID())
        return ((__bridge NSNumber*)static_cast<CFNumberRef>(value)).doubleValue;
    if (type == AXValueGetTypeID())
        return geometryOf(static_cast<AXValueRef>(value));
    if (type == AXUIElementGetTypeID())
        return elementOf(CFHandle::retain(value));
    if (type == CFArrayGetTypeID())
        return elementsOf(static_cast<CFArrayRef>(value));
    return std::nullopt;
}

/// One overload for each type of the seam. The object is null where the system makes none of the value.
struct NativeValue {
    CFHandle operator()(const QString& text) const { return CFHandle::retain((__bridge CFStringRef)nativeText(text)); }

    CFHandle operator()(bool flag) const { return CFHandle::retain((__bridge CFTypeRef) @(flag)); }

    CFHandle operator()(double number) const { return CFHandle::retain((__bridge CFTypeRef) @(number)); }

    CFHandle operator()(const Point& position) const {
        const CGPoint point = {position.x, position.y};
        return CFHandle::adopt(AXValueCreate(kAXValueTypeCGPoint, &point));
    }

    CFHandle operator()(const Size& extent) const {
        const CGSize size = {extent.width, extent.height};
        return CFHandle::adopt(AXValueCreate(kAXValueTypeCGSize, &size));
    }

    CFHandle operator()(const AccessibilityElement& element) const { return CFHandle::retain(native(element)); }

    CFHandle operator()(const std::vector<AccessibilityElement>& elements) const {
        NSMutableArray<id>* const array = [NSMutableArray array];
        for (const AccessibilityElement& element : elements)
            [array addObject:(__bridge id)native(element)];
        return CFHandle::retain((__bridge CFArrayRef)array);
    }
};

class MacAccessibilityClient final : public AccessibilityClient {
public:
    explicit MacAccessibilityClient(const Clock& clock)
        : m_silent(clock) {
        const CFHandle everyone = CFHandle::adopt(AXUIElementCreateSystemWide());
        AXUIElementSetMessagingTimeout(everyone.as<AXUIElementRef>(), readLimit);
    }

    [[nodiscard]] bool isTrusted() override { return AXIsProcessTrusted(); }

    bool requestTrust() override {
        NSDictionary* const options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
        return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
    }

    [[nodiscard]] std::optional<AccessibilityElement> application(const QString& bundleIdentifier) override {
        NSRunningApplication* const running =
            [NSRunningApplication runningApplicationsWithBundleIdentifier:nativeText(bundleIdentifier)].firstObject;
        if (running == nil)
            return std::nullopt;
        return elementOf(CFHandle::adopt(AXUIElementCreateApplication(running.processIdentifier)));
    }

    [[nodiscard]] std::optional<AccessibilityValue> attribute(const AccessibilityElement& element,
                                                              QStringView name) override {
        CFTypeRef value = nullptr;
        const AXError error = ask(native(element), [&](AXUIElementRef asked) {
            return AXUIElementCopyAttributeValue(asked, (__bridge CFStringRef)nativeText(name), &value);
        });
        const CFHandle owned = CFHandle::adopt(value);
        return error == kAXErrorSuccess && owned ? valueOf(owned.get()) : std::nullopt;
    }

    bool setAttribute(const AccessibilityElement& element, QStringView name, const AccessibilityValue& value) override {
        const CFHandle object = std::visit(NativeValue(), value);
        return object &&
               ask(native(element), [&](AXUIElementRef asked) {
                   return AXUIElementSetAttributeValue(asked, (__bridge CFStringRef)nativeText(name), object.get());
               }) == kAXErrorSuccess;
    }

    bool performAction(const AccessibilityElement& element, QStringView name) override {
        return ask(native(element), [&](AXUIElementRef asked) {
                   AXUIElementSetMessagingTimeout(asked, actionLimit);
                   const AXError error = AXUIElementPerformAction(asked, (__bridge CFStringRef)nativeText(name));
                   // Zero is the limit that counts for everyone.
                   AXUIElementSetMessagingTimeout(asked, 0);
                   return error;
               }) == kAXErrorSuccess;
    }

private:
    /// The question's answer, without asking where it would only hold the caller up.
    AXError ask(AXUIElementRef element, const std::function<AXError(AXUIElementRef)>& question) {
        pid_t program = 0;
        AXUIElementGetPid(element, &program);
        if (m_silent.contains(program))
            return kAXErrorCannotComplete;
        const AXError error = question(element);
        if (error == kAXErrorCannotComplete)
            m_silent.add(program);
        return error;
    }

    SilentPrograms m_silent;
};

} // namespace

std::unique_ptr<AccessibilityClient> makeMacAccessibilityClient(const Clock& clock) {
    return std::make_unique<MacAccessibilityClient>(clock);
}

} // namespace corvanta
