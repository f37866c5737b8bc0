// SPDX-License-Identifier: MIT
#pragma once

#include "WorkspaceCoordinatorTest.h"
#include "support/TaskScope.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include <string>
#include <vector>

namespace corvanta {

/// A part of the control window that shows a real coordinator, which works on fakes.
///
/// What is hidden counts as absent in everything that is looked for here.
class WindowSectionTest : public WorkspaceCoordinatorTest {
protected:
    using Texts = std::vector<std::string>;

    /// The part that is tested, in a window that is never shown.
    template<typename Section, typename... Arguments>
    Section& show(Arguments&... arguments) {
        auto* const section = new Section(arguments...);
        (new QVBoxLayout(&m_window))->addWidget(section);
        return *section;
    }

    [[nodiscard]] bool isShown(const QWidget& widget) const { return widget.isVisibleTo(&m_window); }

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

    /// The texts of the labels that are shown.
    [[nodiscard]] Texts labels(const QWidget& parent) const { return texts<QLabel>(parent); }

    /// The texts of the buttons that are shown.
    [[nodiscard]] Texts buttons(const QWidget& parent) const { return texts<QPushButton>(parent); }

    /// The button that is shown with that text; null when there is none.
    [[nodiscard]] QPushButton* button(const QWidget& parent, const QString& text) const {
        return find<QPushButton>(parent, text);
    }

    /// The label that is shown with that text; null when there is none.
    [[nodiscard]] QLabel* label(const QWidget& parent, const QString& text) const { return find<QLabel>(parent, text); }

    TaskScope tasks;

private:
    template<typename Widget>
    [[nodiscard]] Texts texts(const QWidget& parent) const {
        Texts result;
        for (const Widget* const widget : shown<Widget>(parent))
            result.push_back(widget->text().toStdString());
        return result;
    }

    template<typename Widget>
    [[nodiscard]] Widget* find(const QWidget& parent, const QString& text) const {
        for (Widget* const widget : shown<Widget>(parent)) {
            if (widget->text() == text)
                return widget;
        }
        return nullptr;
    }

    QWidget m_window;
};

} // namespace corvanta
