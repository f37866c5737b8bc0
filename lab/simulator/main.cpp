// SPDX-License-Identifier: MIT
#include "DeviceCatalogue.h"
#include "DeviceLauncher.h"
#include "DeviceService.h"
#include "DeviceSet.h"
#include "DeviceWindow.h"
#include "InspectorSamples.h"
#include "InspectorServer.h"
#include "LabFolders.h"
#include "SystemDescription.h"

#include <QDir>
#include <QFile>
#include <QMap>

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::lab;

namespace {

constexpr int portAttempts = 5;
constexpr char attemptVariable[] = "CORVANTA_INSPECTOR_ATTEMPT";

int fail(const char* text) {
    std::fprintf(stderr, "SimulatorDevice: %s\n", text);
    return EXIT_FAILURE;
}

std::vector<pid_t> children() {
    std::vector<pid_t> result;
    const QString tasks = u"/proc/self/task"_s;
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks + u'/' + task + u"/children"_s);
        if (file.open(QIODevice::ReadOnly)) {
            for (const QByteArray& word : file.readAll().split(' ')) {
                if (const pid_t process = word.trimmed().toInt(); process > 0) {
                    result.push_back(process);
                }
            }
        }
    }
    return result;
}

/// Waits until each of the processes has ended, or until the deadline. Those that outstay it remain in the list.
void awaitEnds(std::vector<int>& handles, std::chrono::steady_clock::time_point deadline) {
    using namespace std::chrono;
    std::erase_if(handles, [&](int handle) {
        const auto rest = duration_cast<milliseconds>(deadline - steady_clock::now()).count();
        pollfd ended{.fd = handle, .events = POLLIN, .revents = 0};
        if (poll(&ended, 1, static_cast<int>(std::max<decltype(rest)>(rest, 0))) <= 0) {
            return false;
        }
        close(handle);
        return true;
    });
}

/// Waits for the engine's processes, and ends those that outstay.
void awaitChildren() {
    using namespace std::chrono;
    std::vector<int> handles;
    for (const pid_t process : children()) {
        if (const int handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0)); handle >= 0) {
            handles.push_back(handle);
        }
    }
    awaitEnds(handles, steady_clock::now() + seconds(2));
    for (const int handle : handles) {
        syscall(SYS_pidfd_send_signal, handle, SIGKILL, nullptr, 0);
    }
    // A kill is a request too: the process is there until the system has taken it apart.
    awaitEnds(handles, steady_clock::now() + seconds(5));
    for (const int handle : handles) {
        close(handle);
    }
}

gboolean quitOnSignal(gpointer quit) {
    (*static_cast<std::function<void()>*>(quit))();
    return G_SOURCE_CONTINUE;
}

/// Starts this program anew: WebKit's inspector server cannot be moved to another port.
int startAgain(char** argv) {
    const int attempt = qEnvironmentVariableIntValue(attemptVariable) + 1;
    if (attempt >= portAttempts) {
        return fail("no port for the inspector server");
    }
    qputenv(attemptVariable, QByteArray::number(attempt));
    execv("/proc/self/exe", argv);
    return fail("cannot start again");
}

bool setOrientation(DeviceWindow& window, const QString& word) {
    static const QMap<QString, Orientation> orientations{{u"portrait"_s, Orientation::portrait},
                                                         {u"landscapeLeft"_s, Orientation::landscapeLeft},
                                                         {u"landscapeRight"_s, Orientation::landscapeRight}};
    const auto found = orientations.find(word);
    if (found == orientations.end()) {
        return false;
    }
    window.setOrientation(*found);
    return true;
}

/// Ends the process, and the engine's before.
[[noreturn]] void leave(std::unique_ptr<DeviceWindow>& window) {
    window.reset();
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    awaitChildren();
    std::fflush(nullptr);
    // The names are given up by the end of the process alone, so that who waits for them finds nothing left: letting
    // go of the connection before would leave a moment in which the device is off and its process is there.
    _exit(EXIT_SUCCESS);
}

int run(DeviceSet& set, const Device& device, HandedTurn& turn, const DeviceType& type, const Runtime& runtime,
        char** argv) {
    g_set_prgname("com.apple.iphonesimulator");
    g_set_application_name("Simulator");
    const std::uint16_t port = chooseInspectorPort();
    // The lab's windows are placed by other programs, which X11 allows.
    gdk_set_allowed_backends("x11");
    if (!gtk_init_check(nullptr, nullptr)) {
        return fail("cannot open the display");
    }
    gtk_icon_theme_append_search_path(gtk_icon_theme_get_default(),
                                      QFile::encodeName(programFolder() + u"/share/icons"_s).constData());
    std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop(g_main_loop_new(nullptr, FALSE), g_main_loop_unref);
    std::unique_ptr<DeviceWindow> window;
    std::unique_ptr<DeviceService> service;
    std::function<void()> quit = [&] {
        g_main_loop_quit(loop.get());
        // The loop of a script that an inspector has paused is not left before that script goes on.
        if (InspectorSamples::isPaused()) {
            g_idle_add([](gpointer shown) -> gboolean { leave(*static_cast<std::unique_ptr<DeviceWindow>*>(shown)); },
                       &window);
        }
    };
    window = std::make_unique<DeviceWindow>(
        type, runtime, device.name,
        DeviceWindow::Events{.ready = [&] { service->setBooted(); },
                             .shown = [&](bool isShown) { service->setWindowShown(isShown); },
                             .changeSettings =
                                 [&](const std::function<void(DeviceSettings&)>& change) {
                                     try {
                                         set.changeSettings(device, change);
                                     } catch (const std::exception& problem) {
                                         g_printerr("SimulatorDevice: %s\n", problem.what());
                                     }
                                     window->apply(set.settings(device));
                                 }});
    window->apply(set.settings(device));
    if (!isListening(port)) {
        turn.keepForNextProgram();
        return startAgain(argv);
    }
    DeviceActions actions{
        .openURL = [&](const QString& url) { window->pages().open(url); },
        .setLocation = [&](double latitude, double longitude) { window->pages().location().set(latitude, longitude); },
        .clearLocation = [&] { window->pages().location().clear(); },
        .followRoute = [&](const LocationRoute& route) { window->pages().location().follow(route); },
        .reloadSettings =
            [&] {
                window->apply(set.settings(device));
                if (const auto current = set.deviceWithId(device.udid)) {
                    window->setDeviceName(current->name);
                    service->setDeviceName(current->name);
                }
            },
        .screenshot = [&](const QString& format, const QString& mask,
                          double scale) { return window->screenshot(format, mask, scale); },
        .setOrientation = [&](const QString& word) { return setOrientation(*window, word); },
        .showWindow = [&](WindowFocus focus, std::function<void()> then) { window->show(focus, std::move(then)); },
        .shutdown = quit};
    service = std::make_unique<DeviceService>(
        DeviceService::Identity{device.udid, device.name, runtime.name, u"127.0.0.1:%1"_s.arg(port)},
        std::move(actions));
    if (!service->start()) {
        return fail("the device is running already, or there is no session bus");
    }
    // The service has taken its name on the same connection.
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    const InspectorSamples samples(bus);
    g_object_unref(bus);
    turn.end();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        g_unix_signal_add(signal, quitOnSignal, &quit);
    }
    g_main_loop_run(loop.get());
    leave(window);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return fail("usage: SimulatorDevice UDID");
    }
    try {
        DeviceSet set = DeviceSet::open();
        const auto device = set.deviceWithId(QString::fromUtf8(argv[1]));
        if (!device) {
            return fail("no device with that identifier");
        }
        HandedTurn turn(set, *device);
        const DeviceType* type = findDeviceType(device->deviceType);
        const Runtime* runtime = findRuntime(device->runtime);
        if (type == nullptr || runtime == nullptr) {
            return fail("the device's type or runtime is not in the catalogue");
        }
        if (SystemDescription::load().findRuntime(device->runtime) == nullptr) {
            return fail("the device's runtime is not installed");
        }
        return run(set, *device, turn, *type, *runtime, argv);
    } catch (const std::exception& problem) {
        return fail(problem.what());
    }
}
