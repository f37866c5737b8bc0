// SPDX-License-Identifier: MIT
#pragma once

#include "InspectableTarget.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace corvanta::lab {

/// Open the inspector of a page.
struct InspectCommand {
    TargetIdentifier target;
    std::string title;

    bool operator==(const InspectCommand&) const = default;
};

/// Bring the inspector's window forward.
struct PresentCommand {
    bool operator==(const PresentCommand&) const = default;
};

/// The page has another title now.
struct RetitleCommand {
    std::string title;

    bool operator==(const RetitleCommand&) const = default;
};

/// What Safari tells an inspector process, one line each.
using InspectorCommand = std::variant<InspectCommand, PresentCommand, RetitleCommand>;

/// What an inspector process writes to its standard output when it has brought its window forward.
inline constexpr char presentedAnswer = '\x06';

/// One line with its line feed: "inspect CONNECTION TARGET TITLE", "present" or "retitle TITLE". Titles are single
/// lines.
[[nodiscard]] std::string formatCommand(const InspectorCommand& command);

/// Reads a line without its line feed; nothing when it is no command.
[[nodiscard]] std::optional<InspectorCommand> parseCommand(std::string_view line);

} // namespace corvanta::lab
