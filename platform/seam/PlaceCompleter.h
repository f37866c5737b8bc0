// SPDX-License-Identifier: MIT
#pragma once

#include "PlaceSearch.h"

#include <QString>

#include <vector>

namespace corvanta {

/// Which kinds of places a completer suggests; the numbers are MapKit's option values.
enum class PlaceResultTypes : unsigned { address = 1, pointOfInterest = 2, addressAndPointOfInterest = 3 };

/// Hears from a PlaceCompleter, on the main thread.
class PlaceCompleterDelegate {
public:
    virtual ~PlaceCompleterDelegate() = default;

    /// The completer's `results` are new. May come several times for one query fragment.
    virtual void completerDidUpdateResults() = 0;

    /// The query fragment could not be answered; `description` is the localised reason, for people.
    virtual void completerDidFailWithError(const QString& description) = 0;
};

/// Suggests places while their name is being typed. Main thread only.
class PlaceCompleter {
public:
    PlaceCompleter() = default;
    PlaceCompleter(const PlaceCompleter&) = delete;
    PlaceCompleter& operator=(const PlaceCompleter&) = delete;
    virtual ~PlaceCompleter() = default;

    /// Whom to tell; nobody when null. Must be reset before the delegate goes.
    virtual void setDelegate(PlaceCompleterDelegate* delegate) = 0;

    virtual void setResultTypes(PlaceResultTypes types) = 0;

    /// What has been typed so far. Each new text replaces the one before: the delegate hears no more of that.
    /// The empty text ends the suggesting; the delegate hears nothing of it.
    virtual void setQueryFragment(const QString& fragment) = 0;

    /// The suggestions for the present query fragment, the best first.
    [[nodiscard]] virtual std::vector<PlaceCompletion> results() const = 0;
};

} // namespace corvanta
