// SPDX-License-Identifier: MIT
#include "OpenOptions.h"

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

OpenOptions OpenOptions::parse(const QStringList& words) {
    OpenOptions options;
    for (qsizetype index = 0; index < words.size(); ++index) {
        const QString& word = words[index];
        if (word == u"--args") {
            options.applicationArguments = words.sliced(index + 1);
            break;
        }
        if (word == u"-a" || word == u"-b") {
            if (++index == words.size()) {
                options.problem = u"open: option requires an argument -- %1\n"_s.arg(word[1]);
                break;
            }
            options.application = words[index];
            options.isBundleIdentifier = word == u"-b";
        } else if (word == u"-g" || word == u"--background") {
            options.inBackground = true;
        } else if (word.size() > 1 && word.startsWith(u'-')) {
            if (!QStringList{u"-n"_s, u"-F"_s, u"-j"_s, u"--new"_s, u"--fresh"_s, u"--hide"_s}.contains(word)) {
                options.problem = u"open: unrecognized option `%1'\n"_s.arg(word);
                break;
            }
        } else {
            options.items.append(word);
        }
    }
    return options;
}

QString OpenOptions::applicationOption(const QString& option) const {
    const qsizetype index = applicationArguments.indexOf(option);
    return index < 0 ? QString() : applicationArguments.value(index + 1);
}

} // namespace corvanta::lab
