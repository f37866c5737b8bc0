// SPDX-License-Identifier: MIT
#include "FixtureProcess.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <csignal>
#include <thread>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int answerLimit = 10'000;

} // namespace

void pauseAsTheDriver() {
    QElapsedTimer timer;
    timer.start();
    (void)waitUntil([&] { return timer.hasExpired(120); });
}

FixtureProcess::FixtureProcess(const QString& name) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(CORVANTA_MENU_FIXTURE), {name});
    (void)waitUntil([this] { return reports().contains(u"ready"_s); });
}

FixtureProcess::~FixtureProcess() {
    kill();
}

bool FixtureProcess::command(const QString& line) {
    const int before = m_answers;
    m_process.write(line.toUtf8() + '\n');
    while (m_answers == before) {
        if (!m_process.waitForReadyRead(answerLimit))
            return false;
        read();
    }
    return true;
}

QStringList FixtureProcess::reports() {
    read();
    return m_reports;
}

void FixtureProcess::sendSignal(int number) {
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

void FixtureProcess::kill() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void FixtureProcess::read() {
    while (m_process.canReadLine()) {
        const QString line = QString::fromUtf8(m_process.readLine()).chopped(1);
        if (line == u"ok")
            ++m_answers;
        else
            m_reports.append(line);
    }
}

QString titleOf(AccessibilityClient& client, const AccessibilityElement& element) {
    const auto value = client.attribute(element, u"AXTitle");
    return value && std::holds_alternative<QString>(*value) ? std::get<QString>(*value) : QString();
}

std::vector<AccessibilityElement> childrenOf(AccessibilityClient& client, const AccessibilityElement& element) {
    const auto value = client.attribute(element, u"AXChildren");
    using Elements = std::vector<AccessibilityElement>;
    return value && std::holds_alternative<Elements>(*value) ? std::get<Elements>(*value) : Elements();
}

QStringList titlesOf(AccessibilityClient& client, const std::vector<AccessibilityElement>& elements) {
    QStringList titles;
    for (const AccessibilityElement& element : elements)
        titles.append(titleOf(client, element));
    return titles;
}

std::optional<AccessibilityElement> findTitled(AccessibilityClient& client, const AccessibilityElement& top,
                                               const QString& title) {
    if (titleOf(client, top) == title)
        return top;
    for (const AccessibilityElement& child : childrenOf(client, top)) {
        if (auto found = findTitled(client, child, title))
            return found;
    }
    return std::nullopt;
}

std::vector<AccessibilityElement> windowsOf(AccessibilityClient& client, const QString& application) {
    const auto element = client.application(application);
    if (!element)
        return {};
    const auto value = client.attribute(*element, u"AXWindows");
    using Elements = std::vector<AccessibilityElement>;
    return value && std::holds_alternative<Elements>(*value) ? std::get<Elements>(*value) : Elements();
}

std::optional<AccessibilityElement> menuBarOf(AccessibilityClient& client, const QString& application) {
    const auto element = client.application(application);
    if (!element)
        return std::nullopt;
    const auto value = client.attribute(*element, u"AXMenuBar");
    if (!value || !std::holds_alternative<AccessibilityElement>(*value))
        return std::nullopt;
    return std::get<AccessibilityElement>(*value);
}

} // namespace corvanta::testing
