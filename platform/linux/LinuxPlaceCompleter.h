// SPDX-License-Identifier: MIT
#pragma once

#include "PhotonService.h"
#include "PlaceCompleter.h"
#include "places/SharedGazetteer.h"
#include "support/Cancellation.h"
#include "support/Clock.h"
#include "support/TaskScope.h"

#include <QString>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace corvanta {

/// Suggests what the gazetteer knows as soon as it is asked, and below that, once nobody has typed for a moment, what a
/// service on the network knows. What is shown already stays where it is. Main thread only.
///
/// A service that fails is not spoken of. Only where there is no gazetteer either, the delegate hears why.
class LinuxPlaceCompleter final : public PlaceCompleter {
public:
    /// How long nobody types before the network is asked.
    static constexpr auto typingPause = std::chrono::milliseconds(250);
    /// A shorter text is not worth a question.
    static constexpr qsizetype shortestQuestion = 3;
    /// A longer text is not the name of anything, and finds nothing.
    static constexpr qsizetype longestQuestion = 200;
    static constexpr std::size_t mostOffline = 10;
    static constexpr std::size_t mostOnline = 10;

    /// What there is to ask. The clock outlives the completer.
    struct Sources {
        std::shared_ptr<SharedGazetteer> gazetteer;
        /// Null for none.
        std::shared_ptr<PhotonService> service;
        Clock& clock;
    };

    explicit LinuxPlaceCompleter(Sources sources);
    ~LinuxPlaceCompleter() override;

    void setDelegate(PlaceCompleterDelegate* delegate) override;
    void setResultTypes(PlaceResultTypes types) override;
    void setQueryFragment(const QString& fragment) override;
    [[nodiscard]] std::vector<PlaceCompletion> results() const override;

private:
    struct State;

    [[nodiscard]] static QCoro::Task<void> askService(std::shared_ptr<State> state, QString text,
                                                      CancellationToken token);

    Sources m_sources;
    std::shared_ptr<State> m_state;
    CancellationSource m_question;
    TaskScope m_tasks;
};

} // namespace corvanta
