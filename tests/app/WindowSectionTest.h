// SPDX-License-Identifier: MIT
#pragma once

#include "FakeMapSurface.h"
#include "WorkspaceCoordinatorTest.h"
#include "support/TaskScope.h"
#include "window/SectionContext.h"
#include "window/widgets/TextLabel.h"

#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

namespace corvanta {

/// A part of the control window that shows a real coordinator, which works on fakes.
///
/// What is hidden counts as absent in everything that is looked for here.
class WindowSectionTest : public WorkspaceCoordinatorTest {
protected:
    using Texts = std::vector<std::string>;

    /// What the parts of the window work with; the coordinator must have been made.
    [[nodiscard]] SectionContext context() {
        return {.coordinator = *coordinator,
                .desktop = desktop,
                .placeSearch = placeSearch,
                .clock = clock,
                .tasks = tasks,
                .makeMap = [this](QWidget& parent) {
                    auto made = std::make_unique<testing::FakeMapSurface>(&parent);
                    map = made.get();
                    return made;
                }};
    }

    /// The part that is tested, in a window that is not shown unless the test does so.
    template<typename Section>
    Section& show() {
        auto* const section = new Section(context());
        (new QVBoxLayout(&window))->addWidget(section);
        return *section;
    }

    [[nodiscard]] bool isShown(const QWidget& widget) const {
        return widget.window() == &window ? widget.isVisibleTo(&window) : widget.isVisible();
    }

    /// The widgets of that type that are shown, in the order in which they were made.
    template<typename Widget>
    [[nodiscard]] std::vector<Widget*> shown(const QWidget& parent) const {
        std::vector<Widget*> widgets;
        for (Widget* const widget : parent.findChildren<Widget*>()) {
            if (isShown(*widget))
                widgets.push_back(widget);
        }
        return widgets;
    }

    /// The texts of the labels that are shown, as they were given.
    [[nodiscard]] Texts labels(const QWidget& parent) const {
        Texts result;
        for (const TextLabel* const label : shown<TextLabel>(parent))
            result.push_back(label->shownText().toStdString());
        return result;
    }

    /// The texts of the buttons that are shown; those with a symbol alone have none.
    [[nodiscard]] Texts buttons(const QWidget& parent) const {
        Texts result;
        for (const QPushButton* const button : shown<QPushButton>(parent)) {
            if (!button->text().isEmpty())
                result.push_back(button->text().toStdString());
        }
        return result;
    }

    /// The button that is shown with that text, or with that name where it has none; null when there is none.
    [[nodiscard]] QPushButton* button(const QWidget& parent, const QString& text) const {
        for (QPushButton* const button : shown<QPushButton>(parent)) {
            if (button->text() == text || (button->text().isEmpty() && button->accessibleName() == text))
                return button;
        }
        return nullptr;
    }

    /// The label that is shown with that text; null when there is none.
    [[nodiscard]] TextLabel* label(const QWidget& parent, const QString& text) const {
        for (TextLabel* const label : shown<TextLabel>(parent)) {
            if (label->shownText() == text)
                return label;
        }
        return nullptr;
    }

    /// Presses the button with that text or name, which must be there and enabled.
    void press(const QWidget& parent, const QString& text) {
        QPushButton* const found = button(parent, text);
        ASSERT_NE(found, nullptr) << text.toStdString();
        ASSERT_TRUE(found->isEnabled()) << text.toStdString();
        found->click();
    }

    TaskScope tasks;
    /// The map that was made last; null before the window has been painted. Gone with the window.
    testing::FakeMapSurface* map = nullptr;
    QWidget window;
};

} // namespace corvanta
