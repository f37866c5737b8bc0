// SPDX-License-Identifier: MIT
#include "PageTitle.h"

#include "GlibPointers.h"
#include "ShownText.h"

#include <string_view>

namespace corvanta::lab {

namespace {

constexpr std::size_t longestTitle = 200;

bool isReadable(const std::string& text) {
    if (text.empty() || !g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr))
        return false;
    for (const char* position = text.c_str(); *position != '\0'; position = g_utf8_next_char(position)) {
        const gunichar character = g_utf8_get_char(position);
        // Beside control characters, this turns away those that reorder or hide text.
        if (!g_unichar_isgraph(character) && character != U' ')
            return false;
    }
    return true;
}

std::string lastPathPart(std::string_view path) {
    while (path.ends_with('/'))
        path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    const std::string part(slash == std::string_view::npos ? path : path.substr(slash + 1));
    const GlibPointer<char> unescaped(g_uri_unescape_string(part.c_str(), nullptr));
    if (unescaped && isReadable(unescaped.get()))
        return unescaped.get();
    return part;
}

std::string shortened(const std::string& text) {
    return shownLine(text, longestTitle);
}

} // namespace

std::string pageTitle(const std::string& url) {
    if (url.empty() || url == "about:blank")
        return "about:blank";
    const GlibPointer<GUri> uri(g_uri_parse(
        url.c_str(),
        static_cast<GUriFlags>(G_URI_FLAGS_ENCODED_PATH | G_URI_FLAGS_ENCODED_QUERY | G_URI_FLAGS_PARSE_RELAXED),
        nullptr));
    if (!uri)
        return shortened(url);
    const char* const rawHost = g_uri_get_host(uri.get());
    const std::string host = rawHost ? rawHost : "";
    const std::string path = g_uri_get_path(uri.get());
    const std::string part = path.starts_with('/') ? lastPathPart(path) : std::string();
    if (host.empty())
        return shortened(part.empty() ? url : part);
    return shortened(part.empty() ? host : host + " — " + part);
}

std::string targetTitle(const InspectableTarget& target) {
    switch (target.kind) {
    case TargetKind::page:
    case TargetKind::serviceWorker:
        return pageTitle(target.url);
    case TargetKind::extensionPage: {
        const std::string file = lastPathPart(target.url);
        const char* const kind = file.find("popup") == std::string::npos ? "Background" : "Pop-up";
        const std::string page = std::string("Extension ") + kind + " Page — ";
        return shortened(page + (target.name.empty() ? file : target.name + " — " + file));
    }
    case TargetKind::javaScriptContext:
        return target.name.empty() ? "JSContext" : shortened(target.name);
    }
    return {};
}

} // namespace corvanta::lab
