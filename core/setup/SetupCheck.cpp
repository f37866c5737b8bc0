// SPDX-License-Identifier: MIT
#include "setup/SetupCheck.h"

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString rawValue(SetupRequirementID id) {
    switch (id) {
    case SetupRequirementID::appleSilicon:
        return u"appleSilicon"_s;
    case SetupRequirementID::macOS:
        return u"macOS"_s;
    case SetupRequirementID::xcode:
        return u"xcode"_s;
    case SetupRequirementID::simctl:
        return u"simctl"_s;
    case SetupRequirementID::iosRuntime:
        return u"iosRuntime"_s;
    case SetupRequirementID::accessibility:
        return u"accessibility"_s;
    case SetupRequirementID::safariDeveloperFeatures:
        return u"safariDeveloperFeatures"_s;
    }
    Q_UNREACHABLE();
}

std::optional<SetupRequirementID> setupRequirementIDFromRawValue(QStringView text) {
    const auto found =
        std::ranges::find_if(allSetupRequirementIDs, [text](SetupRequirementID id) { return rawValue(id) == text; });
    if (found == allSetupRequirementIDs.end())
        return std::nullopt;
    return *found;
}

} // namespace corvanta
