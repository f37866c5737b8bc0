// SPDX-License-Identifier: MIT
#include "LocalSearchCompleter.h"

#include "CFHandle.h"
#include "NativeValues.h"

#import <MapKit/MapKit.h>

@interface CorvantaCompleterDelegate : NSObject <MKLocalSearchCompleterDelegate> {
@public
    corvanta::LocalSearchCompleter::Callbacks callbacks;
}
@end

@implementation CorvantaCompleterDelegate

- (void)completerDidUpdateResults:(MKLocalSearchCompleter*)__unused completer {
    // A copy, for whoever hears of it may end the completer.
    const auto didUpdate = callbacks.didUpdate;
    didUpdate();
}

- (void)completer:(MKLocalSearchCompleter*)__unused completer didFailWithError:(NSError*)error {
    const auto didFail = callbacks.didFail;
    didFail(corvanta::textOf(error.localizedDescription));
}

@end

namespace corvanta {

struct LocalSearchCompleter::Native {
    MKLocalSearchCompleter* const completer = [[MKLocalSearchCompleter alloc] init];
    /// The completer's own reference is weak.
    CorvantaCompleterDelegate* const delegate = [[CorvantaCompleterDelegate alloc] init];
};

LocalSearchCompleter::LocalSearchCompleter(Callbacks callbacks)
    : m_native(std::make_unique<Native>()) {
    m_native->delegate->callbacks = std::move(callbacks);
    m_native->completer.delegate = m_native->delegate;
}

LocalSearchCompleter::~LocalSearchCompleter() {
    // A call that is under way keeps the delegate alive.
    m_native->completer.delegate = nil;
    m_native->delegate->callbacks = {[] {}, [](const QString&) {}};
}

void LocalSearchCompleter::setResultTypes(unsigned types) {
    m_native->completer.resultTypes = static_cast<MKLocalSearchCompleterResultType>(types);
}

void LocalSearchCompleter::setQueryFragment(const QString& fragment) {
    m_native->completer.queryFragment = nativeText(fragment);
}

std::vector<PlaceCompletion> LocalSearchCompleter::results() const {
    std::vector<PlaceCompletion> all;
    for (MKLocalSearchCompletion* completion in m_native->completer.results)
        all.push_back({.title = textOf(completion.title),
                       .subtitle = textOf(completion.subtitle),
                       .source = std::shared_ptr<const void>(CFRetain((__bridge CFTypeRef)completion), &CFRelease)});
    return all;
}

} // namespace corvanta
