// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "updates/UpdateChecker.h"

#include <QObject>
#include <QPointer>

#include <functional>

class QDialog;

namespace corvanta {

/// Shows the update checker's alert, one at a time, and takes it back when it is dismissed. Nothing waits for it.
class UpdateAlertPresenter final : public QObject {
    Q_OBJECT

public:
    /// `window` answers the window that alerts belong to, null while there is none. All of it outlives the presenter.
    UpdateAlertPresenter(UpdateChecker& checker, Desktop& desktop, std::function<QWidget*()> window,
                         QObject* parent = nullptr);
    ~UpdateAlertPresenter() override;

    /// Shows what there is to show; for a window that has been opened since the alert went with the last one.
    void present();

    /// Takes the alert from the screen without its having been dismissed.
    void close();

private:
    void bringForward();
    void dismiss(const UpdateAlert& alert);

    UpdateChecker& m_checker;
    Desktop& m_desktop;
    const std::function<QWidget*()> m_window;
    QPointer<QDialog> m_dialog;
};

} // namespace corvanta
