// SPDX-License-Identifier: MIT
#pragma once

#include "layout/WindowAccessor.h"
#include "window/SectionContext.h"

#include <QWidget>

namespace corvanta {

class StatusSection;

/// The control window's content: sections that scroll, and the status line at the foot.
///
/// It holds no logic: every control reads the coordinator's properties and calls one of its operations.
class WorkspaceView final : public QWidget {
    Q_OBJECT

public:
    /// `onWindow` learns which window the view stands in.
    WorkspaceView(const SectionContext& context, WindowCallback onWindow, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    WindowAccessor m_windowAccessor;
    StatusSection* m_status;
};

} // namespace corvanta
