// SPDX-License-Identifier: MIT
#include "safari/SafariTargetSelector.h"

#include <QStringList>

#include <algorithm>
#include <set>

namespace corvanta::SafariTargetSelector {

namespace {

/// What a page's title may mention of the address, in lower case.
QStringList needles(const URL& url) {
    QStringList result{url.absoluteString().toLower(), url.host().value_or(QString()).toLower(), url.path().toLower()};
    result.removeIf([](const QString& needle) { return needle.isEmpty() || needle == u'/'; });
    return result;
}

SafariTargetDecision choose(const std::vector<SafariTarget>& targets, const std::optional<URL>& requestedURL) {
    if (targets.size() == 1)
        return SafariTargetDecision::attach(targets.front());
    if (!requestedURL)
        return SafariTargetDecision::ambiguous(targets);

    const QStringList wanted = needles(*requestedURL);
    const auto mentionsURL = [&wanted](const SafariTarget& target) {
        const QString title = target.title.toLower();
        return std::ranges::any_of(wanted, [&title](const QString& needle) { return title.contains(needle); });
    };
    if (std::ranges::count_if(targets, mentionsURL) != 1)
        return SafariTargetDecision::ambiguous(targets);
    return SafariTargetDecision::attach(*std::ranges::find_if(targets, mentionsURL));
}

std::vector<SafariTarget> newTargets(const std::vector<SafariTarget>& previous,
                                     const std::vector<SafariTarget>& current) {
    std::set<QString> known;
    for (const SafariTarget& target : previous)
        known.insert(target.id);
    std::vector<SafariTarget> result;
    std::ranges::copy_if(current, std::back_inserter(result),
                         [&known](const SafariTarget& target) { return !known.contains(target.id); });
    return result;
}

} // namespace

SafariTargetDecision decide(const std::vector<SafariTarget>& previous, const std::vector<SafariTarget>& current,
                            const std::optional<URL>& requestedURL) {
    if (current.empty())
        return SafariTargetDecision::none();
    if (previous.empty())
        return choose(current, requestedURL);
    // A page that replaced another one leaves the count as it was and is not new.
    if (previous.size() >= current.size())
        return SafariTargetDecision::none();
    const auto candidates = newTargets(previous, current);
    if (candidates.empty())
        return SafariTargetDecision::none();
    return choose(candidates, requestedURL);
}

} // namespace corvanta::SafariTargetSelector
