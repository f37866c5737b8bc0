// SPDX-License-Identifier: MIT
#pragma once

#include "ClientWindows.h"
#include "GlibPointers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvanta::lab::testing {

/// An object on the accessibility bus: who has it and where. Asked anew for everything, never remembered; libatspi 2.46
/// waits for itself for ever when events arrive during its calls.
struct Accessible {
    std::string owner;
    std::string path;

    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::uint32_t role() const;
    [[nodiscard]] bool isEnabled() const;
    /// Whether it can be seen, when its window can.
    [[nodiscard]] bool isShowing() const;
    [[nodiscard]] bool isChecked() const;
    [[nodiscard]] std::vector<Accessible> children() const;
    bool doAction() const;

    struct Place {
        int x;
        int y;
    };

    /// The middle of what is seen of it; nothing when it is not on the screen.
    [[nodiscard]] std::optional<Place> screenCentre() const;

    /// Whether the object is in the state with that number.
    [[nodiscard]] bool hasState(std::uint32_t state) const;

    /// The parent of all applications.
    [[nodiscard]] static Accessible desktop();
};

/// A program that runs until its owner ends it; what it says on standard error is kept.
class RunningProgram {
public:
    RunningProgram(const std::vector<std::string>& command, const std::string& labHome);
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    [[nodiscard]] int processIdentifier() const { return m_process; }

    [[nodiscard]] bool isRunning() const;
    void signal(int number) const;
    /// Waits for the end; the exit status, or -1 after a signal or the limit.
    int wait();
    /// Ends the program and reads what it has said.
    std::string finish();

private:
    int m_process = -1;
    bool m_isReaped = false;
    int m_status = -1;
    std::string m_errorPath;
};

/// One device fixture with its remote controls.
class TestDevice {
public:
    TestDevice(const std::string& udid, const std::string& name, const std::string& runtime,
               const std::string& labHome);

    void open(const std::string& url) const;
    void navigate(unsigned page, const std::string& url) const;
    void close(unsigned page) const;
    void shutDown() const;
    /// Takes the device off the bus, where its process goes on, or brings it back.
    void setOnBus(bool isOnBus);

    [[nodiscard]] RunningProgram& program() { return m_program; }

private:
    void call(const char* interface, const char* method, GVariant* parameters) const;

    std::string m_busName;
    std::string m_uniqueName;
    RunningProgram m_program;
};

/// Safari beside devices on the test's desktop, observed as other programs observe it: through the accessibility bus
/// and the window manager.
class SafariDesktop : public ::testing::Test {
protected:
    struct Entry {
        std::string title;
        /// Names the accessible object for as long as it lives.
        std::string path;
        bool isEnabled;
    };

    SafariDesktop();
    ~SafariDesktop() override;

    void SetUp() override;
    void TearDown() override;

    void startSafari(std::vector<std::string> arguments = {"--background"});

    /// Looks again and again until `condition` holds, for at most `limit`.
    static bool eventually(const std::function<bool()>& condition,
                           std::chrono::milliseconds limit = std::chrono::seconds(20));

    /// The frames of every program with Safari's name.
    [[nodiscard]] std::vector<Accessible> frames() const;
    [[nodiscard]] std::vector<std::string> frameTitles() const;
    [[nodiscard]] std::vector<std::string> inspectorTitles() const;
    /// The entries of the menu that is reached by the titles, from the menu bar on; empty when there is none.
    [[nodiscard]] std::vector<Entry> menu(const std::vector<std::string>& titles) const;
    [[nodiscard]] std::vector<std::string> menuTitles(const std::vector<std::string>& titles) const;
    /// The titles of the enabled entries above the first separator.
    [[nodiscard]] std::vector<std::string> pages(const std::string& device = "iPhone 16 Pro – iOS 18.2") const;
    /// The entry that is reached by the titles, from the menu bar on.
    [[nodiscard]] std::optional<Accessible> find(const std::vector<std::string>& titles) const;
    /// Whether there is such an entry and it is checked.
    [[nodiscard]] bool isChecked(const std::vector<std::string>& titles) const;
    /// What a page's item is called, and does, on the accessibility bus.
    bool press(const std::vector<std::string>& titles) const;
    /// The highest object below a frame whose title begins with `start` that has the name, at most `depth` levels
    /// down.
    [[nodiscard]] std::optional<Accessible> inFrame(const std::string& start, const std::string& name, int depth) const;
    /// Whether below some frame whose title begins with `start` is a named object, at most `depth` levels down.
    [[nodiscard]] bool frameHolds(const std::string& start, const std::string& name, int depth) const;
    /// Presses a named object somewhere below `root`.
    static bool pressButton(const Accessible& root, const std::string& name);
    /// Processes that inspect a page or are ready to, zombies not counted.
    [[nodiscard]] static std::vector<int> inspectorProcesses();
    /// Processes with the given program name among everything that runs on this desktop.
    [[nodiscard]] static std::vector<int> processes(const std::string& program);

    [[nodiscard]] TestDevice& device() { return *m_devices.front(); }

    std::string m_labHome;
    std::vector<std::unique_ptr<TestDevice>> m_devices;
    std::unique_ptr<RunningProgram> m_safari;
    ClientWindows m_windows;
};

} // namespace corvanta::lab::testing
