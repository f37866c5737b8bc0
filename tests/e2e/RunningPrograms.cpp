// SPDX-License-Identifier: MIT
#include "RunningPrograms.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QTimer>

#include <csignal>
#include <ranges>

#include <unistd.h>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        // Programs outside tell nobody when they are ready, so they are asked again after a turn of the event loop.
        QEventLoop turn;
        QTimer::singleShot(20ms, &turn, &QEventLoop::quit);
        turn.exec();
    }
    return true;
}

SampleSite::SampleSite() {
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_server.start(QStringLiteral(CORVANTA_LAB_DIRECTORY) + u"/SampleServer"_s, {});
    const bool isUp = eventually([this] { return m_server.canReadLine(); });
    if (isUp)
        m_baseAddress = QString::fromUtf8(m_server.readLine()).trimmed();
    while (m_baseAddress.endsWith(u'/'))
        m_baseAddress.chop(1);
}

SampleSite::~SampleSite() {
    m_server.terminate();
    if (!m_server.waitForFinished(5000))
        m_server.kill();
    m_server.waitForFinished(5000);
}

QString SampleSite::address(const QString& path) const {
    return m_baseAddress + u'/' + path;
}

void SampleSite::read() {
    m_pending += m_server.readAllStandardOutput();
    for (qsizetype end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
        const QByteArray line = m_pending.left(end);
        m_pending.remove(0, end + 1);
        constexpr QByteArrayView prefix("report ");
        if (line.startsWith(prefix))
            m_reports.push_back(QJsonDocument::fromJson(line.sliced(prefix.size())).object());
    }
}

std::optional<QJsonObject> SampleSite::report(const std::function<bool(const QJsonObject&)>& matches) {
    read();
    for (const QJsonObject& report : m_reports | std::views::reverse) {
        if (matches(report))
            return report;
    }
    return std::nullopt;
}

DrivenCorvanta::~DrivenCorvanta() {
    if (m_process.state() != QProcess::NotRunning && !quit()) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

void DrivenCorvanta::start(const QStringList& arguments) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(CORVANTA_PROGRAM), arguments);
    m_process.waitForStarted();
}

void DrivenCorvanta::start(const QStringList& arguments, int outputDescriptor) {
    m_process.setChildProcessModifier([outputDescriptor] { ::dup2(outputDescriptor, STDOUT_FILENO); });
    start(arguments);
}

std::optional<int> DrivenCorvanta::quit() {
    m_process.terminate();
    if (!m_process.waitForFinished(10000) || m_process.exitStatus() != QProcess::NormalExit)
        return std::nullopt;
    return m_process.exitCode();
}

std::optional<int> DrivenCorvanta::exitCode() {
    const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(10000);
    return hasEnded && m_process.exitStatus() == QProcess::NormalExit ? std::optional(m_process.exitCode())
                                                                      : std::nullopt;
}

DrivenCorvanta::Pause::Pause(const DrivenCorvanta& program)
    : m_processID(program.processID()) {
    ::kill(m_processID, SIGSTOP);
}

DrivenCorvanta::Pause::~Pause() {
    ::kill(m_processID, SIGCONT);
}

const QByteArray& DrivenCorvanta::output() {
    m_output += m_process.readAllStandardOutput();
    return m_output;
}

std::optional<Accessible> DrivenCorvanta::window() const {
    for (const Accessible& frame : frames(u"Corvanta"_s)) {
        if (frame.processID() == processID())
            return frame;
    }
    return std::nullopt;
}

QStringList DrivenCorvanta::texts() const {
    const auto frame = window();
    return frame ? frame->allTexts(Accessible::Objects::showing) : QStringList();
}

bool DrivenCorvanta::shows(const QString& text) const {
    return texts().contains(text);
}

std::optional<Accessible> DrivenCorvanta::find(const QString& role, const QString& name) const {
    const auto frame = window();
    return frame ? frame->find(role, name) : std::nullopt;
}

bool DrivenCorvanta::press(const QString& button) const {
    const auto found = find(u"push button"_s, button);
    return found && found->isSensitive() && found->press();
}

bool DrivenCorvanta::isEnabled(const QString& button) const {
    const auto found = find(u"push button"_s, button);
    return found && found->isSensitive();
}

bool DrivenCorvanta::focus(const QString& button) const {
    const auto found = find(u"push button"_s, button);
    if (found && !found->isFocused())
        found->takeFocus();
    return found && found->isFocused();
}

bool DrivenCorvanta::choose(const QString& menuItem) const {
    const auto found = find(u"menu item"_s, menuItem);
    return found && found->isSensitive() && found->press();
}

bool DrivenCorvanta::isItemEnabled(const QString& menuItem) const {
    const auto found = find(u"menu item"_s, menuItem);
    return found && found->isSensitive();
}

std::optional<Accessible> DrivenCorvanta::addressField() const {
    return find(u"text"_s, u"Page address"_s);
}

std::optional<Accessible> DrivenCorvanta::devicePicker() const {
    const auto frame = window();
    return frame ? frame->find([](const Accessible& object) { return object.role() == u"combo box"; }) : std::nullopt;
}

std::optional<Accessible> DrivenCorvanta::map() const {
    const auto frame = window();
    return frame ? frame->find([](const Accessible& object) { return object.name() == u"Map"; }) : std::nullopt;
}

bool DrivenCorvanta::typePlace(const QString& name) const {
    const auto frame = window();
    const auto field = frame ? frame->find(u"text"_s, u"Search for a place"_s) : std::nullopt;
    return field && field->setText(name);
}

bool DrivenCorvanta::pressBeginningWith(const QString& beginning) const {
    const auto frame = window();
    const auto button = frame ? frame->find([&](const Accessible& object) {
        return object.name().startsWith(beginning) && object.role() != u"text" && object.role() != u"label";
    })
                              : std::nullopt;
    return button && button->press();
}

QString DrivenCorvanta::mapMiddle() const {
    const auto shown = map();
    return shown ? shown->description() : QString();
}

bool DrivenCorvanta::pickMapMiddle() const {
    const auto shown = map();
    return shown && shown->press();
}

bool DrivenCorvanta::hasPinAt(const QString& place) const {
    const auto shown = map();
    const auto pin = shown ? shown->find([](const Accessible& object) { return object.name() == u"Selected Location"; })
                           : std::nullopt;
    return pin && pin->description().endsWith(place);
}

bool DrivenCorvanta::typeAddress(const QString& address) const {
    const auto field = addressField();
    return field && field->setText(address);
}

bool DrivenCorvanta::openDeviceList() const {
    const auto picker = devicePicker();
    return picker && picker->press();
}

QString DrivenCorvanta::address() const {
    const auto field = addressField();
    return field ? field->text() : QString();
}

QString DrivenCorvanta::device() const {
    const auto picker = devicePicker();
    return picker ? picker->name() : QString();
}

std::optional<Accessible> onPage(const QString& name) {
    for (const Accessible& frame : frames(u"com.apple.iphonesimulator"_s)) {
        if (auto found = frame.find([&](const Accessible& object) { return object.name() == name; }))
            return found;
    }
    return std::nullopt;
}

bool pressOnPage(const QString& name) {
    const auto found = onPage(name);
    return found && found->press();
}

QString clipboard() {
    QProcess reader;
    reader.start(QStringLiteral(CORVANTA_CLIPBOARD_READER), QStringList());
    reader.waitForFinished(10'000);
    return QString::fromUtf8(reader.readAllStandardOutput());
}

int sessionProcess(const QString& name) {
    const QDBusReply<uint> reply = QDBusConnection::sessionBus().interface()->servicePid(name);
    return reply.isValid() ? static_cast<int>(reply.value()) : 0;
}

QString runTool(const QString& program, const QStringList& arguments, int* status) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(CORVANTA_LAB_DIRECTORY) + u'/' + program, arguments);
    process.waitForFinished(60000);
    if (status)
        *status = process.exitCode();
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace corvanta::testing
