// SPDX-License-Identifier: MIT
#include "AddressText.h"

#include "GlibPointers.h"

namespace corvanta::lab {

namespace {

bool isThisMachine(const std::string& text) {
    const std::string host = text.substr(0, text.find_first_of(":/?#"));
    return host == "localhost" || host.ends_with(".localhost") || host.starts_with("127.") || text.starts_with("[::1]");
}

/// "host:8080" is a host with a port, whatever a scheme may look like.
bool hasScheme(const std::string& text) {
    const GlibPointer<char> scheme(g_uri_parse_scheme(text.c_str()));
    if (!scheme)
        return false;
    const std::string rest = text.substr(std::string(scheme.get()).size() + 1);
    return rest.empty() || !g_ascii_isdigit(rest.front());
}

} // namespace

std::string addressFromText(const std::string& text) {
    const GlibPointer<char> trimmed(g_strstrip(g_strdup(text.c_str())));
    const std::string address = trimmed.get();
    if (address.empty() || address.find_first_of(" \t\r\n") != std::string::npos)
        return {};
    if (address.starts_with('/')) {
        const GlibPointer<char> uri(g_filename_to_uri(address.c_str(), nullptr, nullptr));
        return uri ? uri.get() : "";
    }
    if (hasScheme(address))
        return address;
    return (isThisMachine(address) ? "http://" : "https://") + address;
}

} // namespace corvanta::lab
