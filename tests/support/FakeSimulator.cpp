// SPDX-License-Identifier: MIT
#include "FakeSimulator.h"

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

QCoro::Task<std::vector<SimulatorDevice>> FakeSimulator::availableIOSDevices() {
    m_log.add(u"availableIOSDevices"_s);
    co_await script.play(SimulatorOperation::availableIOSDevices);
    auto listed = devices; // Returning the member itself would move from it.
    co_return listed;
}

QCoro::Task<void> FakeSimulator::boot(SimulatorDevice device) {
    m_log.add(u"boot "_s + device.udid);
    co_await script.play(SimulatorOperation::boot);
}

QCoro::Task<void> FakeSimulator::waitUntilBooted(QString deviceID) {
    m_log.add(u"waitUntilBooted "_s + deviceID);
    co_await script.play(SimulatorOperation::waitUntilBooted);
}

QCoro::Task<void> FakeSimulator::launchSimulator(QString deviceID) {
    m_log.add(u"launchSimulator "_s + deviceID);
    co_await script.play(SimulatorOperation::launchSimulator);
}

QCoro::Task<void> FakeSimulator::openURL(QString deviceID, URL url) {
    m_log.add(u"openURL "_s + deviceID + u' ' + url.absoluteString());
    co_await script.play(SimulatorOperation::openURL);
}

QCoro::Task<void> FakeSimulator::setLocation(QString deviceID, Coordinate coordinate) {
    m_log.add(u"setLocation "_s + deviceID + u' ' + CoordinateFormatter::coordinatePair(coordinate));
    co_await script.play(SimulatorOperation::setLocation);
}

QCoro::Task<void> FakeSimulator::clearLocation(QString deviceID) {
    m_log.add(u"clearLocation "_s + deviceID);
    co_await script.play(SimulatorOperation::clearLocation);
}

} // namespace corvanta::testing
