// SPDX-License-Identifier: MIT
#include "MacPlaceCompleter.h"

namespace corvanta {

MacPlaceCompleter::MacPlaceCompleter()
    : m_completer({.didUpdate =
                       [this] {
                           if (isAsked())
                               m_delegate->completerDidUpdateResults();
                       },
                   .didFail =
                       [this](const QString& description) {
                           if (isAsked())
                               m_delegate->completerDidFailWithError(description);
                       }}) {}

void MacPlaceCompleter::setResultTypes(PlaceResultTypes types) {
    m_completer.setResultTypes(static_cast<unsigned>(types));
}

void MacPlaceCompleter::setQueryFragment(const QString& fragment) {
    m_fragment = fragment;
    m_completer.setQueryFragment(fragment);
}

std::vector<PlaceCompletion> MacPlaceCompleter::results() const {
    return m_fragment.isEmpty() ? std::vector<PlaceCompletion>() : m_completer.results();
}

} // namespace corvanta
