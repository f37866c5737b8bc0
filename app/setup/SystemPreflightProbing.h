// SPDX-License-Identifier: MIT
#pragma once

#include "setup/SetupFacts.h"

#include <QCoroTask>

#include <optional>

namespace corvanta {

/// Gathers the facts that the setup checks judge.
class SystemPreflightProbing {
public:
    SystemPreflightProbing() = default;
    SystemPreflightProbing(const SystemPreflightProbing&) = delete;
    SystemPreflightProbing& operator=(const SystemPreflightProbing&) = delete;
    virtual ~SystemPreflightProbing() = default;

    /// Never fails: what cannot be found out is absent or false. The two arguments are copied into the result.
    [[nodiscard]] virtual QCoro::Task<SetupFacts> facts(bool accessibilityTrusted,
                                                        std::optional<bool> safariDeveloperFeatures) = 0;
};

} // namespace corvanta
