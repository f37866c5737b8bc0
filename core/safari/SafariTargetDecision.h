// SPDX-License-Identifier: MIT
#pragma once

#include "safari/SafariTarget.h"

#include <utility>
#include <variant>
#include <vector>

namespace corvanta {

/// What to do about the pages that the Develop menu lists.
class SafariTargetDecision {
public:
    /// Exactly one page was identified: open its inspector.
    struct Attach {
        SafariTarget target;

        bool operator==(const Attach&) const = default;
    };

    /// Several candidates remain: let the user choose among them, in this order.
    struct Ambiguous {
        std::vector<SafariTarget> targets;

        bool operator==(const Ambiguous&) const = default;
    };

    /// There is no page, or no new one.
    struct None {
        bool operator==(const None&) const = default;
    };

    using Case = std::variant<Attach, Ambiguous, None>;

    [[nodiscard]] static SafariTargetDecision attach(SafariTarget target) {
        return SafariTargetDecision(Attach{std::move(target)});
    }

    [[nodiscard]] static SafariTargetDecision ambiguous(std::vector<SafariTarget> targets) {
        return SafariTargetDecision(Ambiguous{std::move(targets)});
    }

    [[nodiscard]] static SafariTargetDecision none() { return SafariTargetDecision(None{}); }

    [[nodiscard]] const Case& value() const { return m_case; }

    bool operator==(const SafariTargetDecision&) const = default;

private:
    explicit SafariTargetDecision(Case value)
        : m_case(std::move(value)) {}

    Case m_case;
};

} // namespace corvanta
