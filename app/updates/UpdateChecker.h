// SPDX-License-Identifier: MIT
#pragma once

#include "support/Cancellation.h"
#include "support/Clock.h"
#include "support/URL.h"
#include "updates/UpdateAlert.h"
#include "updates/UpdateTransfer.h"

#include <QCoroTask>
#include <QObject>
#include <QUrl>

#include <cstdint>
#include <optional>

class QNetworkAccessManager;

namespace corvanta {

/// Asks the maker's server whether there is a newer build, and publishes at most one alert about it.
///
/// A silent check speaks only when there is something to install; a requested one always answers. Main thread only.
class UpdateChecker final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY isCheckingChanged)
    Q_PROPERTY(std::optional<corvanta::UpdateAlert> presentedAlert READ presentedAlert WRITE setPresentedAlert NOTIFY
                   presentedAlertChanged)

public:
    /// What the checker works with. `session` and `clock` outlive the checker and its tasks.
    struct Services {
        QNetworkAccessManager& session;
        Clock& clock;
    };

    /// `buildNumber` is that of the running program; a text that is no number counts as 0.
    UpdateChecker(const URL& manifestURL, const QString& buildNumber, const Services& services,
                  const UpdateTransferLimits& limits = {}, QObject* parent = nullptr);
    /// Ends a check that is under way; its task then ends without a result.
    ~UpdateChecker() override;

    /// A check is under way.
    [[nodiscard]] bool isChecking() const { return m_isChecking; }

    /// The alert that is to be shown. Whoever shows it takes it back by setting nothing when it is dismissed.
    [[nodiscard]] const std::optional<UpdateAlert>& presentedAlert() const { return m_presentedAlert; }

    void setPresentedAlert(const std::optional<UpdateAlert>& alert);

    /// Looks for a newer build; does nothing while another check is under way. Never throws. With `showAllResults` also
    /// failures and "up to date" become alerts.
    [[nodiscard]] QCoro::Task<void> check(bool showAllResults);

    /// A silent check at the first call in the life of this object, nothing at any later one.
    [[nodiscard]] QCoro::Task<void> checkAutomatically();

    /// Ends a check that is under way without a result, so that nobody has to wait for it; its task ends at one of the
    /// next turns of the event loop.
    void cancel();

Q_SIGNALS:
    void isCheckingChanged();
    void presentedAlertChanged();

private:
    void setChecking(bool isChecking);
    /// What a requested check answers; nothing when it was cancelled.
    [[nodiscard]] static QCoro::Task<std::optional<UpdateAlert>>
    findAnswer(QNetworkAccessManager* session, QUrl manifestURL, UpdateTransferLimits limits, Clock* clock,
               std::int64_t installedBuild, CancellationToken token);

    const Services m_services;
    const QUrl m_manifestURL;
    const std::int64_t m_installedBuild;
    const UpdateTransferLimits m_limits;
    std::optional<CancellationSource> m_currentCheck;
    std::optional<UpdateAlert> m_presentedAlert;
    bool m_isChecking = false;
    bool m_hasPerformedAutomaticCheck = false;
};

} // namespace corvanta
