// SPDX-License-Identifier: MIT
#include "SafariDesktop.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace corvanta::lab::testing {

namespace {

using namespace std::chrono_literals;

constexpr const char* safariName = "com.apple.Safari";

constexpr std::uint32_t menuBarRole = 34;
constexpr std::uint32_t pushButtonRole = 43;
constexpr std::uint32_t toggleButtonRole = 62;
constexpr std::uint32_t checkedState = 4;
constexpr std::uint32_t sensitiveState = 24;
constexpr std::uint32_t showingState = 25;
constexpr int answerLimit = 5000;

GDBusConnection* accessibilityBus() {
    static const GlibPointer<GDBusConnection> bus = [] {
        const GlibPointer<GDBusConnection> session(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        const GlibPointer<GVariant> answer(g_dbus_connection_call_sync(
            session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", nullptr,
            G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, answerLimit, nullptr, nullptr));
        const char* address = nullptr;
        g_variant_get(answer.get(), "(&s)", &address);
        return GlibPointer<GDBusConnection>(g_dbus_connection_new_for_address_sync(
            address,
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr));
    }();
    return bus.get();
}

/// The answer, or null from an object that is gone.
GlibPointer<GVariant> ask(const Accessible& object, const char* interface, const char* method,
                          GVariant* parameters = nullptr) {
    return GlibPointer<GVariant>(
        g_dbus_connection_call_sync(accessibilityBus(), object.owner.c_str(), object.path.c_str(), interface, method,
                                    parameters, nullptr, G_DBUS_CALL_FLAGS_NONE, answerLimit, nullptr, nullptr));
}

/// The answers to one question to each of the objects, asked all at once; null from those that are gone. One after
/// another, the questions of a whole tree wait longer for a turn of the processor than for their answers.
std::vector<GlibPointer<GVariant>> askAll(const std::vector<Accessible>& objects, const char* interface,
                                          const char* method, const std::function<GVariant*()>& parameters) {
    struct Question {
        GlibPointer<GVariant> answer;
        std::size_t* unanswered;
    };

    std::size_t unanswered = objects.size();
    std::vector<Question> questions(objects.size());
    // Of its own, so that nothing else is served meanwhile.
    GMainContext* const context = g_main_context_new();
    g_main_context_push_thread_default(context);
    for (std::size_t index = 0; index < objects.size(); ++index) {
        questions[index].unanswered = &unanswered;
        g_dbus_connection_call(
            accessibilityBus(), objects[index].owner.c_str(), objects[index].path.c_str(), interface, method,
            parameters(), nullptr, G_DBUS_CALL_FLAGS_NONE, answerLimit, nullptr,
            [](GObject* bus, GAsyncResult* result, gpointer data) {
                auto* const question = static_cast<Question*>(data);
                question->answer.reset(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
                --*question->unanswered;
            },
            &questions[index]);
    }
    while (unanswered > 0)
        g_main_context_iteration(context, TRUE);
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
    std::vector<GlibPointer<GVariant>> answers;
    answers.reserve(questions.size());
    for (Question& question : questions)
        answers.push_back(std::move(question.answer));
    return answers;
}

std::string nameIn(GVariant* answer) {
    GVariant* rawValue = nullptr;
    g_variant_get(answer, "(v)", &rawValue);
    const GlibPointer<GVariant> value(rawValue);
    return g_variant_get_string(value.get(), nullptr);
}

GVariant* nameQuestion() {
    return g_variant_new("(ss)", "org.a11y.atspi.Accessible", "Name");
}

std::vector<Accessible> childrenIn(GVariant* answer) {
    std::vector<Accessible> result;
    GVariantIter* iterator = nullptr;
    g_variant_get(answer, "(a(so))", &iterator);
    const char* owner = nullptr;
    const char* path = nullptr;
    while (g_variant_iter_next(iterator, "(&s&o)", &owner, &path) != FALSE)
        result.push_back({owner, path});
    g_variant_iter_free(iterator);
    return result;
}

std::optional<Accessible> childIn(GVariant* answer) {
    const char* owner = nullptr;
    const char* path = nullptr;
    g_variant_get(answer, "((&s&o))", &owner, &path);
    return std::string_view(path).ends_with("/null") ? std::nullopt : std::optional(Accessible{owner, path});
}

/// The children of all of the objects.
std::vector<Accessible> childrenOf(const std::vector<Accessible>& parents) {
    std::vector<Accessible> result;
    std::vector<Accessible> childless;
    const auto lists = askAll(parents, "org.a11y.atspi.Accessible", "GetChildren", [] { return nullptr; });
    for (std::size_t index = 0; index < parents.size(); ++index) {
        const auto list = lists[index] ? childrenIn(lists[index].get()) : std::vector<Accessible>();
        std::ranges::copy(list, std::back_inserter(result));
        if (lists[index] && list.empty())
            childless.push_back(parents[index]);
    }
    // What another process has put into this one's window is told one by one only.
    for (const auto& answer :
         askAll(childless, "org.a11y.atspi.Accessible", "GetChildAtIndex", [] { return g_variant_new("(i)", 0); })) {
        if (const auto child = answer ? childIn(answer.get()) : std::nullopt)
            result.push_back(*child);
    }
    return result;
}

/// The first of them with the name.
std::optional<Accessible> oneNamed(const std::vector<Accessible>& objects, const std::string& name) {
    const auto names = askAll(objects, "org.freedesktop.DBus.Properties", "Get", nameQuestion);
    for (std::size_t index = 0; index < objects.size(); ++index) {
        if (names[index] && nameIn(names[index].get()) == name)
            return objects[index];
    }
    return std::nullopt;
}

std::optional<Accessible> firstDescendant(const Accessible& root, int depth,
                                          const std::function<bool(const Accessible&)>& matches) {
    if (depth == 0)
        return std::nullopt;
    for (const Accessible& child : root.children()) {
        if (matches(child))
            return child;
        if (auto found = firstDescendant(child, depth - 1, matches))
            return found;
    }
    return std::nullopt;
}

std::optional<Accessible> childNamed(const Accessible& parent, const std::string& name) {
    for (const Accessible& child : parent.children()) {
        if (child.name() == name)
            return child;
    }
    return std::nullopt;
}

std::optional<Accessible> descend(const std::vector<Accessible>& frames, const std::vector<std::string>& titles) {
    for (const Accessible& frame : frames) {
        auto position =
            firstDescendant(frame, 3, [](const Accessible& candidate) { return candidate.role() == menuBarRole; });
        for (const std::string& title : titles) {
            if (position)
                position = childNamed(*position, title);
        }
        if (position)
            return position;
    }
    return std::nullopt;
}

std::string textOfFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// The lines in which the program itself reports a fault. Drivers, the toolkit's libraries and the accessibility
/// bridge (which is dbind) have their say on the same stream, on some machines and not on others; so has the engine
/// when a process of its pages takes more than ten seconds to leave.
std::string complaints(const std::string& output) {
    static constexpr std::array marks{"WARNING **", "CRITICAL **", "ERROR **", "Sanitizer", "runtime error:"};
    static constexpr std::array others{"dbind-WARNING", "WebProcess didn't exit as expected"};
    std::istringstream lines(output);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        const bool isFault =
            std::ranges::any_of(marks, [&](const char* mark) { return line.find(mark) != std::string::npos; });
        const bool isOfOthers =
            std::ranges::any_of(others, [&](const char* mark) { return line.find(mark) != std::string::npos; });
        if (isFault && !isOfOthers)
            result += line + '\n';
    }
    return result;
}

} // namespace

std::string Accessible::name() const {
    const auto answer = ask(*this, "org.freedesktop.DBus.Properties", "Get", nameQuestion());
    return answer ? nameIn(answer.get()) : std::string();
}

std::uint32_t Accessible::role() const {
    std::uint32_t role = 0;
    if (const auto answer = ask(*this, "org.a11y.atspi.Accessible", "GetRole"))
        g_variant_get(answer.get(), "(u)", &role);
    return role;
}

bool Accessible::isEnabled() const {
    return hasState(sensitiveState);
}

bool Accessible::isShowing() const {
    return hasState(showingState);
}

bool Accessible::hasState(std::uint32_t state) const {
    const auto answer = ask(*this, "org.a11y.atspi.Accessible", "GetState");
    if (!answer)
        return false;
    const GlibPointer<GVariant> states(g_variant_get_child_value(answer.get(), 0));
    std::uint32_t firstStates = 0;
    g_variant_get_child(states.get(), 0, "u", &firstStates);
    return (firstStates >> state & 1U) != 0;
}

bool Accessible::isChecked() const {
    return hasState(checkedState);
}

std::vector<Accessible> Accessible::children() const {
    return childrenOf({*this});
}

bool Accessible::doAction() const {
    gboolean isDone = FALSE;
    if (const auto answer = ask(*this, "org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0)))
        g_variant_get(answer.get(), "(b)", &isDone);
    return isDone != FALSE;
}

std::optional<Accessible::Place> Accessible::screenCentre() const {
    constexpr std::uint32_t screenCoordinates = 0;
    const auto answer = ask(*this, "org.a11y.atspi.Component", "GetExtents", g_variant_new("(u)", screenCoordinates));
    if (!answer)
        return std::nullopt;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    g_variant_get(answer.get(), "((iiii))", &x, &y, &width, &height);
    return width > 0 && height > 0 ? std::optional(Place{x + width / 2, y + height / 2}) : std::nullopt;
}

Accessible Accessible::desktop() {
    return {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
}

RunningProgram::RunningProgram(const std::vector<std::string>& command, const std::string& labHome) {
    static int count = 0;
    m_errorPath = labHome + "/stderr" + std::to_string(++count);
    const std::string homeVariable = "CORVANTA_LAB_HOME=" + labHome;
    std::vector<char*> environment{const_cast<char*>(homeVariable.c_str())};
    for (char** variable = environ; *variable; ++variable)
        environment.push_back(*variable);
    environment.push_back(nullptr);
    std::vector<char*> arguments;
    std::ranges::transform(command, std::back_inserter(arguments),
                           [](const std::string& text) { return const_cast<char*>(text.c_str()); });
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, m_errorPath.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    pid_t process = -1;
    if (posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environment.data()) != 0)
        ADD_FAILURE() << "cannot start " << command.front();
    posix_spawn_file_actions_destroy(&actions);
    m_process = process;
}

RunningProgram::~RunningProgram() {
    if (!m_isReaped) {
        signal(SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
}

bool RunningProgram::isRunning() const {
    siginfo_t information{};
    return !m_isReaped && waitid(P_PID, static_cast<id_t>(m_process), &information, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           information.si_pid == 0;
}

void RunningProgram::signal(int number) const {
    if (!m_isReaped)
        kill(m_process, number);
}

int RunningProgram::wait() {
    for (int attempt = 0; attempt < 1000 && isRunning(); ++attempt)
        std::this_thread::sleep_for(10ms);
    if (m_isReaped || isRunning())
        return m_status;
    int status = 0;
    waitpid(m_process, &status, 0);
    m_isReaped = true;
    m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return m_status;
}

std::string RunningProgram::finish() {
    signal(SIGTERM);
    wait();
    return textOfFile(m_errorPath);
}

TestDevice::TestDevice(const std::string& udid, const std::string& name, const std::string& runtime,
                       const std::string& labHome)
    : m_busName("dev.corvanta.Lab.Device.U" + udid)
    , m_program({DEVICE_FIXTURE, udid, name, runtime}, labHome) {}

void TestDevice::open(const std::string& url) const {
    call("dev.corvanta.Lab.Device1", "OpenURL", g_variant_new("(s)", url.c_str()));
}

void TestDevice::navigate(unsigned page, const std::string& url) const {
    call("dev.corvanta.Lab.DeviceFixture1", "Navigate", g_variant_new("(us)", page, url.c_str()));
}

void TestDevice::close(unsigned page) const {
    call("dev.corvanta.Lab.DeviceFixture1", "ClosePage", g_variant_new("(u)", page));
}

void TestDevice::shutDown() const {
    call("dev.corvanta.Lab.Device1", "Shutdown", nullptr);
}

void TestDevice::setOnBus(bool isOnBus) {
    const GlibPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!isOnBus) {
        const GlibPointer<GVariant> owner(g_dbus_connection_call_sync(
            bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetNameOwner",
            g_variant_new("(s)", m_busName.c_str()), nullptr, G_DBUS_CALL_FLAGS_NONE, 10000, nullptr, nullptr));
        const char* name = nullptr;
        if (owner)
            g_variant_get(owner.get(), "(&s)", &name);
        m_uniqueName = name ? name : "";
    }
    const GlibPointer<GVariant> answer(g_dbus_connection_call_sync(
        bus.get(), m_uniqueName.c_str(), "/dev/corvanta/Lab/Device", "dev.corvanta.Lab.DeviceFixture1", "SetOnBus",
        g_variant_new("(b)", isOnBus), nullptr, G_DBUS_CALL_FLAGS_NONE, 10000, nullptr, nullptr));
    EXPECT_TRUE(answer);
}

void TestDevice::call(const char* interface, const char* method, GVariant* parameters) const {
    const GlibPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    const GlibPointer<GVariant> owned(parameters ? g_variant_ref_sink(parameters) : nullptr);
    // The fixture may be just starting.
    for (int attempt = 0; attempt < 200; ++attempt) {
        GError* rawError = nullptr;
        const GlibPointer<GVariant> answer(g_dbus_connection_call_sync(
            bus.get(), m_uniqueName.empty() ? m_busName.c_str() : m_uniqueName.c_str(), "/dev/corvanta/Lab/Device",
            interface, method, owned.get(), nullptr, G_DBUS_CALL_FLAGS_NONE, 10000, nullptr, &rawError));
        const GlibPointer<GError> error(rawError);
        if (answer)
            return;
        if (!g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)) {
            ADD_FAILURE() << method << ": " << error->message;
            return;
        }
        std::this_thread::sleep_for(50ms);
    }
    ADD_FAILURE() << m_busName << " did not appear";
}

SafariDesktop::SafariDesktop() {
    m_labHome = (std::filesystem::temp_directory_path() / "corvanta-safari-test.XXXXXX").string();
    if (!mkdtemp(m_labHome.data()))
        ADD_FAILURE() << "no folder for the test";
}

SafariDesktop::~SafariDesktop() {
    std::error_code ignored;
    std::filesystem::remove_all(m_labHome, ignored);
}

void SafariDesktop::SetUp() {
    m_devices.push_back(std::make_unique<TestDevice>("TEST_1", "iPhone 16 Pro", "iOS 18.2", m_labHome));
}

void SafariDesktop::TearDown() {
    if (m_safari)
        EXPECT_EQ(complaints(m_safari->finish()), "") << "Safari or an inspector has complained";
    for (const auto& known : m_devices)
        known->program().finish();
    EXPECT_TRUE(eventually([] { return inspectorProcesses().empty(); }));
    EXPECT_TRUE(eventually([] { return processes("WebKitWebProcess").empty(); }));
}

void SafariDesktop::startSafari(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), SAFARI_PROGRAM);
    m_safari = std::make_unique<RunningProgram>(arguments, m_labHome);
    ASSERT_TRUE(eventually([this] { return !menu({}).empty(); }))
        << "Safari's menu bar is not on the accessibility bus";
}

bool SafariDesktop::eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const auto start = std::chrono::steady_clock::now();
        if (condition())
            return true;
        const auto now = std::chrono::steady_clock::now();
        if (now > end)
            return false;
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        // Whoever is asked has as long for what is waited for as for its answers.
        std::this_thread::sleep_for(std::max<std::chrono::steady_clock::duration>(now - start, 5ms));
    }
}

std::vector<Accessible> SafariDesktop::frames() const {
    std::vector<Accessible> all;
    for (const Accessible& application : Accessible::desktop().children()) {
        if (application.name() == safariName)
            std::ranges::copy(application.children(), std::back_inserter(all));
    }
    return all;
}

std::vector<std::string> SafariDesktop::frameTitles() const {
    std::vector<std::string> titles;
    std::ranges::transform(frames(), std::back_inserter(titles), &Accessible::name);
    return titles;
}

std::vector<std::string> SafariDesktop::inspectorTitles() const {
    std::vector<std::string> titles = frameTitles();
    std::erase_if(titles, [](const std::string& title) { return !title.starts_with("Web Inspector"); });
    return titles;
}

std::vector<SafariDesktop::Entry> SafariDesktop::menu(const std::vector<std::string>& titles) const {
    std::vector<Entry> entries;
    const auto root = descend(frames(), titles);
    if (!root)
        return entries;
    for (const Accessible& child : root->children())
        entries.push_back({child.name(), child.path, child.isEnabled()});
    return entries;
}

std::vector<std::string> SafariDesktop::menuTitles(const std::vector<std::string>& titles) const {
    std::vector<std::string> result;
    std::ranges::transform(menu(titles), std::back_inserter(result), &Entry::title);
    return result;
}

std::vector<std::string> SafariDesktop::pages(const std::string& device) const {
    std::vector<std::string> titles;
    for (const Entry& entry : menu({"Develop", device})) {
        if (entry.title.empty())
            break;
        if (entry.isEnabled)
            titles.push_back(entry.title);
    }
    return titles;
}

std::optional<Accessible> SafariDesktop::find(const std::vector<std::string>& titles) const {
    return descend(frames(), titles);
}

bool SafariDesktop::isChecked(const std::vector<std::string>& titles) const {
    const auto item = find(titles);
    return item && item->isChecked();
}

bool SafariDesktop::press(const std::vector<std::string>& titles) const {
    const auto item = find(titles);
    return item && item->doAction();
}

std::optional<Accessible> SafariDesktop::inFrame(const std::string& start, const std::string& name, int depth) const {
    std::vector<Accessible> level = frames();
    std::erase_if(level, [&start](const Accessible& frame) { return !frame.name().starts_with(start); });
    for (; depth > 0 && !level.empty(); --depth) {
        level = childrenOf(level);
        if (auto found = oneNamed(level, name))
            return found;
    }
    return std::nullopt;
}

bool SafariDesktop::frameHolds(const std::string& start, const std::string& name, int depth) const {
    return inFrame(start, name, depth).has_value();
}

bool SafariDesktop::pressButton(const Accessible& root, const std::string& name) {
    const auto button = firstDescendant(root, 6, [&name](const Accessible& candidate) {
        if (candidate.name() != name)
            return false;
        const std::uint32_t role = candidate.role();
        return role == pushButtonRole || role == toggleButtonRole;
    });
    return button && button->doAction();
}

std::vector<int> SafariDesktop::inspectorProcesses() {
    return processes("SafariInspector");
}

std::vector<int> SafariDesktop::processes(const std::string& program) {
    std::vector<int> found;
    const std::string display = std::string("DISPLAY=") + g_getenv("DISPLAY");
    for (const auto& folder : std::filesystem::directory_iterator("/proc")) {
        const std::string name = folder.path().filename().string();
        if (!g_ascii_isdigit(name.front()))
            continue;
        const std::string commandLine = textOfFile(folder.path().string() + "/cmdline");
        const std::string file = commandLine.substr(0, commandLine.find('\0'));
        // Zombies have no command line; other people's programs have another display.
        if (file.substr(file.rfind('/') + 1) != program)
            continue;
        const std::string environment = '\0' + textOfFile(folder.path().string() + "/environ");
        if (environment.find('\0' + display + '\0') != std::string::npos)
            found.push_back(std::stoi(name));
    }
    return found;
}

} // namespace corvanta::lab::testing
