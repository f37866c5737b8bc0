// SPDX-License-Identifier: MIT
// What somebody types or pastes into the address field.
#include "Input.h"
#include "support/LocalizedError.h"
#include "workspace/URLNormalizer.h"

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    const QString typed = QString::fromUtf8(fuzz::inputBytes(data, size));
    try {
        const URL url = URLNormalizer::normalize(typed);
        const QString scheme = url.scheme().value_or(QString()).toLower();
        fuzz::require(scheme == QStringLiteral("http") || scheme == QStringLiteral("https"),
                      "only http and https pages are opened");
    } catch (const LocalizedError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
    }
    return 0;
}
