// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <list>
#include <optional>
#include <vector>

typedef struct _GtkCssProvider GtkCssProvider;
typedef struct _GtkWidget GtkWidget;

namespace corvanta::lab {

/// A question or a message on the device's screen.
struct Sheet {
    struct Button {
        QString label = {};
        /// Gets the text of the entry, empty where there is none.
        std::function<void(const QString& text)> pressed = {};
        /// The one that Return presses, and the one that Escape presses.
        bool isDefault = false;
        bool isCancel = false;
    };

    QString title = {};
    QString text = {};
    /// With a value there is an entry that holds it in the beginning.
    std::optional<QString> entry = {};
    /// A widget below the text, owned by the sheet once it is shown; null for none.
    GtkWidget* content = nullptr;
    /// What of the content gets the focus; null for the entry or the default button.
    GtkWidget* focused = nullptr;
    std::vector<Button> buttons = {};
    /// Who asks; the sheet goes without an answer when that goes.
    const void* asker = nullptr;
    /// Called instead of a button when the sheet goes without an answer.
    std::function<void()> abandoned = {};
};

/// Sheets over the device's screen, one at a time in the order in which they came. Of the main thread.
class SheetLayer {
public:
    SheetLayer();
    SheetLayer(const SheetLayer&) = delete;
    SheetLayer& operator=(const SheetLayer&) = delete;
    ~SheetLayer();

    /// Covers the screen while there is a sheet; owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_backdrop; }

    void show(Sheet sheet);

    /// Takes back all that this one asked.
    void abandon(const void* asker);

    /// Presses the button that Return presses, once what happens now is over; for what a sheet holds.
    void pressDefaultLater();

    /// Takes back everything; for the end.
    void abandonAll();

    [[nodiscard]] bool isShown() const { return !m_sheets.empty(); }

    /// Draws sheets for that many window pixels per CSS pixel of the device.
    void setScale(double scale);

private:
    void present();
    void press(std::size_t button);
    bool pressFor(bool Sheet::Button::* purpose);

    std::list<Sheet> m_sheets;
    GtkCssProvider* m_style = nullptr;
    GtkWidget* m_backdrop = nullptr;
    GtkWidget* m_card = nullptr;
    GtkWidget* m_entry = nullptr;
    double m_scale = 1;
    unsigned m_pressing = 0;
};

} // namespace corvanta::lab
