// SPDX-License-Identifier: MIT
#include "simulator/SimctlService.h"

#include "simulator/SimulatorDeviceParser.h"
#include "support/NameOrder.h"
#include "support/Text.h"

#include <utility>

namespace corvanta {

namespace {

/// What the tool said: valid standard error counts even when it is empty and standard output is not.
QString diagnosticText(const ProcessResult& result) {
    auto text = decodeUTF8(result.standardError);
    if (!text)
        text = decodeUTF8(result.standardOutput);
    return trimmedText(text.value_or(QString()));
}

QCoro::Task<ProcessResult> runChecked(std::shared_ptr<CommandRunning> runner, ProcessCommand command) {
    ProcessResult result = co_await runner->run(command);
    if (result.terminationStatus != 0) {
        throw SimulatorControlError::commandFailed(command.displayString(), result.terminationStatus,
                                                   diagnosticText(result));
    }
    co_return result;
}

std::vector<SimulatorDevice> parseDevices(const QByteArray& output) {
    try {
        return SimulatorDeviceParser::availableIOSDevices(output);
    } catch (const LocalizedError& error) {
        throw SimulatorControlError::parseFailed(decodeUTF8(output).value_or(error.errorDescription()));
    }
}

} // namespace

SimctlService::SimctlService(std::shared_ptr<CommandRunning> runner, SimctlCommandBuilder builder)
    : m_runner(std::move(runner))
    , m_builder(std::move(builder)) {}

QCoro::Task<std::vector<SimulatorDevice>> SimctlService::availableIOSDevices() {
    const ProcessResult result = co_await runChecked(m_runner, m_builder.listAvailableDevices());
    co_return parseDevices(result.standardOutput);
}

QCoro::Task<void> SimctlService::boot(SimulatorDevice device) {
    if (device.isBooted())
        co_return;
    try {
        co_await runChecked(m_runner, m_builder.boot(device.udid));
    } catch (const SimulatorControlError& error) {
        // Someone else, such as the Simulator application, was faster.
        if (!containsName(error.errorDescription(), u"Booted"))
            throw;
    }
}

QCoro::Task<void> SimctlService::waitUntilBooted(QString deviceID) {
    co_await runChecked(m_runner, m_builder.bootStatus(deviceID));
}

QCoro::Task<void> SimctlService::launchSimulator(QString deviceID) {
    co_await runChecked(m_runner, m_builder.launchSimulator(deviceID));
}

QCoro::Task<void> SimctlService::openURL(QString deviceID, URL url) {
    co_await runChecked(m_runner, m_builder.openURL(deviceID, url));
}

QCoro::Task<void> SimctlService::setLocation(QString deviceID, Coordinate coordinate) {
    co_await runChecked(m_runner, m_builder.setLocation(deviceID, coordinate));
}

QCoro::Task<void> SimctlService::clearLocation(QString deviceID) {
    co_await runChecked(m_runner, m_builder.clearLocation(deviceID));
}

} // namespace corvanta
