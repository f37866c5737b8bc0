// SPDX-License-Identifier: MIT
// The lab's description of the system, which people edit.
#include "Input.h"
#include "SystemDescription.h"

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    try {
        [[maybe_unused]] const auto description = lab::SystemDescription::fromJson(fuzz::inputBytes(data, size));
    } catch (const lab::SystemDescriptionError& error) {
        fuzz::require(*error.what() != '\0', "an error says what is wrong");
    }
    return 0;
}
