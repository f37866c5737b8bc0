// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "PlaceCompleter.h"

#include <utility>

namespace corvanta::testing {

/// A completer that records what it is told and says what the test makes it say.
class FakePlaceCompleter final : public PlaceCompleter {
public:
    explicit FakePlaceCompleter(CallLog& log)
        : m_log(log) {}

    void setDelegate(PlaceCompleterDelegate* newDelegate) override { delegate = newDelegate; }

    void setResultTypes(PlaceResultTypes types) override { resultTypes = types; }

    void setQueryFragment(const QString& fragment) override {
        queryFragment = fragment;
        m_log.add(QStringLiteral("query fragment \"") + fragment + u'"');
    }

    [[nodiscard]] std::vector<PlaceCompletion> results() const override { return suggestions; }

    /// Gives these suggestions to whoever listens.
    void suggest(std::vector<PlaceCompletion> found) {
        suggestions = std::move(found);
        if (delegate != nullptr)
            delegate->completerDidUpdateResults();
    }

    void fail(const QString& description) {
        if (delegate != nullptr)
            delegate->completerDidFailWithError(description);
    }

    PlaceCompleterDelegate* delegate = nullptr;
    PlaceResultTypes resultTypes{};
    QString queryFragment;
    std::vector<PlaceCompletion> suggestions;

private:
    CallLog& m_log;
};

} // namespace corvanta::testing
