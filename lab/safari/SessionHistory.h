// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace corvanta::lab {

/// A page that was seen in this session.
struct Visit {
    std::string url;
    /// The page's title, or its address as long as it has none.
    std::string title;

    bool operator==(const Visit&) const = default;
};

/// The pages of one session, the last one first and each of them once. Nothing of it is kept on disk.
class SessionHistory {
public:
    static constexpr std::size_t longest = 20;

    /// Start pages and other pages without an address of their own are not remembered.
    void visit(const std::string& url);
    /// Gives a remembered page its title.
    void retitle(const std::string& url, const std::string& title);

    void clear() { m_visits.clear(); }

    [[nodiscard]] const std::vector<Visit>& visits() const { return m_visits; }

private:
    std::vector<Visit> m_visits;
};

} // namespace corvanta::lab
