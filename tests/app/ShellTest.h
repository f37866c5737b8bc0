// SPDX-License-Identifier: MIT
#pragma once

#include "WebServer.h"
#include "WorkspaceCoordinatorTest.h"
#include "shell/ShellCommands.h"
#include "support/TaskScope.h"
#include "updates/UpdateChecker.h"

#include <QAction>
#include <QKeySequence>
#include <QNetworkAccessManager>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

namespace corvanta {

inline void PrintTo(const MenuItem& item, std::ostream* stream) {
    *stream << '"' << item.text.toStdString() << "\" " << (item.isEnabled ? "enabled" : "disabled");
}

/// The menus' commands on a real coordinator, which works on fakes, and a real update checker, whose server answers
/// nothing: a check lasts until it is cancelled.
class ShellTest : public WorkspaceCoordinatorTest {
protected:
    ShellTest()
        : checker(manifestURL(), QStringLiteral("27"), {.session = m_session, .clock = clock}) {
        m_server.answer(path(), {.status = {}, .ending = testing::WebAnswer::Ending::keepOpen});
    }

    ~ShellTest() override { endCheck(); }

    void makeCommands() {
        commands = std::make_unique<ShellCommands>(ShellCommands::Services{
            .coordinator = *coordinator, .updateChecker = checker, .desktop = desktop, .tasks = tasks});
    }

    /// Ends the check that is under way, if any.
    void endCheck() {
        checker.cancel();
        EXPECT_TRUE(testing::waitUntil([this] {
            clock.settle();
            return !checker.isChecking();
        }));
    }

    [[nodiscard]] qsizetype requests() const { return m_server.requests().size(); }

    /// An action as a menu shows it: `Text [Key] off`.
    static std::string describe(const QAction& action) {
        if (action.isSeparator())
            return "---";
        std::string text = action.text().toStdString();
        if (!action.shortcut().isEmpty())
            text += " [" + action.shortcut().toString(QKeySequence::PortableText).toStdString() + ']';
        return action.isEnabled() ? text : text + " off";
    }

    static std::vector<std::string> rows(const QWidget& menu) {
        std::vector<std::string> texts;
        for (const QAction* const action : menu.actions())
            texts.push_back(describe(*action));
        return texts;
    }

    /// The menu's item with that text; null when there is none.
    static QAction* item(const QWidget& menu, const QString& text) {
        for (QAction* const action : menu.actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }

    /// Chooses the item with that text, which must be there and enabled.
    static void choose(const QWidget& menu, const QString& text) {
        QAction* const action = item(menu, text);
        ASSERT_NE(action, nullptr) << text.toStdString();
        ASSERT_TRUE(action->isEnabled()) << text.toStdString();
        action->trigger();
    }

private:
    static QString path() { return QStringLiteral("/updates.json"); }

    [[nodiscard]] URL manifestURL() const { return URL::parse(m_server.url(path())).value(); }

    testing::WebServer m_server{testing::WebServer::Scheme::http};
    QNetworkAccessManager m_session;

protected:
    TaskScope tasks;
    UpdateChecker checker;
    std::unique_ptr<ShellCommands> commands;
};

} // namespace corvanta
