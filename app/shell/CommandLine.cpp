// SPDX-License-Identifier: MIT
#include "shell/CommandLine.h"

#include "shell/AppIdentity.h"

#include <QCommandLineParser>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<QString> value(const QCommandLineParser& parser, const QCommandLineOption& option) {
    return parser.isSet(option) ? std::optional(parser.value(option)) : std::nullopt;
}

/// The parser takes the program's name from the application object, which does not exist yet.
QString helpText(const QCommandLineParser& parser) {
    const QString text = parser.helpText();
    return u"Usage: Corvanta [options]"_s + text.sliced(text.indexOf(u'\n'));
}

CommandLineOutcome refusal(const QString& message) {
    return {std::nullopt, u"Corvanta: "_s + message + u"\nTry 'Corvanta --help' for the options.\n"_s, 2};
}

} // namespace

CommandLineOutcome parseCommandLine(const QStringList& arguments) {
    const QCommandLineOption url(u"url"_s, u"Open this page address."_s, u"ADDRESS"_s);
    const QCommandLineOption device(u"device"_s, u"Use this simulator device, by its name or UDID."_s, u"DEVICE"_s);
    const QCommandLineOption start(u"start"_s, u"Start a workspace as soon as the setup checks have passed."_s);
    const QCommandLineOption screenshot(u"screenshot"_s,
                                        u"Run by itself: start a workspace, write a picture of the whole desktop to "
                                        "FILE (PNG), stop the workspace and exit."_s,
                                        u"FILE"_s);
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Show the options and exit."_s);
    const QCommandLineOption version({u"v"_s, u"version"_s}, u"Show the version and exit."_s);

    QCommandLineParser parser;
    parser.setApplicationDescription(u"Web testing workspace for iOS Simulator."_s);
    parser.addOptions({url, device, start, screenshot, help, version});
    if (!parser.parse(arguments))
        return refusal(parser.errorText());
    if (parser.isSet(help))
        return {std::nullopt, helpText(parser), 0};
    if (parser.isSet(version))
        return {std::nullopt, AppIdentity::versionLine() + u'\n', 0};
    if (!parser.positionalArguments().isEmpty())
        return refusal(u"Unexpected argument '"_s + parser.positionalArguments().constFirst() + u"'."_s);

    CommandLine line;
    line.url = value(parser, url);
    line.device = value(parser, device);
    line.screenshot = value(parser, screenshot);
    line.start = parser.isSet(start) || line.screenshot;
    return {line, {}, 0};
}

} // namespace corvanta
