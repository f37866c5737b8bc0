// SPDX-License-Identifier: MIT
#include "WorkspaceEndToEnd.h"

#include <QProcess>

#include <cstdlib>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<Accessible> browserMenuBar() {
    constexpr int depth = 3;
    for (const Accessible& frame : frames(u"com.apple.Safari"_s)) {
        if (auto found = frame.find([](const Accessible& object) { return object.role() == u"menu bar"; }, depth))
            return found;
    }
    return std::nullopt;
}

/// How many pages of the sample site the menus list.
int listedPages(const Accessible& menu) {
    int count = menu.role() == u"menu item" && menu.name().startsWith(u"127.0.0.1") ? 1 : 0;
    for (const Accessible& child : menu.children())
        count += listedPages(child);
    return count;
}

} // namespace

QRect onScreen(const Rect& column, const QRect& workArea) {
    const double top = workArea.y() + workArea.height() - column.maxY();
    return QRectF(column.x, top, column.width, column.height).toRect();
}

WorkspaceFrames expectedColumns(const QRect& workArea) {
    const Rect area{static_cast<double>(workArea.x()), 0, static_cast<double>(workArea.width()),
                    static_cast<double>(workArea.height())};
    return WorkspaceLayout::frames(area, ColumnRatios{0.25, 0.30, 0.45}, 8);
}

::testing::AssertionResult isWithinTwoPixels(const QRect& actual, const QRect& expected) {
    constexpr int tolerance = 2;
    const bool isClose = std::abs(actual.left() - expected.left()) <= tolerance &&
                         std::abs(actual.top() - expected.top()) <= tolerance &&
                         std::abs(actual.right() - expected.right()) <= tolerance &&
                         std::abs(actual.bottom() - expected.bottom()) <= tolerance;
    if (isClose)
        return ::testing::AssertionSuccess();
    const auto text = [](const QRect& rect) {
        return QStringLiteral("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
    };
    return ::testing::AssertionFailure() << qUtf8Printable(text(actual)) << " instead of "
                                         << qUtf8Printable(text(expected));
}

void WorkspaceEndToEnd::SetUp() {
    // What a person does once by pressing "Allow Access".
    const int status = QProcess::execute(
        u"dbus-send"_s, {u"--session"_s, u"--print-reply=literal"_s, u"--dest=org.a11y.Bus"_s, u"/org/a11y/bus"_s,
                         u"org.freedesktop.DBus.Properties.Set"_s, u"string:org.a11y.Status"_s, u"string:IsEnabled"_s,
                         u"variant:boolean:true"_s});
    ASSERT_EQ(status, 0);
}

void WorkspaceEndToEnd::launch(const QStringList& arguments) {
    m_corvanta.start(arguments);
    ASSERT_TRUE(eventually([this] { return m_corvanta.isEnabled(u"Start Workspace"_s); }, startLimit)) << shownTexts();
}

void WorkspaceEndToEnd::launchOnSample(const QStringList& more) {
    launch(QStringList{u"--url"_s, m_site.address()} + more);
}

void WorkspaceEndToEnd::startAndWait() {
    ASSERT_TRUE(m_corvanta.press(u"Start Workspace"_s));
    waitUntilRunning();
}

void WorkspaceEndToEnd::waitUntilRunning() {
    ASSERT_TRUE(eventually([this] { return m_corvanta.shows(u"Workspace running"_s); }, startLimit)) << shownTexts();
}

void WorkspaceEndToEnd::openTwoPagesAtOnce() {
    std::optional<Accessible> button;
    const bool isShown = eventually([&] {
        button = onPage(u"Open two at once"_s);
        return button.has_value();
    });
    const auto menus = browserMenuBar();
    if (!isShown || !button || !menus)
        FAIL() << "no page that opens two, or no browser that lists them";
    const int before = listedPages(*menus);
    // One look between the two would find a single new page, and attach to it.
    const DrivenCorvanta::Pause pause(m_corvanta);
    ASSERT_TRUE(button->press());
    ASSERT_TRUE(eventually([&menu = *menus, before] { return listedPages(menu) == before + 2; }));
}

std::string WorkspaceEndToEnd::shownTexts() const {
    return m_corvanta.texts().join(u"\n"_s).toStdString();
}

::testing::AssertionResult WorkspaceEndToEnd::hasFrame(const QString& titleBeginning, const QRect& expected) const {
    const auto frame = frameOf(titleBeginning);
    return frame ? isWithinTwoPixels(*frame, expected)
                 : ::testing::AssertionFailure() << "no window " << qUtf8Printable(titleBeginning);
}

std::optional<QRect> WorkspaceEndToEnd::frameOf(const QString& titleBeginning) const {
    const auto window = m_windows.window(titleBeginning);
    return window ? std::optional(window->frame) : std::nullopt;
}

std::vector<ObservedWindow> WorkspaceEndToEnd::inspectorWindows() const {
    auto windows = m_windows.windows();
    std::erase_if(windows, [](const auto& window) { return !window.title.startsWith(u"Web Inspector"_s); });
    return windows;
}

bool WorkspaceEndToEnd::inspectorShows(const QString& text) {
    for (const Accessible& frame : frames(u"com.apple.Safari"_s)) {
        if (!frame.name().startsWith(u"Web Inspector"_s))
            continue;
        for (const Accessible& child : frame.children()) {
            const bool isShown = child.allTexts(Accessible::Objects::all).join(u'\n').contains(text);
            if (isShown)
                return true;
        }
    }
    return false;
}

} // namespace corvanta::testing
