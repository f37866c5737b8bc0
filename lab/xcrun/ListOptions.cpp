// SPDX-License-Identifier: MIT
#include "ListOptions.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

ListOptions ListOptions::parse(const QStringList& arguments) {
    static const QStringList sections{u"devicetypes"_s, u"runtimes"_s, u"devices"_s, u"pairs"_s};
    ListOptions options;
    bool hasSection = false;
    for (const QString& argument : arguments) {
        if (argument == u"-j" || argument == u"--json") {
            options.isJson = true;
        } else if (argument == u"-v" || argument == u"--verbose") {
            options.isVerbose = true;
        } else if (argument == u"-e" || argument == u"--no-escape-slashes") {
            options.escapesSlashes = false;
        } else if (argument.startsWith(u'-')) {
            options.problem = u"Unknown option: "_s + argument;
        } else if (!hasSection && options.terms.isEmpty() && !options.onlyAvailable && sections.contains(argument)) {
            hasSection = true;
            options.deviceTypes = argument == sections[0];
            options.runtimes = argument == sections[1];
            options.devices = argument == sections[2];
            options.pairs = argument == sections[3];
        } else if (argument == u"available") {
            options.onlyAvailable = true;
        } else {
            options.terms.append(argument);
        }
    }
    return options;
}

bool ListOptions::matches(const QStringList& texts) const {
    return std::ranges::all_of(terms, [&](const QString& term) {
        return std::ranges::any_of(texts,
                                   [&](const QString& text) { return text.contains(term, Qt::CaseInsensitive); });
    });
}

} // namespace corvanta::lab
