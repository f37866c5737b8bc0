// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <optional>
#include <string>

namespace corvanta::lab {

/// Why a page is not there, in words for the person who wanted it.
struct LoadProblem {
    std::string heading;
    std::string explanation;

    bool operator==(const LoadProblem&) const = default;
};

/// What the engine's error means; nothing when the loading was only given up, for another page or at the press of Stop.
[[nodiscard]] std::optional<LoadProblem> loadProblem(const std::string& url, const GError& error);

/// What is wrong with the certificate of the page's server.
[[nodiscard]] LoadProblem certificateProblem(const std::string& url, GTlsCertificateFlags errors);

/// A page that says so, with a link that tries again. All texts are shown as they are.
[[nodiscard]] std::string problemPage(const std::string& url, const LoadProblem& problem);

} // namespace corvanta::lab
