// SPDX-License-Identifier: MIT
// What a place search on the network answers.
#include "Input.h"
#include "PhotonAnswer.h"
#include "support/JsonDecoder.h"

#include <cmath>

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    try {
        const auto places = photonPlaces(fuzz::inputBytes(data, size));
        fuzz::require(places.size() <= 50, "an answer is not read without end");
        for (const auto& [found, kind, isSettlement] : places) {
            fuzz::require(!found.title.isEmpty(), "a place has a name");
            fuzz::require(!found.title.contains(u'\n') && !found.subtitle.contains(u'\n'), "texts are of one line");
            fuzz::require(std::abs(found.coordinate.latitude) <= 90 && std::abs(found.coordinate.longitude) <= 180,
                          "a place is on the earth");
        }
    } catch (const JsonDecodingError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
    }
    return 0;
}
