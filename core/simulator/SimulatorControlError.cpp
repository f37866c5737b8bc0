// SPDX-License-Identifier: MIT
#include "simulator/SimulatorControlError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Description {
    QString operator()(const SimulatorControlError::CommandFailed& error) const {
        return error.command + u" failed with exit code "_s + QString::number(error.status) + u". "_s +
               (error.message.isEmpty() ? u"No error detail was returned."_s : error.message);
    }

    QString operator()(const SimulatorControlError::ParseFailed& error) const {
        return u"Could not read Simulator devices. "_s + error.detail;
    }
};

struct Suggestion {
    QString operator()(const SimulatorControlError::CommandFailed& /*error*/) const {
        return u"Make sure Xcode is installed, Command Line Tools are selected, and an iOS runtime is available."_s;
    }

    QString operator()(const SimulatorControlError::ParseFailed& /*error*/) const {
        return u"Open Simulator from Xcode, then refresh devices."_s;
    }
};

} // namespace

SimulatorControlError SimulatorControlError::commandFailed(QString command, std::int32_t status, QString message) {
    return SimulatorControlError(CommandFailed{std::move(command), status, std::move(message)});
}

SimulatorControlError SimulatorControlError::parseFailed(QString detail) {
    return SimulatorControlError(ParseFailed{std::move(detail)});
}

QString SimulatorControlError::errorDescription() const {
    return std::visit(Description{}, m_case);
}

std::optional<QString> SimulatorControlError::recoverySuggestion() const {
    return std::visit(Suggestion{}, m_case);
}

} // namespace corvanta
