// SPDX-License-Identifier: MIT
// What an update server answers.
#include "Input.h"
#include "support/JsonEncoding.h"
#include "updates/UpdateEvaluator.h"

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    try {
        const UpdateManifest manifest = decodeUpdateManifest(JsonDecoder::parse(fuzz::inputBytes(data, size)));
        [[maybe_unused]] const QJsonObject again = encodeJson(manifest);
        UpdateEvaluator::validate(manifest);
        fuzz::require(manifest.downloadURL.scheme().value_or(QString()).toLower() == QStringLiteral("https"),
                      "only https addresses are downloaded");
        [[maybe_unused]] const auto decision = UpdateEvaluator::decision(manifest, 1);
    } catch (const LocalizedError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
    }
    return 0;
}
