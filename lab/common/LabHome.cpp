// SPDX-License-Identifier: MIT
#include "LabHome.h"

#include <cstdlib>
#include <filesystem>
#include <pwd.h>
#include <system_error>
#include <unistd.h>

namespace corvanta::lab {

namespace {

std::string fromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string userHome() {
    if (std::string home = fromEnvironment("HOME"); !home.empty()) {
        return home;
    }
    const passwd* const user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

} // namespace

std::string labHome() {
    if (const std::string chosen = fromEnvironment("CORVANTA_LAB_HOME"); !chosen.empty()) {
        return absolutePath(chosen);
    }
    const std::string data = fromEnvironment("XDG_DATA_HOME");
    return absolutePath((data.starts_with('/') ? data : userHome() + "/.local/share") + "/corvanta-lab");
}

std::string absolutePath(const std::string& path) {
    std::error_code noWorkingFolder;
    const std::filesystem::path whole = std::filesystem::absolute(path, noWorkingFolder);
    std::string result = (noWorkingFolder ? std::filesystem::path(path) : whole).lexically_normal().string();
    while (result.size() > 1 && result.ends_with('/')) {
        result.pop_back();
    }
    return result;
}

} // namespace corvanta::lab
