// SPDX-License-Identifier: MIT
#pragma once

typedef struct _GtkWidget GtkWidget;

namespace corvanta::lab {

class BrowserPages;

/// The browser's overview of its pages: a card with a picture for each. Of the main thread.
class PageOverview {
public:
    explicit PageOverview(BrowserPages& pages);
    PageOverview(const PageOverview&) = delete;
    PageOverview& operator=(const PageOverview&) = delete;

    /// Covers the browser while it is shown; owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_backdrop; }

    void show();
    void hide();

    [[nodiscard]] bool isShown() const;

    /// Draws everything for that many window pixels per CSS pixel of the device.
    void setScale(double scale) { m_scale = scale; }

private:
    void addCard(unsigned index);

    BrowserPages& m_pages;
    GtkWidget* m_backdrop = nullptr;
    GtkWidget* m_cards = nullptr;
    double m_scale = 1;
};

} // namespace corvanta::lab
