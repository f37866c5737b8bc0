// SPDX-License-Identifier: MIT
#include "SampleSite.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

namespace corvanta {

SampleSite::SampleSite(const std::filesystem::path& folder)
    : m_folder(std::filesystem::canonical(folder)) {}

std::optional<SampleFile> SampleSite::file(std::string_view requestPath) const {
    if (!requestPath.starts_with('/') || requestPath.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view name = requestPath == "/" ? "index.html" : requestPath.substr(1);
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(m_folder / name, error);
    if (error || !std::filesystem::is_regular_file(path, error)) {
        return std::nullopt;
    }
    const auto [folderEnd, unused] = std::mismatch(m_folder.begin(), m_folder.end(), path.begin(), path.end());
    if (folderEnd != m_folder.end()) {
        return std::nullopt;
    }
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    return SampleFile{.contentType = contentType(path),
                      .bytes = std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>())};
}

std::string SampleSite::contentType(const std::filesystem::path& path) {
    using Entry = std::pair<std::string_view, std::string_view>;
    static constexpr std::array types{
        Entry{".html", "text/html; charset=utf-8"},
        Entry{".css", "text/css; charset=utf-8"},
        Entry{".js", "text/javascript; charset=utf-8"},
        Entry{".json", "application/json"},
        Entry{".svg", "image/svg+xml"},
        Entry{".png", "image/png"},
        Entry{".txt", "text/plain; charset=utf-8"},
    };
    const std::string ending = path.extension().string();
    const auto* const found = std::ranges::find(types, ending, &Entry::first);
    return std::string(found == types.end() ? "application/octet-stream" : found->second);
}

} // namespace corvanta
