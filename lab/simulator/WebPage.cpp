// SPDX-License-Identifier: MIT
#include "WebPage.h"

#include "DeviceLayout.h"
#include "PageShims.h"
#include "ShownText.h"
#include "TouchInput.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <webkit2/webkit2.h>

#include <cmath>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

/// Pages find no trace of scripts of this world.
constexpr char ownWorld[] = "corvanta";
/// What the engine shows, without a word, instead of an address that it refuses.
constexpr auto emptyPage = "about:blank"_L1;

gboolean suppressContextMenu(WebKitWebView*, WebKitContextMenu*, GdkEvent*, WebKitHitTestResult*, gpointer) {
    // A phone has none, and its "Inspect Element" would put a second inspector on a page, which ends the pages'
    // process.
    return TRUE;
}

QJsonObject objectOf(const char* json) {
    return QJsonDocument::fromJson(QByteArray(json)).object();
}

void evaluate(WebKitWebView* view, const QByteArray& script) {
    webkit_web_view_evaluate_javascript(view, script.constData(), script.size(), nullptr, nullptr, nullptr, nullptr,
                                        nullptr);
}

/// Reads a style sheet for a view, which may go meanwhile.
struct SheetReader {
    WebKitWebView* view = nullptr;
    std::shared_ptr<QMap<QByteArray, QByteArray>> sheets;
};

void readSheet(WebKitWebResource* resource, gpointer data) {
    WebKitURIResponse* response = webkit_web_resource_get_response(resource);
    if (response == nullptr || g_strcmp0(webkit_uri_response_get_mime_type(response), "text/css") != 0) {
        return;
    }
    auto* reader = new SheetReader(*static_cast<SheetReader*>(data));
    g_object_ref(reader->view);
    const auto read = +[](GObject* source, GAsyncResult* result, gpointer reading) {
        const std::unique_ptr<SheetReader> done(static_cast<SheetReader*>(reading));
        gsize size = 0;
        guchar* bytes = webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(source), result, &size, nullptr);
        const QByteArray text(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
        g_free(bytes);
        if (namesTextStyles(text)) {
            const QByteArray address = webkit_web_resource_get_uri(WEBKIT_WEB_RESOURCE(source));
            (*done->sheets)[address] = text;
            evaluate(done->view, sheetNews(address, text));
        }
        g_object_unref(done->view);
    };
    webkit_web_resource_get_data(resource, nullptr, read, reader);
}

} // namespace

WebPage::WebPage(const Device& device, WebPageOwner& owner, WebKitWebView* opener)
    : m_device(device)
    , m_owner(owner)
    , m_content(webkit_user_content_manager_new())
    , m_container(gtk_stack_new()) {
    addScripts();
    addStyle();
    m_view = WEBKIT_WEB_VIEW(opener == nullptr
                                 ? g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", device.context, "settings",
                                                device.settings, "user-content-manager", m_content, nullptr)
                                 : g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings",
                                                device.settings, "user-content-manager", m_content, nullptr));
    connectSignals();
    touchWithMouse(GTK_WIDGET(m_view));
    gtk_stack_set_homogeneous(GTK_STACK(m_container), FALSE);
    gtk_container_add(GTK_CONTAINER(m_container), GTK_WIDGET(m_view));
    gtk_widget_show_all(m_container);
}

WebPage::~WebPage() {
    g_signal_handlers_disconnect_by_data(m_view, this);
    g_signal_handlers_disconnect_by_data(m_content, this);
    gtk_widget_destroy(m_container);
    g_object_unref(m_content);
}

void WebPage::addScripts() {
    const auto add = [this](const char* source, const char* world) {
        WebKitUserScript* script =
            world == nullptr ? webkit_user_script_new(source, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                                      WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr)
                             : webkit_user_script_new_for_world(source, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                                                WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, world,
                                                                nullptr, nullptr);
        webkit_user_content_manager_add_script(m_content, script);
        webkit_user_script_unref(script);
    };
    webkit_user_content_manager_remove_all_scripts(m_content);
    add(pageShims(m_device.type, m_device.orientation).constData(), nullptr);
    add(deviceStylesScript, nullptr);
    add(observerScript, ownWorld);
}

void WebPage::addStyle() {
    const QMargins safeArea = ScreenFigures::of(m_device.type, m_device.orientation, m_fit).safeArea;
    WebKitUserStyleSheet* style = webkit_user_style_sheet_new(deviceStyles(safeArea, m_device.contentSize).constData(),
                                                              WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                                              WEBKIT_USER_STYLE_LEVEL_USER, nullptr, nullptr);
    webkit_user_content_manager_remove_all_style_sheets(m_content);
    webkit_user_content_manager_add_style_sheet(m_content, style);
    webkit_user_style_sheet_unref(style);
}

void WebPage::connectSignals() {
    const auto allocated = +[](GtkWidget*, GdkRectangle* allocation, gpointer page) {
        static_cast<WebPage*>(page)->follow(allocation->width);
    };
    g_signal_connect(m_view, "size-allocate", G_CALLBACK(allocated), this);
    g_signal_connect(m_view, "context-menu", G_CALLBACK(suppressContextMenu), nullptr);
    const auto moved = +[](WebKitWebView* view, GParamSpec*, gpointer page) {
        auto* self = static_cast<WebPage*>(page);
        const char* uri = webkit_web_view_get_uri(view);
        // A page that could not be loaded is asked for again by its own address.
        if (uri != nullptr && *uri != '\0' && !self->m_hasFailed) {
            self->m_address = QString::fromUtf8(uri);
        }
        self->m_owner.pageChanged(*self);
    };
    g_signal_connect(m_view, "notify::uri", G_CALLBACK(moved), this);
    g_signal_connect(m_view, "notify::title", G_CALLBACK(moved), this);
    const auto loadChanged = +[](WebKitWebView*, WebKitLoadEvent event, gpointer page) {
        auto* self = static_cast<WebPage*>(page);
        const QString address = QString::fromUtf8(webkit_web_view_get_uri(self->m_view));
        if (event == WEBKIT_LOAD_STARTED) {
            self->m_hasFailed = false;
            self->m_requested = address;
        }
        if (event == WEBKIT_LOAD_COMMITTED && !self->m_hasFailed) {
            if (address == emptyPage && self->m_requested != emptyPage) {
                self->explainRefusal();
            } else {
                gtk_stack_set_visible_child(GTK_STACK(self->m_container), GTK_WIDGET(self->m_view));
            }
        }
        if (event == WEBKIT_LOAD_FINISHED) {
            self->tellSheets();
        }
        self->m_owner.pageChanged(*self);
    };
    g_signal_connect(m_view, "load-changed", G_CALLBACK(loadChanged), this);
    const auto resourceStarted =
        +[](WebKitWebView* view, WebKitWebResource* resource, WebKitURIRequest*, gpointer page) {
            const auto release = +[](gpointer data, GClosure*) { delete static_cast<SheetReader*>(data); };
            g_signal_connect_data(resource, "finished", G_CALLBACK(readSheet),
                                  new SheetReader{.view = view, .sheets = static_cast<WebPage*>(page)->m_device.sheets},
                                  release, GConnectFlags(0));
        };
    g_signal_connect(m_view, "resource-load-started", G_CALLBACK(resourceStarted), this);
    const auto crashed = +[](WebKitWebView*, WebKitWebProcessTerminationReason, gpointer page) {
        auto* self = static_cast<WebPage*>(page);
        self->hearFocus("{}");
        self->showMessage(u"This page ended unexpectedly."_s, u"The process that showed it is gone."_s);
    };
    g_signal_connect(m_view, "web-process-terminated", G_CALLBACK(crashed), this);

    const auto listen = [this](const char* name,
                               void (*heard)(WebKitUserContentManager*, WebKitJavascriptResult*, gpointer)) {
        g_signal_connect(m_content, (QByteArray("script-message-received::") + name).constData(), G_CALLBACK(heard),
                         this);
        webkit_user_content_manager_register_script_message_handler_in_world(m_content, name, ownWorld);
    };
    listen("corvantaViewport", [](WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer page) {
        char* text = jsc_value_to_string(webkit_javascript_result_get_js_value(result));
        static_cast<WebPage*>(page)->hearViewport(text);
        g_free(text);
    });
    listen("corvantaFocus", [](WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer page) {
        char* text = jsc_value_to_string(webkit_javascript_result_get_js_value(result));
        static_cast<WebPage*>(page)->hearFocus(text);
        g_free(text);
    });
}

int WebPage::layoutWidth() const {
    return m_askedWidth > 0 ? m_askedWidth
                            : ScreenFigures::of(m_device.type, m_device.orientation, m_fit).viewport.width();
}

void WebPage::follow(int width) {
    const double zoom = pageZoom(width, layoutWidth());
    if (width > 1 && std::abs(webkit_web_view_get_zoom_level(m_view) - zoom) > 1e-9) {
        webkit_web_view_set_zoom_level(m_view, zoom);
    }
}

void WebPage::hearViewport(const char* json) {
    const QJsonObject asked = objectOf(json);
    const ViewportFit fit = asked["cover"_L1].toBool() ? ViewportFit::cover : ViewportFit::automatic;
    const int width = asked["width"_L1].toInt();
    if (fit == m_fit && width == m_askedWidth) {
        return;
    }
    m_fit = fit;
    m_askedWidth = width;
    addStyle();
    follow(gtk_widget_get_allocated_width(GTK_WIDGET(m_view)));
    m_owner.pageAsksForViewport(*this);
}

void WebPage::hearFocus(const char* json) {
    const QJsonObject focus = objectOf(json);
    m_isEditing = focus["editing"_L1].toBool();
    m_owner.pageEdits(*this, m_isEditing, focus["byHand"_L1].toBool());
}

QString WebPage::title() const {
    const char* title = webkit_web_view_get_title(m_view);
    return title != nullptr && *title != '\0' ? QString::fromUtf8(title) : m_address;
}

void WebPage::load(const QString& url) {
    m_hasFailed = false;
    m_address = url;
    webkit_web_view_load_uri(m_view, url.toUtf8().constData());
}

void WebPage::reload() {
    gtk_stack_set_visible_child(GTK_STACK(m_container), GTK_WIDGET(m_view));
    if (!std::exchange(m_hasFailed, false) && webkit_web_view_get_uri(m_view) != nullptr) {
        webkit_web_view_reload(m_view);
    } else {
        webkit_web_view_load_uri(m_view, m_address.toUtf8().constData());
    }
}

void WebPage::goBack() {
    webkit_web_view_go_back(m_view);
}

void WebPage::goForward() {
    webkit_web_view_go_forward(m_view);
}

void WebPage::focus() {
    gtk_widget_grab_focus(GTK_WIDGET(m_view));
}

void WebPage::presize(QSize size) {
    gtk_widget_get_preferred_size(GTK_WIDGET(m_view), nullptr, nullptr);
    GdkRectangle area{0, 0, size.width(), size.height()};
    gtk_widget_size_allocate(GTK_WIDGET(m_view), &area);
}

void WebPage::turn() {
    addScripts();
    addStyle();
    follow(gtk_widget_get_allocated_width(GTK_WIDGET(m_view)));
    evaluate(m_view, orientationNews(m_device.orientation));
}

void WebPage::coverByKeyboard(int pixels) {
    const double zoom = webkit_web_view_get_zoom_level(m_view);
    evaluate(m_view, keyboardNews(static_cast<int>(std::round(pixels / zoom))));
}

void WebPage::tellSheets() {
    // What the engine has in its cache is not loaded again, so nothing is told of it.
    for (auto sheet = m_device.sheets->cbegin(); sheet != m_device.sheets->cend(); ++sheet) {
        evaluate(m_view, sheetNews(sheet.key(), sheet.value()));
    }
}

void WebPage::explainRefusal() {
    const int port = QUrl(m_requested).port();
    const QString reason =
        port > 0 ? u"the network port %1 belongs to another service, so browsers do not open it"_s.arg(port)
                 : u"the browser does not open such addresses"_s;
    showMessage(u"Safari Can’t Open the Page"_s, u"“%1” cannot be opened: %2."_s.arg(m_requested.left(200), reason),
                m_requested);
}

void WebPage::showMessage(const QString& title, const QString& text, const QString& address) {
    m_hasFailed = true;
    if (!address.isEmpty()) {
        m_address = address;
    }
    if (GtkWidget* old = gtk_stack_get_child_by_name(GTK_STACK(m_container), "message")) {
        gtk_widget_destroy(old);
    }
    GtkWidget* message = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_style_context_add_class(gtk_widget_get_style_context(message), "page-message");
    GtkWidget* group = gtk_box_new(GTK_ORIENTATION_VERTICAL, 10);
    for (const auto& [line, style] : {std::pair{title, "page-message-title"}, std::pair{text, "page-message-text"}}) {
        GtkWidget* label = gtk_label_new(shownText(line.toStdString()).c_str());
        gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
        gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
        gtk_label_set_max_width_chars(GTK_LABEL(label), 36);
        gtk_style_context_add_class(gtk_widget_get_style_context(label), style);
        gtk_container_add(GTK_CONTAINER(group), label);
    }
    GtkWidget* button = gtk_button_new_with_label("Reload");
    gtk_widget_set_halign(button, GTK_ALIGN_CENTER);
    const auto clicked = +[](GtkButton*, gpointer page) { static_cast<WebPage*>(page)->reload(); };
    g_signal_connect(button, "clicked", G_CALLBACK(clicked), this);
    gtk_container_add(GTK_CONTAINER(group), button);
    gtk_box_set_center_widget(GTK_BOX(message), group);
    gtk_widget_show_all(message);
    gtk_stack_add_named(GTK_STACK(m_container), message, "message");
    gtk_stack_set_visible_child(GTK_STACK(m_container), message);
    m_owner.pageChanged(*this);
}

} // namespace corvanta::lab
