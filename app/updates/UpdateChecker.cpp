// SPDX-License-Identifier: MIT
#include "updates/UpdateChecker.h"

#include "support/CancelledError.h"
#include "updates/DecimalInteger.h"
#include "updates/UpdateEvaluator.h"

#include <QNetworkAccessManager>
#include <QPointer>

#include <exception>
#include <utility>
#include <variant>

namespace corvanta {

UpdateChecker::UpdateChecker(const URL& manifestURL, const QString& buildNumber, const Services& services,
                             const UpdateTransferLimits& limits, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_manifestURL(manifestURL.absoluteString())
    , m_installedBuild(decimalInteger(buildNumber).value_or(0))
    , m_limits(limits) {}

UpdateChecker::~UpdateChecker() {
    cancel();
}

void UpdateChecker::setPresentedAlert(const std::optional<UpdateAlert>& alert) {
    if (m_presentedAlert == alert)
        return;
    m_presentedAlert = alert;
    Q_EMIT presentedAlertChanged();
}

void UpdateChecker::setChecking(bool isChecking) {
    if (std::exchange(m_isChecking, isChecking) != isChecking)
        Q_EMIT isCheckingChanged();
}

QCoro::Task<void> UpdateChecker::check(bool showAllResults) {
    if (m_isChecking)
        co_return;
    // Whoever hears of a change may destroy the checker.
    const QPointer<UpdateChecker> self(this);
    const CancellationToken token = m_currentCheck.emplace().token();
    setChecking(true);
    if (!self)
        co_return;
    const auto answer =
        co_await findAnswer(&m_services.session, m_manifestURL, m_limits, &m_services.clock, m_installedBuild, token);
    if (!self)
        co_return;
    if (answer && (showAllResults || std::holds_alternative<UpdateAlert::Available>(answer->value())))
        setPresentedAlert(answer);
    if (self)
        setChecking(false);
}

QCoro::Task<std::optional<UpdateAlert>> UpdateChecker::findAnswer(QNetworkAccessManager* session, QUrl manifestURL,
                                                                  UpdateTransferLimits limits, Clock* clock,
                                                                  std::int64_t installedBuild,
                                                                  CancellationToken token) {
    try {
        const QByteArray body = co_await transferUpdateManifest(session, manifestURL, limits, clock, token);
        const UpdateManifest manifest = decodeUpdateManifest(JsonDecoder::parse(body));
        const UpdateDecision decision = UpdateEvaluator::decision(manifest, installedBuild);
        if (const auto* const update = std::get_if<UpdateDecision::UpdateAvailable>(&decision.value()))
            co_return UpdateAlert::available(update->manifest);
        co_return UpdateAlert::upToDate();
    } catch (const CancelledError&) {
        co_return std::nullopt;
    } catch (...) {
        co_return UpdateAlert::failed(errorTexts(std::current_exception()).description);
    }
}

QCoro::Task<void> UpdateChecker::checkAutomatically() {
    if (std::exchange(m_hasPerformedAutomaticCheck, true))
        co_return;
    co_await check(false);
}

void UpdateChecker::cancel() {
    if (m_currentCheck)
        m_currentCheck->cancel();
}

} // namespace corvanta
