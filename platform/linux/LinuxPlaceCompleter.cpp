// SPDX-License-Identifier: MIT
#include "LinuxPlaceCompleter.h"

#include "CoordinateText.h"
#include "FoundPlace.h"
#include "locations/CoordinateFormatter.h"
#include "support/CancelledError.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Two towns of one name that are this near to each other are one.
constexpr double sameTownKilometres = 20;

double kilometresBetween(const Coordinate& a, const Coordinate& b) {
    constexpr double degree = std::numbers::pi / 180;
    constexpr double radius = 6371;
    const double north = (a.latitude - b.latitude) * degree;
    const double east = (a.longitude - b.longitude) * degree;
    const double chord = std::pow(std::sin(north / 2), 2) + std::cos(a.latitude * degree) *
                                                                std::cos(b.latitude * degree) *
                                                                std::pow(std::sin(east / 2), 2);
    return 2 * radius * std::asin(std::min(1.0, std::sqrt(chord)));
}

FoundPlace foundPlace(const GazetteerPlace& place) {
    QStringList around;
    for (const QString& part : {place.region, place.country}) {
        if (!part.isEmpty() && !around.contains(part))
            around.append(part);
    }
    // A city that is a country of its own.
    if (around.size() == 1 && around.constFirst() == place.name)
        around.clear();
    return {.title = place.name, .subtitle = around.join(u", "_s), .coordinate = place.coordinate};
}

bool isSame(const PhotonPlace& place, const FoundPlace& other) {
    if (NameFolding().foldTyped(place.found.title) != NameFolding().foldTyped(other.title))
        return false;
    return place.found.subtitle == other.subtitle ||
           (place.isSettlement && kilometresBetween(place.found.coordinate, other.coordinate) < sameTownKilometres);
}

bool includes(PlaceResultTypes types, PlaceResultTypes kind) {
    return (static_cast<unsigned>(types) & static_cast<unsigned>(kind)) != 0;
}

} // namespace

/// What a question on the network may still find when the completer is gone.
struct LinuxPlaceCompleter::State {
    State(std::shared_ptr<PhotonService> asked, Clock& time)
        : service(std::move(asked))
        , clock(time) {}

    void addBelow(const std::vector<PhotonPlace>& places) {
        std::size_t added = 0;
        for (const PhotonPlace& place : places) {
            const auto isSameAs = [&place](const FoundPlace& other) { return isSame(place, other); };
            if (added == mostOnline || !includes(types, place.kind) || std::ranges::any_of(found, isSameAs))
                continue;
            found.push_back(place.found);
            ++added;
        }
        if (added > 0 || !gazetteerProblem.isEmpty())
            tellResults();
    }

    void tellResults() const {
        if (delegate != nullptr)
            delegate->completerDidUpdateResults();
    }

    void tellFailure(const QString& description) {
        hasFailed = true;
        if (delegate != nullptr)
            delegate->completerDidFailWithError(description);
    }

    std::shared_ptr<PhotonService> service;
    Clock& clock;
    /// Empty where there is a gazetteer.
    QString gazetteerProblem;
    PlaceCompleterDelegate* delegate = nullptr;
    PlaceResultTypes types = PlaceResultTypes::addressAndPointOfInterest;
    QString fragment;
    bool hasFailed = false;
    std::vector<FoundPlace> found;
};

LinuxPlaceCompleter::LinuxPlaceCompleter(Sources sources)
    : m_sources(std::move(sources))
    , m_state(std::make_shared<State>(m_sources.service, m_sources.clock)) {}

LinuxPlaceCompleter::~LinuxPlaceCompleter() {
    m_state->delegate = nullptr;
    m_question.cancel();
}

void LinuxPlaceCompleter::setDelegate(PlaceCompleterDelegate* delegate) {
    m_state->delegate = delegate;
}

void LinuxPlaceCompleter::setResultTypes(PlaceResultTypes types) {
    m_state->types = types;
}

std::vector<PlaceCompletion> LinuxPlaceCompleter::results() const {
    std::vector<PlaceCompletion> completions;
    for (const FoundPlace& place : m_state->found)
        completions.push_back(completionOf(place));
    return completions;
}

void LinuxPlaceCompleter::setQueryFragment(const QString& fragment) {
    // Who asks again after a failure has stopped showing it.
    if (fragment == m_state->fragment && !m_state->hasFailed)
        return;
    m_question.cancel();
    m_question = CancellationSource();
    m_state->fragment = fragment;
    m_state->hasFailed = false;
    const bool hadResults = !std::exchange(m_state->found, {}).empty();
    if (fragment.isEmpty())
        return;

    const Gazetteer* const gazetteer = m_sources.gazetteer->get();
    m_state->gazetteerProblem = m_sources.gazetteer->problem();
    const bool isTooLong = fragment.size() > longestQuestion;
    const auto point = isTooLong ? std::nullopt : coordinateFromText(fragment);
    if (point)
        m_state->found.push_back(
            {.title = CoordinateFormatter::coordinatePair(*point), .subtitle = u"Coordinate"_s, .coordinate = *point});
    else if (!isTooLong && gazetteer != nullptr && includes(m_state->types, PlaceResultTypes::address))
        for (const PlaceIndex index : gazetteer->search(fragment, mostOffline))
            m_state->found.push_back(foundPlace(gazetteer->place(index)));

    // Whoever hears of the results may ask for others at once, which ends this question.
    const CancellationToken token = m_question.token();
    const bool isService = m_sources.service && !point && !isTooLong && fragment.size() >= shortestQuestion;
    const bool isStale = isService && hadResults;
    if (point || gazetteer != nullptr || isStale)
        m_state->tellResults();
    else if (!isService)
        m_state->tellFailure(m_state->gazetteerProblem);
    if (isService && !token.isCancelled())
        m_tasks.start(askService(m_state, fragment, token));
}

QCoro::Task<void> LinuxPlaceCompleter::askService(std::shared_ptr<State> state, QString text, CancellationToken token) {
    if (co_await state->clock.sleepFor(typingPause, token) == SleepResult::cancelled)
        co_return;
    QString problem;
    try {
        const auto places = co_await state->service->suggest(text, token);
        if (!token.isCancelled())
            state->addBelow(places);
        co_return;
    } catch (const CancelledError&) {
        co_return;
    } catch (const LocalizedError& error) {
        problem = error.errorDescription();
    }
    if (!token.isCancelled() && !state->gazetteerProblem.isEmpty())
        state->tellFailure(state->gazetteerProblem + u' ' + problem);
}

} // namespace corvanta
