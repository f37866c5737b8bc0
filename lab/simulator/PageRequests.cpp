// SPDX-License-Identifier: MIT
#include "PageRequests.h"

#include "LocationPermission.h"
#include "ObjectHolder.h"
#include "ShownText.h"

#include <QUrl>

#include <webkit2/webkit2.h>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

QString hostOf(const WebPage& page) {
    const QUrl url(page.address());
    return url.host().isEmpty() ? u"This page"_s : url.host();
}

QString problemText(unsigned problems) {
    QStringList texts;
    const auto add = [&](GTlsCertificateFlags flag, const QString& text) {
        if ((problems & static_cast<unsigned>(flag)) != 0) {
            texts.append(text);
        }
    };
    add(G_TLS_CERTIFICATE_UNKNOWN_CA, u"Its certificate was signed by an authority that this device does not know."_s);
    add(G_TLS_CERTIFICATE_BAD_IDENTITY, u"Its certificate is for another name."_s);
    add(G_TLS_CERTIFICATE_NOT_ACTIVATED, u"Its certificate is not valid yet."_s);
    add(G_TLS_CERTIFICATE_EXPIRED, u"Its certificate has expired."_s);
    add(G_TLS_CERTIFICATE_REVOKED, u"Its certificate was revoked."_s);
    add(G_TLS_CERTIFICATE_INSECURE, u"Its certificate uses an insecure algorithm."_s);
    return texts.isEmpty() ? u"Its certificate is not valid."_s : texts.join(u' ');
}

} // namespace

/// A page together with who answers for it; lives as long as the page's view.
struct PageRequests::Attended {
    PageRequests& requests;
    WebPage& page;
};

namespace {

struct DialogContext {
    SheetLayer& sheets;
    WebPage& page;
};

/// What the browser cannot show, or what is sent to be kept, is downloaded.
gboolean decidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type, gpointer) {
    if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
        return FALSE;
    }
    auto* const response = WEBKIT_RESPONSE_POLICY_DECISION(decision);
    SoupMessageHeaders* headers =
        webkit_uri_response_get_http_headers(webkit_response_policy_decision_get_response(response));
    char* disposition = nullptr;
    GHashTable* parameters = nullptr;
    bool isAttachment = false;
    if (headers != nullptr &&
        soup_message_headers_get_content_disposition(headers, &disposition, &parameters) != FALSE) {
        isAttachment = g_ascii_strcasecmp(disposition, "attachment") == 0;
        g_free(disposition);
        g_hash_table_destroy(parameters);
    }
    if (!isAttachment && webkit_response_policy_decision_is_mime_type_supported(response) != FALSE) {
        return FALSE;
    }
    webkit_policy_decision_download(decision);
    return TRUE;
}

gboolean answerDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer data) {
    const auto* context = static_cast<const DialogContext*>(data);
    const std::shared_ptr<WebKitScriptDialog> kept(webkit_script_dialog_ref(dialog), webkit_script_dialog_unref);
    const auto close = [kept] { webkit_script_dialog_close(kept.get()); };
    const WebKitScriptDialogType type = webkit_script_dialog_get_dialog_type(dialog);
    Sheet sheet{.title = hostOf(context->page),
                .text = QString::fromUtf8(webkit_script_dialog_get_message(dialog)),
                .asker = &context->page,
                .abandoned = close};
    const auto confirm = [kept, close](bool isConfirmed) {
        return [kept, close, isConfirmed](const QString&) {
            webkit_script_dialog_confirm_set_confirmed(kept.get(), isConfirmed ? TRUE : FALSE);
            close();
        };
    };
    switch (type) {
    case WEBKIT_SCRIPT_DIALOG_ALERT:
        sheet.buttons = {{.label = u"Close"_s,
                          .pressed = [close](const QString&) { close(); },
                          .isDefault = true,
                          .isCancel = true}};
        break;
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
        sheet.buttons = {{.label = u"Cancel"_s, .pressed = confirm(false), .isCancel = true},
                         {.label = u"OK"_s, .pressed = confirm(true), .isDefault = true}};
        break;
    case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
        sheet.title = u"Leave this page?"_s;
        sheet.buttons = {{.label = u"Stay"_s, .pressed = confirm(false), .isCancel = true},
                         {.label = u"Leave"_s, .pressed = confirm(true), .isDefault = true}};
        break;
    case WEBKIT_SCRIPT_DIALOG_PROMPT:
        sheet.entry = QString::fromUtf8(webkit_script_dialog_prompt_get_default_text(dialog));
        sheet.buttons = {{.label = u"Cancel"_s, .pressed = [close](const QString&) { close(); }, .isCancel = true},
                         {.label = u"OK"_s,
                          .pressed =
                              [kept, close](const QString& text) {
                                  webkit_script_dialog_prompt_set_text(kept.get(), text.toUtf8().constData());
                                  close();
                              },
                          .isDefault = true}};
        break;
    }
    context->sheets.show(std::move(sheet));
    return TRUE;
}

} // namespace

PageRequests::PageRequests(SheetLayer& sheets, LocationPermission& location, WebKitWebContext* context)
    : m_sheets(sheets)
    , m_location(location)
    , m_context(WEBKIT_WEB_CONTEXT(g_object_ref(context))) {
    const auto started = +[](WebKitWebContext*, WebKitDownload* item, gpointer requests) {
        static_cast<PageRequests*>(requests)->download(item);
    };
    g_signal_connect(m_context, "download-started", G_CALLBACK(started), this);
}

PageRequests::~PageRequests() {
    g_signal_handlers_disconnect_by_data(m_context, this);
    g_object_unref(m_context);
}

void PageRequests::attend(WebPage& page) {
    WebKitWebView* const view = page.view();
    const auto connect = [&](const char* signal, GCallback handler) {
        const auto release = +[](gpointer data, GClosure*) { delete static_cast<Attended*>(data); };
        g_signal_connect_data(view, signal, handler, new Attended{*this, page}, release, GConnectFlags(0));
    };
    const auto dialogRelease = +[](gpointer data, GClosure*) { delete static_cast<DialogContext*>(data); };
    g_signal_connect_data(view, "script-dialog", G_CALLBACK(answerDialog), new DialogContext{m_sheets, page},
                          dialogRelease, GConnectFlags(0));
    const auto permission = +[](WebKitWebView*, WebKitPermissionRequest* request, gpointer data) -> gboolean {
        const auto* attended = static_cast<Attended*>(data);
        attended->requests.askPermission(attended->page, request);
        return TRUE;
    };
    connect("permission-request", G_CALLBACK(permission));
    const auto files = +[](WebKitWebView*, WebKitFileChooserRequest* request, gpointer data) -> gboolean {
        const auto* attended = static_cast<Attended*>(data);
        attended->requests.chooseFiles(attended->page, request);
        return TRUE;
    };
    connect("run-file-chooser", G_CALLBACK(files));
    const auto options =
        +[](WebKitWebView*, WebKitOptionMenu* menu, GdkEvent*, GdkRectangle*, gpointer data) -> gboolean {
        const auto* attended = static_cast<Attended*>(data);
        attended->requests.chooseOption(attended->page, menu);
        return TRUE;
    };
    connect("show-option-menu", G_CALLBACK(options));
    const auto certificate = +[](WebKitWebView*, char* address, GTlsCertificate* shown, GTlsCertificateFlags problems,
                                 gpointer data) -> gboolean {
        const auto* attended = static_cast<Attended*>(data);
        attended->requests.explainCertificate(attended->page, QString::fromUtf8(address), shown, problems);
        return TRUE;
    };
    connect("load-failed-with-tls-errors", G_CALLBACK(certificate));
    const auto failed = +[](WebKitWebView*, WebKitLoadEvent, char* address, GError* error, gpointer data) -> gboolean {
        const auto* attended = static_cast<Attended*>(data);
        if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
            g_error_matches(error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE)) {
            return FALSE;
        }
        attended->page.showMessage(u"Safari Can’t Open the Page"_s,
                                   u"“%1” cannot be opened: %2."_s.arg(QString::fromUtf8(address).left(200),
                                                                       QString::fromUtf8(error->message)),
                                   QString::fromUtf8(address));
        return TRUE;
    };
    connect("load-failed", G_CALLBACK(failed));
    const auto ended = +[](WebKitWebView*, WebKitWebProcessTerminationReason, gpointer data) {
        const auto* attended = static_cast<Attended*>(data);
        attended->requests.forget(attended->page);
    };
    connect("web-process-terminated", G_CALLBACK(ended));
    g_signal_connect(view, "decide-policy", G_CALLBACK(decidePolicy), nullptr);
}

void PageRequests::forget(const WebPage& page) {
    m_sheets.abandon(&page);
    m_location.forget(page);
}

void PageRequests::askPermission(WebPage& page, WebKitPermissionRequest* request) {
    if (WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(request)) {
        // Also allowed without a location, as a refusal would stick to the page: the feed tells that there is none.
        m_location.answer(page, request);
        return;
    }
    QString wanted;
    if (WEBKIT_IS_USER_MEDIA_PERMISSION_REQUEST(request)) {
        auto* media = WEBKIT_USER_MEDIA_PERMISSION_REQUEST(request);
        const bool camera = webkit_user_media_permission_is_for_video_device(media) != FALSE;
        const bool microphone = webkit_user_media_permission_is_for_audio_device(media) != FALSE;
        wanted = camera && microphone ? u"the camera and the microphone"_s
                 : camera             ? u"the camera"_s
                                      : u"the microphone"_s;
    } else if (WEBKIT_IS_DEVICE_INFO_PERMISSION_REQUEST(request)) {
        webkit_permission_request_deny(request);
        return;
    } else if (WEBKIT_IS_NOTIFICATION_PERMISSION_REQUEST(request)) {
        wanted = u"notifications"_s;
    } else if (WEBKIT_IS_WEBSITE_DATA_ACCESS_PERMISSION_REQUEST(request)) {
        wanted = u"cookies and website data"_s;
    } else {
        webkit_permission_request_deny(request);
        return;
    }
    const auto kept = held(request);
    m_sheets.show({.title = u"“%1” Would Like to Use %2"_s.arg(hostOf(page), wanted),
                   .buttons = {{.label = u"Don’t Allow"_s,
                                .pressed = [kept](const QString&) { webkit_permission_request_deny(kept.get()); },
                                .isCancel = true},
                               {.label = u"Allow"_s,
                                .pressed = [kept](const QString&) { webkit_permission_request_allow(kept.get()); },
                                .isDefault = true}},
                   .asker = &page,
                   .abandoned = [kept] { webkit_permission_request_deny(kept.get()); }});
}

void PageRequests::chooseOption(WebPage& page, void* menu) {
    struct Choice {
        SheetLayer& sheets;
        std::shared_ptr<WebKitOptionMenu> menu;
        const void* asker;
    };

    const auto kept = held(WEBKIT_OPTION_MENU(menu));
    GtkWidget* list = gtk_list_box_new();
    for (guint index = 0; index < webkit_option_menu_get_n_items(kept.get()); ++index) {
        WebKitOptionMenuItem* item = webkit_option_menu_get_item(kept.get(), index);
        const char* const text = webkit_option_menu_item_get_label(item);
        GtkWidget* label = gtk_label_new(shownLine(text == nullptr ? "" : text).c_str());
        gtk_label_set_xalign(GTK_LABEL(label), 0);
        gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
        gtk_list_box_insert(GTK_LIST_BOX(list), label, -1);
        GtkListBoxRow* row = gtk_list_box_get_row_at_index(GTK_LIST_BOX(list), static_cast<int>(index));
        const bool isChoice =
            webkit_option_menu_item_is_enabled(item) != FALSE && webkit_option_menu_item_is_group_label(item) == FALSE;
        gtk_widget_set_sensitive(GTK_WIDGET(row), isChoice ? TRUE : FALSE);
        if (webkit_option_menu_item_is_selected(item) != FALSE) {
            gtk_list_box_select_row(GTK_LIST_BOX(list), row);
        }
    }
    const auto chosen = +[](GtkListBox*, GtkListBoxRow* row, gpointer data) {
        const Choice choice = *static_cast<Choice*>(data);
        webkit_option_menu_activate_item(choice.menu.get(), static_cast<guint>(gtk_list_box_row_get_index(row)));
        // The list goes with its sheet, so not from within its own signal.
        const auto finish = +[](gpointer finished) -> gboolean {
            const std::unique_ptr<Choice> done(static_cast<Choice*>(finished));
            done->sheets.abandon(done->asker);
            return G_SOURCE_REMOVE;
        };
        g_idle_add(finish, new Choice(choice));
    };
    const auto release = +[](gpointer data, GClosure*) { delete static_cast<Choice*>(data); };
    g_signal_connect_data(list, "row-activated", G_CALLBACK(chosen), new Choice{m_sheets, kept, &page}, release,
                          GConnectFlags(0));
    GtkWidget* scroller = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scroller), TRUE);
    gtk_scrolled_window_set_max_content_height(GTK_SCROLLED_WINDOW(scroller), 260);
    gtk_container_add(GTK_CONTAINER(scroller), list);
    const auto close = [kept] { webkit_option_menu_close(kept.get()); };
    m_sheets.show({.content = scroller,
                   .buttons = {{.label = u"Done"_s, .pressed = [close](const QString&) { close(); }, .isCancel = true}},
                   .asker = &page,
                   .abandoned = close});
}

void PageRequests::explainCertificate(WebPage& page, const QString& address, void* certificate, unsigned problems) {
    const QString host = QUrl(address).host();
    const QString explanation = problemText(problems);
    page.showMessage(u"This Connection Is Not Private"_s, u"“%1” cannot prove who it is. %2"_s.arg(host, explanation),
                     address);
    const auto kept = held(G_TLS_CERTIFICATE(certificate));
    m_sheets.show({.title = u"Trust “%1” on this device?"_s.arg(host),
                   .text = explanation +
                           u" Trust it if it is a server of your own, signed by a development authority of "
                           "yours. The device forgets that when it is shut down."_s,
                   .buttons = {{.label = u"Don’t Trust"_s, .isDefault = true, .isCancel = true},
                               {.label = u"Trust on This Device"_s,
                                .pressed =
                                    [this, kept, host, address, asking = &page](const QString&) {
                                        webkit_web_context_allow_tls_certificate_for_host(m_context, kept.get(),
                                                                                          host.toUtf8().constData());
                                        asking->load(address);
                                    }}},
                   .asker = &page});
}

} // namespace corvanta::lab
