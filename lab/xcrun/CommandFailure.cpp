// SPDX-License-Identifier: MIT
#include "CommandFailure.h"

#include "Simctl.h"

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

void write(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

CommandFailure failure(QLatin1StringView domain, int code, const QString& text) {
    return {code & 0xff,
            u"An error was encountered processing the command (domain=%1, code=%2):\n%3\n"_s.arg(domain).arg(code).arg(
                text)};
}

CommandFailure wrongState(const QString& action, const QString& state) {
    return failure(simulatorDomain, invalidState, u"Unable to %1 in current state: %2"_s.arg(action, state));
}

CommandFailure unknownDevice(const QString& word) {
    return {invalidDevice & 0xff, u"Invalid device: %1\n"_s.arg(word)};
}

CommandFailure usage(const QString& command, const QString& problem) {
    return {usageStatus, (problem.isEmpty() ? QString() : problem + u'\n') + simctlHelp(command)};
}

void print(const QString& text) {
    write(stdout, text);
}

void printError(const QString& text) {
    write(stderr, text);
}

} // namespace corvanta::lab
