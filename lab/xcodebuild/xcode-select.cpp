// SPDX-License-Identifier: MIT
#include "AtomicFile.h"
#include "FileLock.h"
#include "LabFolders.h"
#include "SystemDescription.h"

#include <QFile>

#include <cstdio>
#include <stdexcept>
#include <string_view>

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::lab;

namespace {

constexpr int noFolder = 2;
constexpr int usageError = 64;

/// What programs read beside the developer folder to learn which Xcode it is of.
QByteArray informationList(const QString& version, const QString& build) {
    return u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n"
           "\t<key>CFBundleIdentifier</key>\n\t<string>com.apple.dt.Xcode</string>\n"
           "\t<key>CFBundleShortVersionString</key>\n\t<string>%1</string>\n"
           "\t<key>DTXcodeBuild</key>\n\t<string>%2</string>\n"
           "</dict>\n</plist>\n"_s.arg(version.toHtmlEscaped(), build.toHtmlEscaped())
               .toUtf8();
}

/// The developer folder in the lab's home, made to fit that Xcode. Throws std::runtime_error.
QString developerFolder(const QString& version, const QString& build) {
    const QString contents = homeFolder() + u"/Xcode.app/Contents"_s;
    const QString folder = contents + u"/Developer"_s;
    createPrivateFolder(folder);
    const QByteArray list = informationList(version, build);
    const FileLock held(homeFolder() + u"/.lock"_s);
    QFile present(contents + u"/Info.plist"_s);
    if (!present.open(QIODevice::ReadOnly) || present.readAll() != list) {
        writeFileAtomically(present.fileName(), list);
    }
    return folder;
}

int printFolder() {
    const QString chosen = qEnvironmentVariable("DEVELOPER_DIR");
    const SystemDescription system = SystemDescription::load();
    QString folder = chosen;
    if (folder.isEmpty() && system.xcode) {
        folder = developerFolder(*system.xcode, system.xcodeBuild);
    } else if (folder.isEmpty() && system.commandLineTools) {
        folder = u"/Library/Developer/CommandLineTools"_s;
    }
    if (folder.isEmpty()) {
        std::fputs("xcode-select: error: Unable to get active developer directory. Use `sudo xcode-select --switch "
                   "path/to/Xcode.app` to set one (or see `man xcode-select`)\n",
                   stderr);
        return noFolder;
    }
    std::puts(QFile::encodeName(folder).constData());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view option = argc == 2 ? argv[1] : "";
    if (option == "-v" || option == "--version") {
        std::puts("xcode-select version 2410.");
        return 0;
    }
    if (option != "-p" && option != "--print-path" && option != "-print-path") {
        const bool isHelp = option == "-h" || option == "--help";
        std::fputs("Usage: xcode-select -p | --print-path | -v | --version\n\n"
                   "The device lab tells where its developer folder is. What is installed says system.json.\n",
                   isHelp ? stdout : stderr);
        return isHelp ? 0 : usageError;
    }
    try {
        return printFolder();
    } catch (const std::runtime_error& problem) {
        std::fprintf(stderr, "xcode-select: error: %s\n", problem.what());
        return 1;
    }
}
