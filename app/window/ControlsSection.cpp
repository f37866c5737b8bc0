// SPDX-License-Identifier: MIT
#include "window/ControlsSection.h"

#include "window/DisplayText.h"
#include "window/widgets/AddressField.h"
#include "window/widgets/ButtonRows.h"
#include "window/widgets/Buttons.h"
#include "window/widgets/Card.h"
#include "window/widgets/IconButton.h"
#include "window/widgets/Picker.h"
#include "window/widgets/TextLabel.h"
#include "window/widgets/ToolTip.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

ControlsSection::ControlsSection(const SectionContext& context, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(context.coordinator)
    , m_tasks(context.tasks)
    , m_address(new AddressField)
    , m_devices(new Picker)
    , m_refresh(new IconButton(Symbol::refresh, u"Refresh simulator devices"_s, IconButton::Frame::shown))
    , m_start(makeButton(u"Start Workspace"_s, Symbol::play, Emphasis::prominent))
    , m_reload(makeButton(u"Open / Reload"_s, Symbol::refresh))
    , m_retile(makeButton(u"Re-tile"_s, Symbol::columns))
    , m_stop(makeButton(u"Stop"_s, Symbol::stop, Emphasis::destructive)) {
    Card& card = addCard(*this, u"Workspace"_s);
    card.rows().addWidget(new TextLabel(TextStyle::heading, u"Workspace"_s));
    card.rows().addWidget(m_address);
    m_refresh->setClock(context.clock);
    card.rows().addLayout(makeDeviceRow());
    card.rows().addWidget(makeButtons());
    connectControls();
    followCoordinator();
}

QLayout* ControlsSection::makeDeviceRow() {
    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    auto* const label = makeLineLabel(TextStyle::label, u"Simulator"_s);
    label->setBuddy(m_devices);
    m_devices->setAccessibleName(u"Simulator"_s);
    m_refresh->setToolTip(u"Refresh simulator devices"_s);
    row->addWidget(label);
    row->addWidget(m_devices, 1);
    row->addWidget(m_refresh);
    return row;
}

QWidget* ControlsSection::makeButtons() {
    for (QPushButton* const button : {m_start, m_reload, m_retile, m_stop}) {
        button->setProperty("density", u"packed"_s);
        setSymbolSide(*button, 12);
    }
    m_start->setShortcut(QKeySequence(Qt::ALT | Qt::Key_S));
    m_reload->setShortcut(QKeySequence(Qt::ALT | Qt::Key_R));
    m_retile->setShortcut(QKeySequence(Qt::ALT | Qt::Key_T));
    m_stop->setShortcut(QKeySequence(Qt::ALT | Qt::Key_P));
    return new ButtonRows({m_start, m_reload, m_retile, m_stop});
}

void ControlsSection::connectControls() {
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
}

void ControlsSection::followCoordinator() {
    connect(&m_coordinator, &WorkspaceCoordinator::urlInputChanged, this, &ControlsSection::showAddress);
    connect(&m_coordinator, &WorkspaceCoordinator::devicesChanged, this, &ControlsSection::showDevices);
    connect(&m_coordinator, &WorkspaceCoordinator::selectedDeviceIDChanged, this, &ControlsSection::showSelection);
    connect(&m_coordinator, &WorkspaceCoordinator::isRefreshingDevicesChanged, this,
            [this] { m_refresh->setBusy(m_coordinator.isRefreshingDevices()); });
    for (const auto changed : {&WorkspaceCoordinator::devicesChanged, &WorkspaceCoordinator::selectedDeviceIDChanged,
                               &WorkspaceCoordinator::phaseChanged, &WorkspaceCoordinator::setupChecksChanged,
                               &WorkspaceCoordinator::controlWindowChanged})
        connect(&m_coordinator, changed, this, &ControlsSection::updateButtons);
    showAddress();
    showDevices();
    updateButtons();
    m_refresh->setBusy(m_coordinator.isRefreshingDevices());
}

void ControlsSection::showAddress() {
    m_address->showAddress(m_coordinator.urlInput());
}

void ControlsSection::showDevices() {
    const QSignalBlocker blocker(m_devices);
    m_devices->clear();
    for (const SimulatorDevice& device : m_coordinator.devices()) {
        const QString name = displayText(device.displayName(), longestLine);
        m_devices->addItem(name, device.udid);
        m_devices->setItemData(m_devices->count() - 1, plainToolTip(name), Qt::ToolTipRole);
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
    setEnabledKeepingFocus(*m_start, m_coordinator.canStart() && m_coordinator.phase() != WorkspacePhase::running);
    setEnabledKeepingFocus(*m_reload, m_coordinator.canReload());
    setEnabledKeepingFocus(*m_retile, m_coordinator.canRetile());
    setEnabledKeepingFocus(*m_stop, m_coordinator.canStop());
}

void ControlsSection::addressSubmitted() {
    if (m_coordinator.phase() == WorkspacePhase::running)
        m_tasks.start(m_coordinator.reloadPage());
    else
        m_tasks.start(m_coordinator.startWorkspace());
}

} // namespace corvanta
