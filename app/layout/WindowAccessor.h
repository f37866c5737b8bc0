// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <functional>

namespace corvanta {

/// Called on the main thread with the window that a view stands in, or with nothing once it stands in none.
using WindowCallback = std::function<void(QWidget*)>;

/// An invisible view that tells which window it has been moved into.
class WindowCaptureView final : public QWidget {
    Q_OBJECT

public:
    explicit WindowCaptureView(QWidget* parent);

    WindowCallback onWindow;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
};

/// Puts a WindowCaptureView behind a view and keeps its callback up to date.
class WindowAccessor final {
public:
    /// `host` owns the capturing view.
    WindowAccessor(QWidget& host, WindowCallback onWindow);

    /// Replaces the callback.
    void update(WindowCallback onWindow);

private:
    WindowCaptureView* m_view;
};

} // namespace corvanta
