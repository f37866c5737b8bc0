// SPDX-License-Identifier: MIT
#pragma once

#include "LocalSearchCompleter.h"
#include "PlaceCompleter.h"

namespace corvanta {

/// Suggestions by MapKit.
class MacPlaceCompleter final : public PlaceCompleter {
public:
    MacPlaceCompleter();

    void setDelegate(PlaceCompleterDelegate* delegate) override { m_delegate = delegate; }

    void setResultTypes(PlaceResultTypes types) override;
    void setQueryFragment(const QString& fragment) override;
    [[nodiscard]] std::vector<PlaceCompletion> results() const override;

private:
    /// Whether the completer's answers are to be passed on: MapKit may still answer what is no longer asked.
    [[nodiscard]] bool isAsked() const { return m_delegate != nullptr && !m_fragment.isEmpty(); }

    PlaceCompleterDelegate* m_delegate = nullptr;
    QString m_fragment;
    LocalSearchCompleter m_completer;
};

} // namespace corvanta
