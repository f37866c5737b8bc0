// SPDX-License-Identifier: MIT
#include "window/WorkspaceView.h"

#include "window/Appearance.h"
#include "window/ChoiceSection.h"
#include "window/ControlsSection.h"
#include "window/SetupSection.h"
#include "window/StatusSection.h"
#include "window/Symbols.h"
#include "window/Widgets.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

WorkspaceView::WorkspaceView(WorkspaceCoordinator& coordinator, TaskScope& tasks, WindowCallback onWindow,
                             QWidget* parent)
    : QWidget(parent)
    , m_coordinator(coordinator)
    , m_windowAccessor(*this, std::move(onWindow))
    , m_phaseMark(new StateMark)
    , m_phase(makeLabel(TextStyle::body)) {
    setObjectName(u"workspaceView"_s);
    setAttribute(Qt::WA_StyledBackground);
    setMinimumSize(300, 480);

    auto* const content = new QWidget;
    content->setObjectName(u"scrolledContent"_s);
    auto* const sections = new QVBoxLayout(content);
    sections->setContentsMargins(16, 16, 16, 16);
    sections->setSpacing(12);
    sections->addWidget(makeTitle());
    sections->addWidget(new SetupSection(coordinator, tasks));
    sections->addWidget(new ControlsSection(coordinator, tasks));
    sections->addWidget(new ChoiceSection(coordinator, tasks));
    sections->addStretch(1);

    auto* const scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);

    auto* const outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(scroll, 1);
    outer->addWidget(new StatusSection(coordinator));

    connect(&m_coordinator, &WorkspaceCoordinator::phaseChanged, this, &WorkspaceView::showPhase);
    connect(&m_coordinator, &WorkspaceCoordinator::selectedDeviceIDChanged, &m_coordinator,
            &WorkspaceCoordinator::persistProfile);
    showPhase();
}

QSize WorkspaceView::sizeHint() const {
    return {430, 860};
}

QWidget* WorkspaceView::makeTitle() {
    auto* const title = new QWidget;
    auto* const row = new QHBoxLayout(title);
    row->setContentsMargins(4, 0, 4, 0);
    row->setSpacing(8);
    constexpr int markSize = 36;
    auto* const mark = new QLabel;
    mark->setPixmap(Symbols::workspace(Appearance::forPalette(palette()).accent)
                        .pixmap(QSize(markSize, markSize), devicePixelRatioF()));
    row->addWidget(mark, 0, Qt::AlignTop);
    row->addSpacing(2);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(makeLabel(TextStyle::title, u"Corvanta"_s));
    texts->addWidget(makeLabel(TextStyle::secondary, u"Web testing workspace for iOS Simulator"_s));
    row->addLayout(texts, 1);
    m_phase->setWordWrap(false);
    row->addWidget(m_phaseMark, 0, Qt::AlignTop);
    row->addWidget(m_phase, 0, Qt::AlignTop);
    return title;
}

void WorkspaceView::showPhase() {
    m_phaseMark->setPhase(m_coordinator.phase());
    m_phase->setText(displayName(m_coordinator.phase()));
}

} // namespace corvanta
