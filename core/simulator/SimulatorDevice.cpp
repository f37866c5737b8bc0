// SPDX-License-Identifier: MIT
#include "simulator/SimulatorDevice.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

bool SimulatorDevice::isBooted() const {
    return state == "Booted"_L1;
}

QString SimulatorDevice::runtimeDisplayName() const {
    return QString(runtimeIdentifier)
        .replace("com.apple.CoreSimulator.SimRuntime.iOS-"_L1, "iOS "_L1)
        .replace(u'-', u'.');
}

QString SimulatorDevice::displayName() const {
    return name + u" — "_s + runtimeDisplayName() + (isBooted() ? u" • Booted"_s : QString());
}

} // namespace corvanta
