// SPDX-License-Identifier: MIT
#pragma once

#include "PlaceCompleter.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace corvanta {

/// Suggests places for what is being typed.
///
/// Both properties are published once, after they have changed, on the main thread. Main thread only.
class LocationSearchCompleter final : public QObject, private PlaceCompleterDelegate {
    Q_OBJECT
    Q_PROPERTY(std::vector<corvanta::PlaceCompletion> results READ results NOTIFY resultsChanged)
    Q_PROPERTY(std::optional<QString> errorMessage READ errorMessage NOTIFY errorMessageChanged)

public:
    /// Makes its completer with the search, which outlives this.
    explicit LocationSearchCompleter(PlaceSearch& search, QObject* parent = nullptr);
    ~LocationSearchCompleter() override;

    [[nodiscard]] const std::vector<PlaceCompletion>& results() const { return m_results; }

    /// Why there are no results, for people.
    [[nodiscard]] const std::optional<QString>& errorMessage() const { return m_errorMessage; }

    [[nodiscard]] PlaceCompleter& completer() { return *m_completer; }

    /// To be called with each new text, however short. White space at either end does not count.
    void update(const QString& query);

    void setResults(std::vector<PlaceCompletion> results);

Q_SIGNALS:
    void resultsChanged();
    void errorMessageChanged();

private:
    void completerDidUpdateResults() override;
    void completerDidFailWithError(const QString& description) override;
    void setErrorMessage(std::optional<QString> message);

    std::vector<PlaceCompletion> m_results;
    std::optional<QString> m_errorMessage;
    std::unique_ptr<PlaceCompleter> m_completer;
};

} // namespace corvanta
