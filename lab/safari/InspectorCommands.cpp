// SPDX-License-Identifier: MIT
#include "InspectorCommands.h"

#include <charconv>

namespace corvanta::lab {

namespace {

/// Takes the text up to the next blank off `line`.
std::string_view takeWord(std::string_view& line) {
    const std::size_t blank = line.find(' ');
    const std::string_view word = line.substr(0, blank);
    line.remove_prefix(blank == std::string_view::npos ? line.size() : blank + 1);
    return word;
}

bool readNumber(std::string_view word, std::uint64_t& number) {
    const char* const end = word.data() + word.size();
    const auto [position, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && position == end;
}

struct Formatter {
    std::string operator()(const InspectCommand& command) const {
        return "inspect " + std::to_string(command.target.connection) + ' ' + std::to_string(command.target.target) +
               ' ' + command.title + '\n';
    }

    std::string operator()(const PresentCommand&) const { return "present\n"; }

    std::string operator()(const RetitleCommand& command) const { return "retitle " + command.title + '\n'; }
};

} // namespace

std::string formatCommand(const InspectorCommand& command) {
    return std::visit(Formatter(), command);
}

std::optional<InspectorCommand> parseCommand(std::string_view line) {
    const std::string_view verb = takeWord(line);
    if (verb == "present")
        return PresentCommand{};
    if (verb == "retitle")
        return RetitleCommand{std::string(line)};
    InspectCommand command;
    if (verb != "inspect" || !readNumber(takeWord(line), command.target.connection) ||
        !readNumber(takeWord(line), command.target.target))
        return std::nullopt;
    command.title = line;
    return command;
}

} // namespace corvanta::lab
