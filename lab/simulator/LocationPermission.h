// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceSettings.h"
#include "SheetLayer.h"
#include "WebPage.h"

#include <functional>
#include <list>

typedef struct _WebKitPermissionRequest WebKitPermissionRequest;

namespace corvanta::lab {

/// Answers pages that want to know the location as the device's privacy settings say, and asks on the device's screen
/// where these leave it open: once for all that wait. Of the main thread.
class LocationPermission {
public:
    /// `chosen` is called with a person's answer; the settings that it leads to come back through `setAccess`.
    LocationPermission(SheetLayer& sheets, std::function<void(LocationAccess)> chosen);
    LocationPermission(const LocationPermission&) = delete;
    LocationPermission& operator=(const LocationPermission&) = delete;
    ~LocationPermission();

    /// What counts from now on, also for pages that wait for an answer.
    void setAccess(LocationAccess access);

    void answer(const WebPage& page, WebKitPermissionRequest* request);

    /// Takes back what the page asked.
    void forget(const WebPage& page);

private:
    struct Waiting {
        const WebPage* page = nullptr;
        WebKitPermissionRequest* request = nullptr;
    };

    void ask();
    void answerAll(bool isAllowed);
    void endQuestion();

    SheetLayer& m_sheets;
    std::function<void(LocationAccess)> m_chosen;
    LocationAccess m_access = LocationAccess::granted;
    std::list<Waiting> m_waiting;
};

} // namespace corvanta::lab
