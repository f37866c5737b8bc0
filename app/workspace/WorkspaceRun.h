// SPDX-License-Identifier: MIT
#pragma once

#include "support/Cancellation.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace corvanta {

class WorkspaceCoordinator;

/// Thrown by a run that another one has taken over; ends it in silence.
class RunSuperseded final {};

/// What a suspended operation of the coordinator may still do when it resumes.
///
/// Each start, reload and choice is a run of its own. A run ends when Stop or a newer run supersedes it, or when the
/// coordinator goes away: from then on it moves no phase, writes no text and starts no monitor.
class WorkspaceRun {
public:
    /// Shared by the coordinator and all of its runs; outlives both.
    struct Owner {
        WorkspaceCoordinator* coordinator = nullptr;
        std::uint64_t currentRun = 0;
        /// Cancelled when the current run is superseded.
        CancellationSource cancellation;
    };

    /// The run that is current now.
    explicit WorkspaceRun(std::shared_ptr<const Owner> owner)
        : m_owner(std::move(owner))
        , m_number(m_owner->currentRun)
        , m_token(m_owner->cancellation.token()) {}

    /// Cancelled as soon as the run is superseded, so that what works for it ends early.
    [[nodiscard]] const CancellationToken& token() const { return m_token; }

    [[nodiscard]] bool isCurrent() const { return m_owner->coordinator != nullptr && m_owner->currentRun == m_number; }

    /// Throws RunSuperseded unless the run is current. Called after every resumption, before anything else.
    void check() const {
        if (!isCurrent())
            throw RunSuperseded();
    }

private:
    std::shared_ptr<const Owner> m_owner;
    std::uint64_t m_number;
    CancellationToken m_token;
};

} // namespace corvanta
