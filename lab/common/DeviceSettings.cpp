// SPDX-License-Identifier: MIT
#include "DeviceSettings.h"

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

QMap<QString, QString> textsOf(const QJsonObject& object) {
    QMap<QString, QString> texts;
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (entry.value().isString()) {
            texts.insert(entry.key(), entry.value().toString());
        }
    }
    return texts;
}

QJsonObject objectOf(const QMap<QString, QString>& texts) {
    QJsonObject object;
    for (auto entry = texts.begin(); entry != texts.end(); ++entry) {
        object[entry.key()] = entry.value();
    }
    return object;
}

} // namespace

DeviceSettings DeviceSettings::fromJson(const QJsonObject& object) {
    DeviceSettings settings;
    const QJsonObject interface = object["ui"_L1].toObject();
    if (interface["appearance"_L1].toString() == u"dark") {
        settings.appearance = u"dark"_s;
    }
    if (const QString size = interface["contentSize"_L1].toString(); contentSizes().contains(size)) {
        settings.contentSize = size;
    }
    settings.increaseContrast = interface["increaseContrast"_L1].toBool();
    settings.statusBar = textsOf(object["statusBar"_L1].toObject());
    settings.privacy = textsOf(object["privacy"_L1].toObject());
    return settings;
}

QJsonObject DeviceSettings::toJson() const {
    return {{u"ui"_s, QJsonObject{{u"appearance"_s, appearance},
                                  {u"contentSize"_s, contentSize},
                                  {u"increaseContrast"_s, increaseContrast}}},
            {u"statusBar"_s, objectOf(statusBar)},
            {u"privacy"_s, objectOf(privacy)}};
}

bool DeviceSettings::allowsLocation() const {
    const QString bundle = QString::fromLatin1(browserBundle);
    for (const QString& service : {u"location-always"_s, u"location"_s, u"all"_s}) {
        if (const auto choice = privacy.find(bundle + u'/' + service); choice != privacy.end()) {
            return *choice == u"granted";
        }
    }
    return true;
}

const QStringList& contentSizes() {
    static const QStringList sizes{u"extra-small"_s,
                                   u"small"_s,
                                   u"medium"_s,
                                   u"large"_s,
                                   u"extra-large"_s,
                                   u"extra-extra-large"_s,
                                   u"extra-extra-extra-large"_s,
                                   u"accessibility-medium"_s,
                                   u"accessibility-large"_s,
                                   u"accessibility-extra-large"_s,
                                   u"accessibility-extra-extra-large"_s,
                                   u"accessibility-extra-extra-extra-large"_s};
    return sizes;
}

} // namespace corvanta::lab
