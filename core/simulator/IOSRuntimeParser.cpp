// SPDX-License-Identifier: MIT
#include "simulator/IOSRuntimeParser.h"

#include "support/JsonDecoder.h"

namespace corvanta::IOSRuntimeParser {

using namespace Qt::Literals::StringLiterals;

int availableIOSRuntimeCount(const QByteArray& output) {
    int count = 0;
    for (const JsonDecoder& record : JsonDecoder::parse(output).member(u"runtimes"_s).elements()) {
        const QString identifier = record.member(u"identifier"_s).string();
        const auto availability = record.optionalMember(u"isAvailable"_s);
        const bool isAvailable = !availability || availability->boolean();
        if (isAvailable && identifier.contains("CoreSimulator.SimRuntime.iOS"_L1))
            ++count;
    }
    return count;
}

} // namespace corvanta::IOSRuntimeParser
