// SPDX-License-Identifier: MIT
#include "FakeDesktop.h"

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

bool FakeDesktop::isRunning(const QString& bundleIdentifier) const {
    return running.contains(bundleIdentifier);
}

void FakeDesktop::activate(const QString& bundleIdentifier) {
    m_log.add(u"activate "_s + bundleIdentifier);
}

void FakeDesktop::activateSelf() {
    m_log.add(u"activateSelf"_s);
}

std::optional<QString> FakeDesktop::applicationPath(const QString& bundleIdentifier) const {
    const auto found = paths.constFind(bundleIdentifier);
    return found == paths.cend() ? std::nullopt : std::optional(*found);
}

QCoro::Task<void> FakeDesktop::openApplication(QString path) {
    m_log.add(u"openApplication "_s + path);
    co_await script.play(DesktopOperation::openApplication);
    running.insert(paths.key(path));
    if (whenOpened)
        whenOpened(path);
}

bool FakeDesktop::openURL(const URL& url) {
    m_log.add(u"open "_s + url.absoluteString());
    return takesURLs;
}

} // namespace corvanta::testing
