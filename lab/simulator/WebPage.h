// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenFigures.h"

#include <QByteArray>
#include <QMap>
#include <QSize>
#include <QString>

#include <memory>

typedef struct _GtkWidget GtkWidget;
typedef struct _WebKitSettings WebKitSettings;
typedef struct _WebKitUserContentManager WebKitUserContentManager;
typedef struct _WebKitWebContext WebKitWebContext;
typedef struct _WebKitWebView WebKitWebView;

namespace corvanta::lab {

class WebPage;

/// Who has pages and hears of them. Its functions may not destroy the page that calls them.
class WebPageOwner {
public:
    WebPageOwner() = default;
    WebPageOwner(const WebPageOwner&) = delete;
    WebPageOwner& operator=(const WebPageOwner&) = delete;

    /// The page's address, title or state of loading is another.
    virtual void pageChanged(WebPage& page) = 0;
    /// What the page asks of the viewport is another.
    virtual void pageAsksForViewport(WebPage& page) = 0;
    /// A text field of the page got the focus, `byHand` when it was tapped, or none has it any more.
    virtual void pageEdits(WebPage& page, bool isEditing, bool byHand) = 0;

protected:
    ~WebPageOwner() = default;
};

/// One page of the device's browser as the device shows it. Of the main thread.
class WebPage {
public:
    /// What all pages of a device share; it outlives them.
    struct Device {
        DeviceType type;
        WebKitWebContext* context = nullptr;
        WebKitSettings* settings = nullptr;
        Orientation orientation = Orientation::portrait;
        /// One of `contentSizes()`.
        QString contentSize = {};
        /// The texts of loaded style sheets that name the system's text styles, by address.
        std::shared_ptr<QMap<QByteArray, QByteArray>> sheets = std::make_shared<QMap<QByteArray, QByteArray>>();
    };

    /// A page without an address. With an opener it is one that the opener's script may reach.
    WebPage(const Device& device, WebPageOwner& owner, WebKitWebView* opener = nullptr);
    WebPage(const WebPage&) = delete;
    WebPage& operator=(const WebPage&) = delete;
    ~WebPage();

    /// Shows the page, or what is to be said about it; owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_container; }

    [[nodiscard]] WebKitWebView* view() const { return m_view; }

    /// The last address; the engine forgets it when the page's process ends.
    [[nodiscard]] const QString& address() const { return m_address; }

    /// The page's title, else its address; empty for a page without both.
    [[nodiscard]] QString title() const;

    [[nodiscard]] ViewportFit viewportFit() const { return m_fit; }

    [[nodiscard]] bool isEditing() const { return m_isEditing; }

    void load(const QString& url);
    void reload();
    void goBack();
    void goForward();
    void focus();

    /// Gives a page that was never shown the size that it will have, so that it may read its viewport at once.
    void presize(QSize size);

    /// Follows the device's orientation.
    void turn();

    /// Follows the device's text size.
    void followContentSize() { addStyle(); }

    /// Tells the page how much of its widget the keyboard covers, in the widget's pixels.
    void coverByKeyboard(int pixels);

    /// Shows a message of the browser in the page's place: what happened, and a button that loads the page again.
    /// The page is shown again when it is loaded; with an address it is the one that is loaded then.
    void showMessage(const QString& title, const QString& text, const QString& address = {});

private:
    void connectSignals();
    void addScripts();
    void addStyle();
    void follow(int width);
    void hearViewport(const char* json);
    void hearFocus(const char* json);
    void explainRefusal();
    void tellSheets();
    [[nodiscard]] int layoutWidth() const;

    const Device& m_device;
    WebPageOwner& m_owner;
    WebKitUserContentManager* m_content = nullptr;
    GtkWidget* m_container = nullptr;
    WebKitWebView* m_view = nullptr;
    QString m_address;
    /// What the page that is being loaded was asked for.
    QString m_requested;
    ViewportFit m_fit = ViewportFit::automatic;
    /// The width that the page asks for; 0 for the device's.
    int m_askedWidth = 0;
    bool m_isEditing = false;
    /// Whether a message is shown in place of what could not be.
    bool m_hasFailed = false;
};

} // namespace corvanta::lab
