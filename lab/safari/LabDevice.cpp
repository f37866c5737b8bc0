// SPDX-License-Identifier: MIT
#include "LabDevice.h"

#include "GlibPointers.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <vector>

namespace corvanta::lab {

namespace {

constexpr const char* deviceBusNamePrefix = "dev.corvanta.Lab.Device.U";

std::string sortKey(const std::string& name) {
    const GlibPointer<char> folded(g_utf8_casefold(name.c_str(), -1));
    const GlibPointer<char> key(g_utf8_collate_key_for_filename(folded.get(), -1));
    return key.get();
}

std::vector<unsigned> versionNumbers(const std::string& runtime) {
    std::vector<unsigned> numbers;
    const char* position = runtime.data();
    const char* const end = position + runtime.size();
    while (position != end) {
        unsigned number = 0;
        const auto [after, error] = std::from_chars(position, end, number);
        if (error == std::errc()) {
            numbers.push_back(number);
            position = after;
        } else {
            ++position;
        }
    }
    return numbers;
}

} // namespace

std::string LabDevice::title() const {
    return name + " – " + runtimeName;
}

std::string LabDevice::identifierOf(const std::string& busName) {
    std::string text = busName;
    if (text.starts_with(deviceBusNamePrefix))
        text.erase(0, std::strlen(deviceBusNamePrefix));
    std::ranges::replace(text, '_', '-');
    return text;
}

std::string LabDevice::busNameOf(const std::string& identifier) {
    std::string busName = deviceBusNamePrefix + identifier;
    std::ranges::replace(busName, '-', '_');
    return busName;
}

bool comesBefore(const LabDevice& left, const LabDevice& right) {
    if (const int order = sortKey(left.name).compare(sortKey(right.name)); order != 0)
        return order < 0;
    const auto leftVersion = versionNumbers(left.runtimeName);
    const auto rightVersion = versionNumbers(right.runtimeName);
    if (leftVersion != rightVersion)
        return leftVersion > rightVersion;
    return left.busName < right.busName;
}

} // namespace corvanta::lab
