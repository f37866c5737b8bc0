// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvanta {

/// A file of the site as it goes over the wire.
struct SampleFile {
    std::string contentType;
    std::string bytes;
};

/// The folder of pages that the sample server shows.
///
/// Reads files anew at each request, so that an edited page shows at the next reload.
class SampleSite {
public:
    explicit SampleSite(const std::filesystem::path& folder);

    /// The file behind the decoded path of a request, which starts with "/"; "/" itself is the first page.
    /// Answers nothing where there is no such regular file, and for every path that leads out of the folder, through
    /// ".." or through a symbolic link.
    [[nodiscard]] std::optional<SampleFile> file(std::string_view requestPath) const;

    /// The media type that belongs to a file name's ending, application/octet-stream where it is not known.
    [[nodiscard]] static std::string contentType(const std::filesystem::path& path);

private:
    std::filesystem::path m_folder;
};

} // namespace corvanta
