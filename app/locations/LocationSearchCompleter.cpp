// SPDX-License-Identifier: MIT
#include "locations/LocationSearchCompleter.h"

#include "support/Text.h"

#include <utility>

namespace corvanta {

LocationSearchCompleter::LocationSearchCompleter(PlaceSearch& search, QObject* parent)
    : QObject(parent)
    , m_completer(search.makeCompleter()) {
    m_completer->setDelegate(this);
    m_completer->setResultTypes(PlaceResultTypes::addressAndPointOfInterest);
}

LocationSearchCompleter::~LocationSearchCompleter() {
    m_completer->setDelegate(nullptr);
}

void LocationSearchCompleter::update(const QString& query) {
    const QString text = trimmedText(query);
    setErrorMessage(std::nullopt);
    if (text.isEmpty())
        setResults({});
    m_completer->setQueryFragment(text);
}

void LocationSearchCompleter::setResults(std::vector<PlaceCompletion> results) {
    const bool wasEmpty = m_results.empty();
    m_results = std::move(results);
    // Suggestions cannot be compared, but none are none.
    if (!wasEmpty || !m_results.empty())
        Q_EMIT resultsChanged();
}

void LocationSearchCompleter::setErrorMessage(std::optional<QString> message) {
    if (m_errorMessage == message)
        return;
    m_errorMessage = std::move(message);
    Q_EMIT errorMessageChanged();
}

void LocationSearchCompleter::completerDidUpdateResults() {
    setResults(m_completer->results());
}

void LocationSearchCompleter::completerDidFailWithError(const QString& description) {
    setResults({});
    setErrorMessage(description);
}

} // namespace corvanta
