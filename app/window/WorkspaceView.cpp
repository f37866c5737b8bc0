// SPDX-License-Identifier: MIT
#include "window/WorkspaceView.h"

#include "window/ChoiceSection.h"
#include "window/ControlsSection.h"
#include "window/LocationSection.h"
#include "window/SavedLocationsSection.h"
#include "window/SetupSection.h"
#include "window/StatusSection.h"
#include "window/TitleSection.h"
#include "window/widgets/AddressField.h"
#include "window/widgets/OverlayScrollArea.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QResizeEvent>
#include <QVBoxLayout>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

WorkspaceView::WorkspaceView(const SectionContext& context, WindowCallback onWindow, QWidget* parent)
    : QWidget(parent)
    , m_windowAccessor(*this, std::move(onWindow))
    , m_status(nullptr) {
    setObjectName(u"workspaceView"_s);
    setAttribute(Qt::WA_StyledBackground);
    setMinimumSize(300, 480);

    auto* const content = new QWidget;
    content->setObjectName(u"scrolledContent"_s);
    auto* const sections = new QVBoxLayout(content);
    sections->setContentsMargins(16, 16, 16, 16);
    sections->setSpacing(12);
    sections->addWidget(new TitleSection(context));
    sections->addWidget(new SetupSection(context));
    sections->addWidget(new ControlsSection(context));
    sections->addWidget(new ChoiceSection(context));
    sections->addWidget(new LocationSection(context));
    sections->addWidget(new SavedLocationsSection(context));
    sections->addStretch(1);

    auto* const scroll = new OverlayScrollArea(OverlayScrollArea::Height::free);
    scroll->setContent(content);
    m_status = new StatusSection(context);
    auto* const outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(scroll, 1);
    outer->addWidget(m_status);

    // Where the hands are first: an address, and Return.
    if (auto* const address = content->findChild<AddressField*>())
        address->setFocus(Qt::OtherFocusReason);

    connect(&context.coordinator, &WorkspaceCoordinator::selectedDeviceIDChanged, this,
            [&coordinator = context.coordinator] { coordinator.persistProfile(); });
}

QSize WorkspaceView::sizeHint() const {
    return {430, 860};
}

void WorkspaceView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // However much there is to say, the controls stay within reach.
    m_status->setMaximumHeight(event->size().height() / 2);
}

} // namespace corvanta
