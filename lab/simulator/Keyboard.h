// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QString>

#include <functional>
#include <vector>

typedef struct _cairo cairo_t;
typedef struct _GtkWidget GtkWidget;

namespace corvanta::lab {

/// The software keyboard of the device. Of the main thread.
class Keyboard {
public:
    /// `typed` gets the key value and the character of each key that is tapped; `dismissed` is called when a person
    /// puts the keyboard away.
    Keyboard(std::function<void(unsigned keyValue)> typed, std::function<void()> dismissed);
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;
    ~Keyboard();

    /// Owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_area; }

    [[nodiscard]] bool isShown() const { return m_isShown; }

    void setShown(bool isShown);
    void setDark(bool isDark);

    /// Window pixels per CSS pixel, and the height below the keys that belongs to the home indicator, in CSS pixels.
    void setScale(double scale, int indicator);

private:
    struct Key {
        QRectF place;
        QString label;
        unsigned value = 0;
    };

    void arrange(double width, double height);
    void draw(cairo_t* context);
    void press(double x, double y);

    std::function<void(unsigned)> m_typed;
    std::function<void()> m_dismissed;
    GtkWidget* m_area = nullptr;
    std::vector<Key> m_keys;
    double m_scale = 1;
    int m_indicator = 0;
    bool m_isShown = false;
    bool m_isDark = false;
    bool m_isShifted = false;
    bool m_showsDigits = false;
};

} // namespace corvanta::lab
