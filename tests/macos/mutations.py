# SPDX-License-Identifier: MIT
"""Faults that somebody could make in the layer. Each is planted alone, and one of the checks must catch it."""

import concurrent.futures
import dataclasses
import pathlib
import re
import shutil
import subprocess

import compiling
import declarations
import thinness
from compiling import Failure, say


@dataclasses.dataclass(frozen=True)
class Fault:
    name: str
    file: str
    old: str
    new: str


CLIENT = "MacAccessibilityClient.mm"
COMPLETER = "LocalSearchCompleter.mm"
DESKTOP = "NativeDesktop.mm"
HANDLE = "CFHandle.h"
MAP = "MacMapSurface.mm"
SEARCH = "LocalSearch.mm"
VALUES = "NativeValues.mm"
WINDOW = "MacControlWindow.mm"

FAULTS = [
    # Selectors and properties
    Fault("wrong selector", DESKTOP, "completionHandler:^(", "completion:^("),
    Fault("wrong class method", DESKTOP, "ApplicationsWithBundleIdentifier:", "ApplicationsWithBundleID:"),
    Fault("wrong property", MAP, "m_map.showsCompass", "m_map.showCompass"),
    Fault("wrong property of an error", DESKTOP, "error.localizedDescription", "error.description"),
    Fault("misspelt @selector", MAP, "@selector(handleClick:)", "@selector(handleclick:)"),
    Fault("misspelt delegate method, results", COMPLETER, "completerDidUpdateResults:", "completerDidUpdateResult:"),
    Fault("misspelt delegate method, failure", COMPLETER, "didFailWithError:", "didFail:"),
    Fault("misspelt delegate method, marker", MAP, "viewForAnnotation:(", "viewForAnotation:("),
    Fault("API that is newer than macOS 15", MAP, "m_map.showsScale =", "m_map.newInTwentySix ="),
    # Arguments
    Fault(
        "text in the place of a URL", DESKTOP, "URL:[NSURL fileURLWithPath:nativeText(path)]", "URL:nativeText(path)"
    ),
    Fault(
        "parameters of a block exchanged",
        DESKTOP,
        "([[maybe_unused]] NSRunningApplication* application, NSError* error)",
        "(NSError* error, [[maybe_unused]] NSRunningApplication* application)",
    ),
    Fault("wrong type of a delegate's parameter", COMPLETER, "didFailWithError:(NSError*)", "didFailWithError:(NSString*)"),
    Fault("wrong type of a delegate", MAP, "m_map.delegate = m_coordinator", "m_map.delegate = m_map"),
    Fault("protocol not adopted", COMPLETER, "NSObject <MKLocalSearchCompleterDelegate>", "NSObject"),
    Fault("nil in the place of an object", DESKTOP, "[NSWorkspaceOpenConfiguration configuration]", "nil"),
    Fault(
        "nullable in the place of an object",
        DESKTOP,
        "url != nil && [NSWorkspace.sharedWorkspace openURL:url]",
        "[NSWorkspace.sharedWorkspace openURL:[NSURL URLWithString:nativeText(address)]]",
    ),
    Fault("wrong order of arguments", CLIENT, "SetAttributeValue(asked, (__bridge CFStringRef)nativeText(name)",
          "SetAttributeValue((__bridge CFStringRef)nativeText(name), asked"),
    Fault("out-parameter of another type", CLIENT, "CFTypeRef value = nullptr;", "AXValueRef value = nullptr;"),
    Fault("wrong option", DESKTOP, "NSApplicationActivateAllWindows", "static_cast<NSApplicationActivationOptions>(2)"),
    Fault("value created as another kind", CLIENT, "AXValueCreate(kAXValueTypeCGSize", "AXValueCreate(kAXValueTypeCGPoint"),
    Fault("value read as another kind", CLIENT, "kAXValueTypeCGPoint, &point))\n", "kAXValueTypeCGSize, &point))\n"),
    # Bridging
    Fault("no bridging cast to CoreFoundation", CLIENT, "asked, (__bridge CFStringRef)nativeText(name), &value",
          "asked, nativeText(name), &value"),
    Fault("cast without a bridge", CLIENT, "(__bridge CFDictionaryRef)options", "(CFDictionaryRef)options"),
    Fault("no bridging cast from CoreFoundation", CLIENT, "textOf((__bridge NSString*)static_cast", "textOf(static_cast"),
    Fault("bridge to another class", CLIENT, "static_cast<CFStringRef>(value)", "static_cast<CFArrayRef>(value)"),
    Fault("bridge that gives a reference away", CLIENT, "textOf((__bridge NSString*)", "textOf((__bridge_transfer NSString*)"),
    Fault("bridge that keeps a reference", CLIENT, "(__bridge CFDictionaryRef)", "(__bridge_retained CFDictionaryRef)"),
    # Ownership
    Fault("reference never released", HANDLE, "CFRelease(m_object);", "m_object = nullptr;"),
    Fault("reference owned twice", HANDLE, "std::exchange(other.m_object, nullptr)", "other.m_object"),
    Fault("result of Create dropped", CLIENT, "AXUIElementSetMessagingTimeout(everyone.as<AXUIElementRef>(), readLimit)",
          "AXUIElementSetMessagingTimeout(AXUIElementCreateSystemWide(), readLimit)"),
    Fault("result of Copy retained once more", CLIENT, "owned = CFHandle::adopt(value)",
          "owned = value != nullptr ? CFHandle::retain(value) : CFHandle()"),
    Fault("result of Create retained once more", CLIENT, "CFHandle::adopt(AXUIElementCreateApplication",
          "CFHandle::retain(AXUIElementCreateApplication"),
    Fault("member of an array adopted", CLIENT, "CFHandle::retain(member)", "CFHandle::adopt(member)"),
    Fault("borrowed element adopted", CLIENT, "elementOf(CFHandle::retain(value))", "elementOf(CFHandle::adopt(value))"),
    Fault("borrowed object adopted", CLIENT, "CFHandle::retain((__bridge CFStringRef)", "CFHandle::adopt((__bridge CFStringRef)"),
    Fault("suggestion released without a retain", COMPLETER, "CFRetain((__bridge CFTypeRef)completion)",
          "(__bridge CFTypeRef)completion"),
    Fault("suggestion never released", COMPLETER, "&CFRelease)", "[](const void*) {})"),
    Fault("delegate that nobody keeps", COMPLETER, "completer.delegate = m_native->delegate",
          "completer.delegate = [[CorvantaCompleterDelegate alloc] init]"),
    Fault("search that nobody keeps", SEARCH, "(void)search;", ""),
    Fault("block and object keep each other", MAP, "    const NSPoint point = [recognizer",
          "    again = ^{ [self handleClick:recognizer]; };\n    const NSPoint point = [recognizer"),
    # Failures and types
    Fault("failure taken for success", CLIENT, "error == kAXErrorSuccess && owned", "owned"),
    Fault("refused write taken for success", CLIENT, "object.get());\n               }) == kAXErrorSuccess",
          "object.get());\n               }) <= kAXErrorSuccess"),
    Fault("member of an array of any type", CLIENT, "CFGetTypeID(member) != AXUIElementGetTypeID()", "member == nullptr"),
    Fault("flag taken for a number", CLIENT, "type == CFBooleanGetTypeID()", "type == CFHashCode()"),
    Fault("flag written as a number", CLIENT, "@(flag)", "@(flag ? 1.0 : 0.0)"),
    Fault("prompt not asked for", CLIENT, ": @YES}", ": @NO}"),
    Fault("identity of the reference", CLIENT, "CFEqual(element(), node->element())", "element() == node->element()"),
    Fault("hash of the reference", CLIENT, "CFHash(element())", "reinterpret_cast<std::size_t>(element())"),
    Fault("limit not taken back", CLIENT, "AXUIElementSetMessagingTimeout(asked, 0)",
          "AXUIElementSetMessagingTimeout(asked, 1)"),
    Fault("silent program asked again", CLIENT, "m_silent.add(program)", "(void)program"),
    Fault("text cut short", VALUES, "(text.size())", "(text.size() / 2)"),
    # Threads, delegates, geometry
    Fault("answer on AppKit's queue", DESKTOP,
          "QMetaObject::invokeMethod(mainThread, [done, failure] { done(failure); }, Qt::QueuedConnection)",
          "(void)mainThread, done(failure)"),
    Fault("delegate not wired", MAP, "m_map.delegate = m_coordinator;", ""),
    Fault("clicks not heard", MAP, "[m_map addGestureRecognizer:click];", "(void)click;"),
    Fault("calls after the end", COMPLETER, "m_native->delegate->callbacks = {[] {}, [](const QString&) {}};", ""),
    Fault("map not shown", MAP, "[m_host addSubview:m_map];", ""),
    Fault("view upside down", MAP, "return YES;", "return NO;"),
    Fault("point of another view", MAP, "toCoordinateFromView:m_host", "toCoordinateFromView:m_map"),
    Fault("span exchanged", MAP, "MKCoordinateSpanMake(region.span.latitudeDelta, region.span.longitudeDelta)",
          "MKCoordinateSpanMake(region.span.longitudeDelta, region.span.latitudeDelta)"),
    Fault("marker not reused", MAP, "reused.annotation = annotation;", ""),
    Fault("frame set without its motion", WINDOW, "animate:YES", "animate:NO"),
    Fault("frame of the screen without its panels", VALUES, "rectOf(screen.visibleFrame)", "rectOf(screen.frame)"),
    # Decisions that belong above the seam
    Fault("decision by a text", SEARCH, "if (error != nil)", 'if (error != nil || textOf(item_(response)) == QString())'),
    Fault("decision by a geometry", VALUES, "    return {rect.origin.x,", "    if (rect.size.width < 1)\n        return {};\n    return {rect.origin.x,"),
]
# What else a fault needs.
ALSO = {
    "block and object keep each other": (MAP, "    __weak NSView* host;\n", "    __weak NSView* host;\n    void (^again)(void);\n"),
    "decision by a text": (SEARCH, "} // namespace\n", "NSString* item_(MKLocalSearchResponse* response) {\n    return response.mapItems.firstObject.name;\n}\n\n} // namespace\n"),
}


class Planted:
    """A copy of the layer with one fault in it."""

    def __init__(self, fault, build):
        self.fault = fault
        self.name = re.sub(r"\W+", "-", fault.name)
        self.folder = pathlib.Path(build) / "planted" / self.name
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.build = build
        changes = [(fault.file, fault.old, fault.new), *([ALSO[fault.name]] if fault.name in ALSO else [])]
        texts = {}
        for file, old, new in changes:
            text = texts.get(file, (compiling.LAYER / file).read_text())
            if old not in text:
                raise Failure(f"{fault.name}: {file} has no {old!r} any more")
            texts[file] = text.replace(old, new, 1)
        # A header is found in the folder of whoever includes it, so its sources go along.
        files = [fault.file] if fault.file.endswith(".mm") else [path.name for path in compiling.LAYER.iterdir()]
        for file in files:
            (self.folder / file).write_text(texts.get(file, (compiling.LAYER / file).read_text()))
        self.sources = sorted(self.folder.glob("*.mm"))

    def types(self):
        for source in self.sources:
            compiling.check_types(source)

    def run(self):
        planted = {path.name: path for path in self.folder.iterdir()}
        layer = [planted.get(path.name, path) for path in compiling.layer_sources()]
        try:
            program = compiling.build_program(self.build, layer, f"planted/{self.name}/program")
            compiling.run_program(program)
        except subprocess.TimeoutExpired:
            raise Failure("it never ends") from None

    def analyse(self):
        for source in self.sources:
            compiling.analyse(source)

    def delegates(self):
        undeclared = [method for source in self.sources for method in declarations.undeclared_methods(source)]
        if undeclared:
            raise Failure("declared nowhere: " + ", ".join(undeclared))

    def thin(self):
        found = [place for source in self.sources for place in thinness.decisions(source)]
        if found:
            raise Failure(found[0])

    def caught_by(self):
        """The check that catches the fault with what it says, or nothing."""
        # The quick ones first, and of the others first what catches most.
        checks = [self.types, self.run, self.analyse, self.delegates, self.thin]
        if "decision" in self.fault.name:
            checks = [self.types, self.thin]
        try:
            for check in checks:
                try:
                    check()
                except Failure as failure:
                    return check.__name__, telling_line(str(failure))
        finally:
            shutil.rmtree(self.folder)
        return None


def telling_line(text):
    patterns = (r"error: (.*)", r"warning: (.*)", r"Objective-C runtime: (.*)", r"ERROR: (.*)", r"(\[  FAILED  \] .*) \(", r"(.*)")
    return next(match.group(1) for pattern in patterns if (match := re.search(pattern, text)))[:90]


def check(build):
    # What is shared by all of them is built once, and shows that nothing is wrong without a fault.
    compiling.run_program(compiling.build_program(build))
    missed = []
    with concurrent.futures.ThreadPoolExecutor(compiling.JOBS) as pool:
        futures = [(fault, pool.submit(lambda fault=fault: Planted(fault, build).caught_by())) for fault in FAULTS]
        for fault, future in futures:
            caught = future.result()
            if caught is None:
                missed.append(fault.name)
            say(f"{caught[0] if caught else 'NOT CAUGHT':10}  {fault.name:40}  {caught[1] if caught else ''}")
    if missed:
        raise Failure(f"{len(missed)} of {len(FAULTS)} faults were not caught: {', '.join(missed)}")
    return f"{len(FAULTS)} of {len(FAULTS)} faults were caught"
