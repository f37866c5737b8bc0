// SPDX-License-Identifier: MIT
// What a device's inspector server, or whoever answers on its port, sends.
#include "Input.h"
#include "InspectorCommands.h"
#include "InspectorFrames.h"

#include <span>
#include <string_view>

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    // The first byte says in which pieces the rest arrives.
    const std::size_t piece = size > 0 ? std::size_t{1} + data[0] : 1;
    const auto bytes = std::as_bytes(std::span(data, size)).subspan(size > 0 ? 1 : 0);
    lab::InspectorFrameReader reader;
    for (std::size_t offset = 0; offset < bytes.size(); offset += piece) {
        reader.append(bytes.subspan(offset, std::min(piece, bytes.size() - offset)));
        while (const auto frame = reader.next()) {
            [[maybe_unused]] const auto target = lab::frameTarget(*frame);
            [[maybe_unused]] const auto list = lab::decodeTargetList(*frame);
            fuzz::require(!lab::encodeInspectorFrame(*frame).empty(), "a frame that was read can be passed on");
        }
    }
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    [[maybe_unused]] const auto command = lab::parseCommand(text);
    return 0;
}
