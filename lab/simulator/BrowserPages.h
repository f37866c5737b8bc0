// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceCatalogue.h"
#include "LocationFeed.h"

#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

typedef struct _GtkWidget GtkWidget;
typedef struct _WebKitSettings WebKitSettings;
typedef struct _WebKitUserContentManager WebKitUserContentManager;

namespace corvanta::lab {

/// The device's browser: its pages, one of them in front, each of them inspectable. Of the main thread.
class BrowserPages {
public:
    /// `changed` is called after every change of the accessors below; `ready` once the engine has shown that it works.
    BrowserPages(const DeviceType& type, const Runtime& runtime, std::function<void()> changed,
                 std::function<void()> ready);
    BrowserPages(const BrowserPages&) = delete;
    BrowserPages& operator=(const BrowserPages&) = delete;
    ~BrowserPages();

    /// The widget that shows the page in front; owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_stack; }

    [[nodiscard]] LocationFeed& location() { return *m_location; }

    /// Number of open pages; the start page is none.
    [[nodiscard]] std::size_t count() const { return m_pages.size(); }

    /// Position of the page in front, from 0.
    [[nodiscard]] std::size_t current() const { return m_current; }

    /// What the address bar shows: the page's host, else its address; empty for the start page.
    [[nodiscard]] QString address() const;
    [[nodiscard]] bool canGoBack() const;
    [[nodiscard]] bool canGoForward() const;

    /// Opens a page of its own in front of the others.
    void open(const QString& url);

    /// Brings the page that far behind the current one to the front, around the ends.
    void step(int distance);

    void showPrevious() { step(-1); }

    void showNext() { step(1); }

    void closeCurrent();
    void reload();
    void goBack();
    void goForward();
    void focus();

    /// Gives pages that were never shown the size they will have.
    void setPageSize(QSize size) { m_pageSize = size; }

private:
    struct Page;

    Page& add(GtkWidget* view);
    Page* front() const;
    Page* pageOf(const GtkWidget* view) const;
    void show(std::size_t index);
    void close(const Page& page);
    void showCrash(Page& page);
    void connectView(GtkWidget* view);
    GtkWidget* makeView(WebKitSettings* settings) const;
    void makeStartPage(const Runtime& runtime);
    void warmUp();

    DeviceType m_type;
    std::function<void()> m_changed;
    std::function<void()> m_ready;
    WebKitWebContext* m_context = nullptr;
    WebKitSettings* m_settings = nullptr;
    WebKitUserContentManager* m_content = nullptr;
    std::unique_ptr<LocationFeed> m_location;
    GtkWidget* m_stack = nullptr;
    GtkWidget* m_startPage = nullptr;
    std::vector<std::unique_ptr<Page>> m_pages;
    std::size_t m_current = 0;
    QSize m_pageSize;
};

} // namespace corvanta::lab
