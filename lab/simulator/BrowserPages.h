// SPDX-License-Identifier: MIT
#pragma once

#include "LocationFeed.h"
#include "WebPage.h"

#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace corvanta::lab {

/// The device's browser: its pages, one of them in front, each of them inspectable. Of the main thread.
class BrowserPages final : private WebPageOwner {
public:
    struct Events {
        /// After every change of what is told about the pages.
        std::function<void()> changed;
        /// After every change of what the page in front asks of the viewport.
        std::function<void()> viewportAsked;
        /// A text field of the page in front got the focus, by hand or not, or lost it.
        std::function<void(bool isEditing, bool byHand)> edited;
        /// A page was opened, and before one is closed.
        std::function<void(WebPage&)> opened;
        std::function<void(WebPage&)> closing;
        /// Once the engine has shown that it works.
        std::function<void()> ready;
    };

    BrowserPages(const DeviceType& type, const Runtime& runtime, Events events);
    BrowserPages(const BrowserPages&) = delete;
    BrowserPages& operator=(const BrowserPages&) = delete;
    ~BrowserPages();

    /// The widget that shows the page in front; owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_stack; }

    [[nodiscard]] WebKitWebContext* context() const { return m_device.context; }

    [[nodiscard]] LocationFeed& location() { return *m_location; }

    /// Number of open pages; the start page is none.
    [[nodiscard]] std::size_t count() const { return m_pages.size(); }

    /// Position of the page in front, from 0.
    [[nodiscard]] std::size_t current() const { return m_current; }

    /// The page at that position, which exists until it is closed.
    [[nodiscard]] WebPage& at(std::size_t index) { return *m_pages[index]; }

    /// The page in front; null for the start page.
    [[nodiscard]] WebPage* front() const;

    /// What the address bar shows: the page's host or file, else its address; empty for the start page.
    [[nodiscard]] QString address() const;
    [[nodiscard]] bool canGoBack() const;
    [[nodiscard]] bool canGoForward() const;

    /// Opens a page of its own in front of the others.
    void open(const QString& url);

    /// Loads the address in the page in front, or in a new one when there is none.
    void go(const QString& url);

    /// Brings the page at that position to the front.
    void show(std::size_t index);

    /// Brings the page that far behind the current one to the front, around the ends.
    void step(int distance);

    void close(std::size_t index);
    void closeCurrent();
    void reload();
    void goBack();
    void goForward();
    void focus();

    /// Gives pages that were never shown the size they will have.
    void setPageSize(QSize size) { m_pageSize = size; }

    /// Tells every page how the device is held.
    void turn(Orientation orientation);

    /// Gives every page the device's text size, one of `contentSizes()`.
    void setContentSize(const QString& size);

private:
    void pageChanged(WebPage& page) override;
    void pageAsksForViewport(WebPage& page) override;
    void pageEdits(WebPage& page, bool isEditing, bool byHand) override;

    [[nodiscard]] std::unique_ptr<WebPage> makePage(WebKitWebView* opener = nullptr);
    WebPage& add(std::unique_ptr<WebPage> page);
    void makeStartPage(const Runtime& runtime);
    void warmUp();

    WebPage::Device m_device;
    Events m_events;
    std::unique_ptr<LocationFeed> m_location;
    GtkWidget* m_stack = nullptr;
    GtkWidget* m_startPage = nullptr;
    std::vector<std::unique_ptr<WebPage>> m_pages;
    std::size_t m_current = 0;
    QSize m_pageSize;
};

} // namespace corvanta::lab
