// SPDX-License-Identifier: MIT
#include "shell/UpdateAlertPresenter.h"

#include "shell/AppIdentity.h"
#include "shell/UpdateAlertDialog.h"

#include <utility>

namespace corvanta {

UpdateAlertPresenter::UpdateAlertPresenter(UpdateChecker& checker, Desktop& desktop, std::function<QWidget*()> window,
                                           QObject* parent)
    : QObject(parent)
    , m_checker(checker)
    , m_desktop(desktop)
    , m_window(std::move(window)) {
    connect(&m_checker, &UpdateChecker::presentedAlertChanged, this, [this] {
        close();
        present();
    });
    // The same answer as before is no change, but whoever asked again wants to see it.
    connect(&m_checker, &UpdateChecker::isCheckingChanged, this, &UpdateAlertPresenter::bringForward);
}

UpdateAlertPresenter::~UpdateAlertPresenter() {
    close();
}

void UpdateAlertPresenter::present() {
    const auto alert = m_checker.presentedAlert();
    if (!alert || m_dialog)
        return;
    auto* const dialog = new UpdateAlertDialog(updateAlertContent(*alert, AppIdentity::versionLine()), m_window());
    connect(dialog, &UpdateAlertDialog::addressRequested, this,
            [this](const URL& address) { m_desktop.openURL(address); });
    connect(dialog, &QDialog::finished, this, [this, shown = *alert] { dismiss(shown); });
    m_dialog = dialog;
    // Modal to its window, which waits without the program waiting.
    if (dialog->parentWidget())
        dialog->setWindowModality(Qt::WindowModal);
    dialog->show();
    bringForward();
}

void UpdateAlertPresenter::close() {
    if (QDialog* const dialog = std::exchange(m_dialog, nullptr)) {
        dialog->disconnect(this);
        dialog->close();
    }
}

void UpdateAlertPresenter::bringForward() {
    if (!m_dialog || m_checker.isChecking())
        return;
    m_dialog->raise();
    m_dialog->activateWindow();
}

void UpdateAlertPresenter::dismiss(const UpdateAlert& alert) {
    m_dialog = nullptr;
    if (m_checker.presentedAlert() == alert)
        m_checker.setPresentedAlert(std::nullopt);
}

} // namespace corvanta
