// SPDX-License-Identifier: MIT
#pragma once

#include "support/URL.h"
#include "updates/UpdateManifest.h"

#include <QString>

#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace corvanta {

/// What a person is told about updates.
class UpdateAlert {
public:
    struct Available {
        /// Valid by the rules of UpdateEvaluator.
        UpdateManifest manifest;

        bool operator==(const Available&) const = default;
    };

    struct Failed {
        QString description;

        bool operator==(const Failed&) const = default;
    };

    struct UpToDate {
        bool operator==(const UpToDate&) const = default;
    };

    using Case = std::variant<Available, Failed, UpToDate>;

    [[nodiscard]] static UpdateAlert available(UpdateManifest manifest) {
        return UpdateAlert(Available{std::move(manifest)});
    }

    [[nodiscard]] static UpdateAlert failed(QString description) { return UpdateAlert(Failed{std::move(description)}); }

    [[nodiscard]] static UpdateAlert upToDate() { return UpdateAlert(UpToDate{}); }

    [[nodiscard]] const Case& value() const { return m_case; }

    /// Equal for alerts that say the same.
    [[nodiscard]] QString id() const;

    bool operator==(const UpdateAlert&) const = default;

private:
    explicit UpdateAlert(Case value)
        : m_case(std::move(value)) {}

    Case m_case;
};

enum class UpdateAlertButtonRole {
    /// Pressed by the return key.
    standard,
    /// Pressed by the escape key.
    cancel,
};

struct UpdateAlertButton {
    QString text;
    UpdateAlertButtonRole role = UpdateAlertButtonRole::standard;
    /// The address that pressing it opens, always https.
    std::optional<URL> opens;

    bool operator==(const UpdateAlertButton&) const = default;
};

/// An alert as it is shown. All of its texts are plain text, whatever they look like: they may come from the network.
struct UpdateAlertContent {
    QString title;
    QString message;
    /// The standard one first.
    std::vector<UpdateAlertButton> buttons;

    bool operator==(const UpdateAlertContent&) const = default;
};

/// `versionLine` is that of the running program.
[[nodiscard]] UpdateAlertContent updateAlertContent(const UpdateAlert& alert, const QString& versionLine);

/// The address from which the release may be downloaded; nothing unless it is https, also for a manifest that nobody
/// has validated.
[[nodiscard]] std::optional<URL> downloadAddress(const UpdateManifest& manifest);

} // namespace corvanta
