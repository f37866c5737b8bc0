// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "FakePlaceCompleter.h"
#include "PlaceSearch.h"
#include "Script.h"

namespace corvanta::testing {

enum class PlaceSearchOperation { search };

/// A search that records what it is asked for and finds what it was given.
class FakePlaceSearch final : public PlaceSearch {
public:
    FakePlaceSearch(VirtualClock& clock, CallLog& log)
        : script(clock)
        , m_log(log) {}

    [[nodiscard]] QCoro::Task<std::vector<MapItem>> search(PlaceCompletion completion) override {
        m_log.add(QStringLiteral("search ") + completion.title);
        co_await script.play(PlaceSearchOperation::search);
        co_return std::vector(found); // Returning the member itself would move from it.
    }

    [[nodiscard]] std::unique_ptr<PlaceCompleter> makeCompleter() override {
        auto completer = std::make_unique<FakePlaceCompleter>(m_log);
        latestCompleter = completer.get();
        return completer;
    }

    Script<PlaceSearchOperation> script;
    std::vector<MapItem> found;
    /// The completer that was made last; whoever asked for it owns it.
    FakePlaceCompleter* latestCompleter = nullptr;

private:
    CallLog& m_log;
};

} // namespace corvanta::testing
