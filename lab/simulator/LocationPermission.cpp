// SPDX-License-Identifier: MIT
#include "LocationPermission.h"

#include <webkit2/webkit2.h>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

void finish(WebKitPermissionRequest* request, bool isAllowed) {
    isAllowed ? webkit_permission_request_allow(request) : webkit_permission_request_deny(request);
    g_object_unref(request);
}

} // namespace

LocationPermission::LocationPermission(SheetLayer& sheets, std::function<void(LocationAccess)> chosen)
    : m_sheets(sheets)
    , m_chosen(std::move(chosen)) {}

LocationPermission::~LocationPermission() {
    answerAll(false);
}

void LocationPermission::setAccess(LocationAccess access) {
    m_access = access;
    if (access != LocationAccess::ask && !m_waiting.empty()) {
        answerAll(access != LocationAccess::denied);
        endQuestion();
    }
}

void LocationPermission::answerAll(bool isAllowed) {
    for (const Waiting& waiting : std::exchange(m_waiting, {})) {
        finish(waiting.request, isAllowed);
    }
}

void LocationPermission::answer(const WebPage& page, WebKitPermissionRequest* request) {
    g_object_ref(request);
    if (m_access != LocationAccess::ask) {
        finish(request, m_access != LocationAccess::denied);
        return;
    }
    m_waiting.push_back({&page, request});
    if (m_waiting.size() == 1) {
        ask();
    }
}

void LocationPermission::forget(const WebPage& page) {
    const auto isOfPage = [&](const Waiting& waiting) { return waiting.page == &page; };
    for (const Waiting& waiting : m_waiting) {
        if (isOfPage(waiting)) {
            finish(waiting.request, false);
        }
    }
    if (m_waiting.remove_if(isOfPage) > 0 && m_waiting.empty()) {
        endQuestion();
    }
}

void LocationPermission::ask() {
    const auto choose = [this](LocationAccess access) {
        return [this, access](const QString&) {
            m_chosen(access);
            // Also when the choice could not be kept.
            answerAll(access != LocationAccess::denied);
        };
    };
    m_sheets.show(
        {.title = u"Allow “Safari” to use your location?"_s,
         .text = u"Websites you visit may request your location."_s,
         .buttons = {{.label = u"Allow Once"_s, .pressed = choose(LocationAccess::grantedOnce)},
                     {.label = u"Allow While Using App"_s,
                      .pressed = choose(LocationAccess::granted),
                      .isDefault = true},
                     {.label = u"Don’t Allow"_s, .pressed = choose(LocationAccess::denied), .isCancel = true}},
         .asker = this});
}

void LocationPermission::endQuestion() {
    m_sheets.abandon(this);
}

} // namespace corvanta::lab
