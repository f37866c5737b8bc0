// SPDX-License-Identifier: MIT
#include "window/ControlsSection.h"

#include "window/Appearance.h"
#include "window/Symbols.h"
#include "window/Widgets.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

ControlsSection::ControlsSection(WorkspaceCoordinator& coordinator, TaskScope& tasks, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(coordinator)
    , m_tasks(tasks)
    , m_address(new QLineEdit)
    , m_devices(new Picker)
    , m_refresh(new QPushButton)
    , m_start(new QPushButton(u"Start Workspace"_s))
    , m_reload(new QPushButton(u"Open / Reload"_s))
    , m_retile(new QPushButton(u"Re-tile"_s))
    , m_stop(new QPushButton(u"Stop"_s)) {
    auto* const outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* const card = new Card;
    outer->addWidget(card);

    card->rows().addWidget(makeLabel(TextStyle::heading, u"Workspace"_s));
    m_address->setPlaceholderText(u"http://localhost:3000"_s);
    m_address->setAccessibleName(u"Page address"_s);
    card->rows().addWidget(m_address);

    auto* const deviceRow = new QHBoxLayout;
    deviceRow->setSpacing(8);
    auto* const deviceLabel = makeLabel(TextStyle::body, u"Simulator"_s);
    deviceLabel->setWordWrap(false);
    deviceLabel->setBuddy(m_devices);
    m_devices->setAccessibleName(u"Simulator"_s);
    m_devices->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_devices->setMinimumContentsLength(4);
    m_devices->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    const Appearance appearance = Appearance::forPalette(palette());
    m_refresh->setIcon(Symbols::refresh(appearance.text, appearance.blocked));
    m_refresh->setToolTip(u"Refresh simulator devices"_s);
    m_refresh->setAccessibleName(u"Refresh simulator devices"_s);
    deviceRow->addWidget(deviceLabel);
    deviceRow->addWidget(m_devices, 1);
    deviceRow->addWidget(m_refresh);
    card->rows().addLayout(deviceRow);

    m_start->setObjectName(u"prominent"_s);
    m_stop->setObjectName(u"destructive"_s);
    card->rows().addWidget(new ButtonRows({m_start, m_reload, m_retile, m_stop}));

    connect(m_address, &QLineEdit::textChanged, &m_coordinator, &WorkspaceCoordinator::setUrlInput);
    connect(m_address, &QLineEdit::returnPressed, this, &ControlsSection::addressSubmitted);
    connect(m_devices, &QComboBox::activated, this, [this](int index) {
        if (const QString udid = m_devices->itemData(index).toString(); !udid.isEmpty())
            m_coordinator.setSelectedDeviceID(udid);
    });
    connect(m_refresh, &QPushButton::clicked, this, [this] { m_tasks.start(m_coordinator.refreshDevices()); });
    connect(m_start, &QPushButton::clicked, this, [this] { m_tasks.start(m_coordinator.startWorkspace()); });
    connect(m_reload, &QPushButton::clicked, this, [this] { m_tasks.start(m_coordinator.reloadPage()); });
    connect(m_retile, &QPushButton::clicked, &m_coordinator, &WorkspaceCoordinator::retile);
    connect(m_stop, &QPushButton::clicked, &m_coordinator, &WorkspaceCoordinator::stopWorkspace);

    connect(&m_coordinator, &WorkspaceCoordinator::urlInputChanged, this, &ControlsSection::showAddress);
    connect(&m_coordinator, &WorkspaceCoordinator::devicesChanged, this, &ControlsSection::showDevices);
    connect(&m_coordinator, &WorkspaceCoordinator::selectedDeviceIDChanged, this, &ControlsSection::showSelection);
    for (const auto changed :
         {&WorkspaceCoordinator::devicesChanged, &WorkspaceCoordinator::selectedDeviceIDChanged,
          &WorkspaceCoordinator::phaseChanged, &WorkspaceCoordinator::setupChecksChanged,
          &WorkspaceCoordinator::controlWindowChanged, &WorkspaceCoordinator::isRefreshingDevicesChanged})
        connect(&m_coordinator, changed, this, &ControlsSection::updateButtons);
    showAddress();
    showDevices();
    updateButtons();
}

void ControlsSection::showAddress() {
    if (m_address->text() != m_coordinator.urlInput())
        m_address->setText(m_coordinator.urlInput());
}

void ControlsSection::showDevices() {
    const QSignalBlocker blocker(m_devices);
    m_devices->clear();
    for (const SimulatorDevice& device : m_coordinator.devices()) {
        m_devices->addItem(device.displayName(), device.udid);
        m_devices->setItemData(m_devices->count() - 1, plainToolTip(device.displayName()), Qt::ToolTipRole);
    }
    if (m_coordinator.devices().empty())
        m_devices->addItem(u"No available simulators"_s);
    showSelection();
}

void ControlsSection::showSelection() {
    const auto& selected = m_coordinator.selectedDeviceID();
    const int index = selected ? m_devices->findData(*selected) : -1;
    m_devices->setCurrentIndex(index >= 0 || !m_coordinator.devices().empty() ? index : 0);
    m_devices->setToolTip(plainToolTip(m_devices->currentText()));
}

void ControlsSection::updateButtons() {
    m_start->setEnabled(m_coordinator.canStart() && m_coordinator.phase() != WorkspacePhase::running);
    m_reload->setEnabled(m_coordinator.canReload());
    m_retile->setEnabled(m_coordinator.canRetile());
    m_stop->setEnabled(m_coordinator.canStop());
    m_refresh->setEnabled(!m_coordinator.isRefreshingDevices());
}

void ControlsSection::addressSubmitted() {
    if (m_coordinator.phase() == WorkspacePhase::running)
        m_tasks.start(m_coordinator.reloadPage());
    else
        m_tasks.start(m_coordinator.startWorkspace());
}

} // namespace corvanta
