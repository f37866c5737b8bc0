// SPDX-License-Identifier: MIT
#pragma once

#include "SheetLayer.h"
#include "WebPage.h"

#include <QString>

#include <functional>

typedef struct _WebKitDownload WebKitDownload;
typedef struct _WebKitPermissionRequest WebKitPermissionRequest;

namespace corvanta::lab {

class LocationPermission;

/// What pages ask of a person, asked in sheets on the device: alerts, options, files, permissions, certificates and
/// downloads. Of the main thread; outlives the pages.
class PageRequests {
public:
    PageRequests(SheetLayer& sheets, LocationPermission& location, WebKitWebContext* context);
    PageRequests(const PageRequests&) = delete;
    PageRequests& operator=(const PageRequests&) = delete;
    ~PageRequests();

    /// Answers the page's requests until it goes.
    void attend(WebPage& page);

    /// Takes back what the page asked.
    void forget(const WebPage& page);

private:
    struct Attended;

    void askPermission(WebPage& page, WebKitPermissionRequest* request);
    void chooseFiles(WebPage& page, void* request);
    void explainCertificate(WebPage& page, const QString& address, void* certificate, unsigned problems);
    void chooseOption(WebPage& page, void* menu);
    void download(WebKitDownload* download);

    SheetLayer& m_sheets;
    LocationPermission& m_location;
    WebKitWebContext* m_context = nullptr;
};

} // namespace corvanta::lab
