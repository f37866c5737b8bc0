// SPDX-License-Identifier: MIT
#pragma once

#include "FaultTable.h"
#include "WindowObserver.h"

#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <optional>

namespace corvanta::testing {

/// The device lab with parts that can be broken and mended again, for one Corvanta on a desktop of its own.
///
/// The application works with a folder of programs that stand for the lab's; what else is broken is broken for real.
class FaultyLab {
public:
    /// Programs that are started from now on work with this lab.
    FaultyLab();
    ~FaultyLab();
    FaultyLab(const FaultyLab&) = delete;
    FaultyLab& operator=(const FaultyLab&) = delete;

    struct Application {
        int processID = 0;
        std::uint32_t window = 0;
        QString deviceID;
        QString deviceName;
        /// How many pages the device has been asked to open.
        int pages = 0;
    };

    /// Breaks something and returns once it is broken. What the application has not been started for yet, its process
    /// and its window, may be missing.
    void inflict(Fault fault, const Application& application);
    /// Mends it. What was killed or closed is not opened again.
    void lift(const Application& application);

    /// Lets the next developer tool with this operation ("boot", "open") wait before it does anything.
    void holdTool(const QString& operation);
    [[nodiscard]] bool isToolHeld(const QString& operation) const;
    void releaseTool(const QString& operation);

    /// What an earlier session with a location has left.
    static void storeProfile();

    /// The device's process, 0 while none runs.
    [[nodiscard]] static int deviceProcess();

    /// How many entries of Safari's menus begin so; 0 while no Safari runs. Asks nobody but Safari.
    [[nodiscard]] static int entriesInMenus(const QString& beginning);

private:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }

    [[nodiscard]] QString tool(const QString& name) const { return path(QStringLiteral("lab/") + name); }

    void write(const QString& name, const QByteArray& text) const;

    void setBehaviour(const QByteArray& word) const { write(QStringLiteral("behaviour"), word + '\n'); }

    void putToolsInPlace() const;
    void endHangingTools() const;
    void breakPreferences(Fault fault, const Application& application);

    QTemporaryDir m_folder;
    std::optional<Fault> m_fault;
    int m_stopped = 0;
};

} // namespace corvanta::testing
