// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityTree.h"

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace corvanta::testing {

/// Turns the event loop until the condition holds; false when it does not within the limit.
[[nodiscard]] bool eventually(const std::function<bool()>& condition,
                              std::chrono::milliseconds limit = std::chrono::seconds(30));

/// The bundled sample site on a loopback port of its own, with what its pages reported.
class SampleSite {
public:
    SampleSite();
    ~SampleSite();
    SampleSite(const SampleSite&) = delete;
    SampleSite& operator=(const SampleSite&) = delete;

    /// The address of a page; "http://127.0.0.1:PORT/" for no path.
    [[nodiscard]] QString address(const QString& path = {}) const;

    /// The last report of a page for which the condition holds.
    [[nodiscard]] std::optional<QJsonObject> report(const std::function<bool(const QJsonObject&)>& matches);

private:
    void read();

    QProcess m_server;
    QString m_baseAddress;
    QByteArray m_pending;
    std::vector<QJsonObject> m_reports;
};

/// Corvanta as a program of its own, driven from outside as an assistive technology drives it.
class DrivenCorvanta {
public:
    DrivenCorvanta() = default;
    ~DrivenCorvanta();
    DrivenCorvanta(const DrivenCorvanta&) = delete;
    DrivenCorvanta& operator=(const DrivenCorvanta&) = delete;

    void start(const QStringList& arguments);
    /// The same, printing to a descriptor that the caller keeps; `output` has nothing then.
    void start(const QStringList& arguments, int outputDescriptor);
    /// Asks it to end and waits; the exit status, nothing when it did not end in time.
    std::optional<int> quit();
    /// Waits until it has ended of its own accord; likewise.
    [[nodiscard]] std::optional<int> exitCode();

    /// Holds the program as it is, as if it had been given no time, for as long as this lives.
    ///
    /// It answers nobody meanwhile, so ask it nothing: neither it nor for a list of applications by name.
    class Pause {
    public:
        explicit Pause(const DrivenCorvanta& program);
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        int m_processID;
    };

    /// Whether it has been started and has not ended, in whatever way.
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }

    [[nodiscard]] int processID() const { return static_cast<int>(m_process.processId()); }

    /// Everything that it has printed so far.
    [[nodiscard]] const QByteArray& output();

    /// Every text that its window shows.
    [[nodiscard]] QStringList texts() const;
    [[nodiscard]] bool shows(const QString& text) const;
    [[nodiscard]] bool press(const QString& button) const;
    [[nodiscard]] bool isEnabled(const QString& button) const;
    /// Gives a button the keyboard within the window; whether it has it.
    [[nodiscard]] bool focus(const QString& button) const;
    /// Chooses an entry of its menu bar.
    [[nodiscard]] bool choose(const QString& menuItem) const;
    [[nodiscard]] bool isItemEnabled(const QString& menuItem) const;
    [[nodiscard]] bool typeAddress(const QString& address) const;
    [[nodiscard]] bool openDeviceList() const;
    /// Types what place to search for.
    [[nodiscard]] bool typePlace(const QString& name) const;
    /// Presses the first button whose name begins so.
    [[nodiscard]] bool pressBeginningWith(const QString& beginning) const;
    /// The middle of the map, "41.3874, 2.1686"; empty while there is no map.
    [[nodiscard]] QString mapMiddle() const;
    /// Picks the place in the middle of the map.
    [[nodiscard]] bool pickMapMiddle() const;
    /// Whether the map has a pin there.
    [[nodiscard]] bool hasPinAt(const QString& place) const;
    /// The address in its field, and the device that the picker shows.
    [[nodiscard]] QString address() const;
    [[nodiscard]] QString device() const;
    [[nodiscard]] std::optional<Accessible> addressField() const;

private:
    [[nodiscard]] std::optional<Accessible> window() const;
    [[nodiscard]] std::optional<Accessible> find(const QString& role, const QString& name) const;
    [[nodiscard]] std::optional<Accessible> devicePicker() const;
    [[nodiscard]] std::optional<Accessible> map() const;

    QProcess m_process;
    QByteArray m_output;
};

/// A button or a link of a page that a simulated device shows.
[[nodiscard]] std::optional<Accessible> onPage(const QString& name);
[[nodiscard]] bool pressOnPage(const QString& name);

/// The text on the desktop's clipboard, as another program reads it.
[[nodiscard]] QString clipboard();

/// The process that owns a name on the session bus, 0 when nobody does.
[[nodiscard]] int sessionProcess(const QString& name);

/// Runs a program of the lab to its end and returns its standard output; its status in `status`.
QString runTool(const QString& program, const QStringList& arguments, int* status = nullptr);

} // namespace corvanta::testing
