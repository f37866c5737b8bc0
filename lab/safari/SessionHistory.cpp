// SPDX-License-Identifier: MIT
#include "SessionHistory.h"

#include <algorithm>

namespace corvanta::lab {

void SessionHistory::visit(const std::string& url) {
    if (url.empty() || url.starts_with("about:") || url.starts_with("data:") || url.starts_with("blob:"))
        return;
    const auto known = std::ranges::find(m_visits, url, &Visit::url);
    if (known != m_visits.end()) {
        std::rotate(m_visits.begin(), known, known + 1);
        return;
    }
    m_visits.insert(m_visits.begin(), {url, url});
    if (m_visits.size() > longest)
        m_visits.pop_back();
}

void SessionHistory::retitle(const std::string& url, const std::string& title) {
    const auto known = std::ranges::find(m_visits, url, &Visit::url);
    if (known != m_visits.end() && !title.empty())
        known->title = title;
}

} // namespace corvanta::lab
