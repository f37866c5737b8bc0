// SPDX-License-Identifier: MIT
#include "MacPlaceSearch.h"

#include "Answer.h"
#include "LocalSearch.h"
#include "MacPlaceCompleter.h"
#include "NativeError.h"

namespace corvanta {

std::unique_ptr<PlaceCompleter> MacPlaceSearch::makeCompleter() {
    return std::make_unique<MacPlaceCompleter>();
}

QCoro::Task<std::vector<MapItem>> MacPlaceSearch::search(PlaceCompletion completion) {
    if (!completion.source)
        co_return {};
    Answer<LocalSearchOutcome> answer;
    startLocalSearch(completion, [answer](const LocalSearchOutcome& outcome) { answer.give(outcome); });
    const auto outcome = co_await std::move(answer).wait();
    if (!outcome)
        co_return {};
    if (outcome->failure)
        throw NativeError(*outcome->failure);
    co_return std::vector(outcome->items);
}

} // namespace corvanta
