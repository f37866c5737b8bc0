// SPDX-License-Identifier: MIT
#include "MacDesktop.h"

#include "Answer.h"
#include "NativeDesktop.h"
#include "NativeError.h"

namespace corvanta {

bool MacDesktop::isRunning(const QString& bundleIdentifier) const {
    return NativeDesktop::isRunning(bundleIdentifier);
}

void MacDesktop::activate(const QString& bundleIdentifier) {
    NativeDesktop::activate(bundleIdentifier);
}

void MacDesktop::activateSelf() {
    NativeDesktop::activateSelf();
}

std::optional<QString> MacDesktop::applicationPath(const QString& bundleIdentifier) const {
    return NativeDesktop::applicationPath(bundleIdentifier);
}

QCoro::Task<void> MacDesktop::openApplication(QString path) {
    Answer<NativeDesktop::Failure> answer;
    NativeDesktop::openApplication(path, [answer](const NativeDesktop::Failure& failure) { answer.give(failure); });
    const auto failure = co_await std::move(answer).wait();
    if (failure && *failure)
        throw NativeError(**failure);
}

bool MacDesktop::openURL(const URL& url) {
    return NativeDesktop::openURL(url.absoluteString());
}

std::vector<Screen> MacDesktop::screens() const {
    return NativeDesktop::screens();
}

std::optional<Screen> MacDesktop::mainScreen() const {
    return NativeDesktop::mainScreen();
}

OperatingSystemVersion MacDesktop::operatingSystemVersion() const {
    const NativeDesktop::Version version = NativeDesktop::operatingSystemVersion();
    return {version.major, version.minor};
}

} // namespace corvanta
