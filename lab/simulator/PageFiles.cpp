// SPDX-License-Identifier: MIT
// The files that pages take from the desktop and leave on it.
#include "PageRequests.h"

#include "ObjectHolder.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <webkit2/webkit2.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

QDir downloadFolder() {
    const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
    return {folder != nullptr ? QString::fromUtf8(folder) : QDir::homePath() + u"/Downloads"_s};
}

/// The list of files in a file chooser, where a slash begins a path; null when there is none.
GtkWidget* listIn(GtkWidget* widget) {
    if (GTK_IS_TREE_VIEW(widget)) {
        return widget;
    }
    GtkWidget* found = nullptr;
    if (GTK_IS_CONTAINER(widget)) {
        const auto look = +[](GtkWidget* child, gpointer result) {
            auto** list = static_cast<GtkWidget**>(result);
            *list = *list != nullptr ? *list : listIn(child);
        };
        gtk_container_forall(GTK_CONTAINER(widget), look, &found);
    }
    return found;
}

} // namespace

void PageRequests::chooseFiles(WebPage& page, void* request) {
    const auto kept = held(WEBKIT_FILE_CHOOSER_REQUEST(request));
    GtkWidget* chooser = gtk_file_chooser_widget_new(GTK_FILE_CHOOSER_ACTION_OPEN);
    GtkFileChooser* const files = GTK_FILE_CHOOSER(chooser);
    gtk_file_chooser_set_select_multiple(files, webkit_file_chooser_request_get_select_multiple(kept.get()));
    if (GtkFileFilter* filter = webkit_file_chooser_request_get_mime_types_filter(kept.get())) {
        gtk_file_chooser_set_filter(files, filter);
    }
    gtk_file_chooser_set_current_folder(files, downloadFolder().path().toUtf8().constData());
    gtk_widget_set_size_request(chooser, 180, 240);
    const auto activated =
        +[](GtkFileChooser*, gpointer sheets) { static_cast<SheetLayer*>(sheets)->pressDefaultLater(); };
    g_signal_connect(chooser, "file-activated", G_CALLBACK(activated), &m_sheets);
    m_sheets.show({.title = u"Choose a File"_s,
                   .content = chooser,
                   .focused = listIn(chooser),
                   .buttons = {{.label = u"Cancel"_s,
                                .pressed = [kept](const QString&) { webkit_file_chooser_request_cancel(kept.get()); },
                                .isCancel = true},
                               {.label = u"Open"_s,
                                .pressed =
                                    [kept, files](const QString&) {
                                        GSList* names = gtk_file_chooser_get_filenames(files);
                                        std::vector<const char*> chosen;
                                        for (const GSList* name = names; name != nullptr; name = name->next) {
                                            chosen.push_back(static_cast<const char*>(name->data));
                                        }
                                        if (chosen.empty()) {
                                            webkit_file_chooser_request_cancel(kept.get());
                                        } else {
                                            chosen.push_back(nullptr);
                                            webkit_file_chooser_request_select_files(kept.get(), chosen.data());
                                        }
                                        g_slist_free_full(names, g_free);
                                    },
                                .isDefault = true}},
                   .asker = &page,
                   .abandoned = [kept] { webkit_file_chooser_request_cancel(kept.get()); }});
}

void PageRequests::download(WebKitDownload* item) {
    const auto destination = +[](WebKitDownload* started, char* suggested, gpointer requests) -> gboolean {
        const QDir downloads = downloadFolder();
        downloads.mkpath(u"."_s);
        const QFileInfo wanted(QString::fromUtf8(suggested).isEmpty() ? u"download"_s : QString::fromUtf8(suggested));
        QString path = downloads.filePath(wanted.fileName());
        for (int number = 2; QFileInfo::exists(path); ++number) {
            const QString ending = wanted.completeSuffix().isEmpty() ? QString() : u'.' + wanted.completeSuffix();
            path = downloads.filePath(u"%1 %2%3"_s.arg(wanted.baseName()).arg(number).arg(ending));
        }
        const auto kept = held(started);
        const QUrl from(QString::fromUtf8(webkit_uri_request_get_uri(webkit_download_get_request(started))));
        // The engine waits for the destination, so the question is asked while it waits.
        static_cast<PageRequests*>(requests)->m_sheets.show(
            {.title = u"Do you want to download “%1”?"_s.arg(wanted.fileName()),
             .text = u"From %1, to %2."_s.arg(from.host().isEmpty() ? u"this page"_s : from.host(),
                                              downloads.absolutePath()),
             .buttons = {{.label = u"Cancel"_s,
                          .pressed = [kept](const QString&) { webkit_download_cancel(kept.get()); },
                          .isCancel = true},
                         {.label = u"Download"_s,
                          .pressed =
                              [kept, path](const QString&) {
                                  webkit_download_set_destination(kept.get(), path.toUtf8().constData());
                              },
                          .isDefault = true}},
             .asker = requests,
             .abandoned = [kept] { webkit_download_cancel(kept.get()); }});
        return TRUE;
    };
    g_signal_connect(item, "decide-destination", G_CALLBACK(destination), this);
    const auto failed = +[](WebKitDownload*, GError* error, gpointer requests) {
        if (!g_error_matches(error, WEBKIT_DOWNLOAD_ERROR, WEBKIT_DOWNLOAD_ERROR_CANCELLED_BY_USER)) {
            static_cast<PageRequests*>(requests)->m_sheets.show(
                {.title = u"The download failed"_s,
                 .text = QString::fromUtf8(error->message),
                 .buttons = {{.label = u"OK"_s, .isDefault = true, .isCancel = true}},
                 .asker = requests});
        }
    };
    g_signal_connect(item, "failed", G_CALLBACK(failed), this);
}

} // namespace corvanta::lab
