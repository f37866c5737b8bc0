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

const QMap<LocationAccess, QString>& accessWords() {
    static const QMap<LocationAccess, QString> words{{LocationAccess::granted, u"granted"_s},
                                                     {LocationAccess::grantedOnce, u"once"_s},
                                                     {LocationAccess::denied, u"denied"_s},
                                                     {LocationAccess::ask, u"ask"_s}};
    return words;
}

/// The services that decide about the location, the one that counts most first.
const QStringList& locationServices() {
    static const QStringList services{u"location-always"_s, u"location"_s, u"all"_s};
    return services;
}

QString browserEntry(const QString& service) {
    return QString::fromLatin1(browserBundle) + u'/' + service;
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
    settings.reduceMotion = interface["reduceMotion"_L1].toBool();
    settings.statusBar = textsOf(object["statusBar"_L1].toObject());
    settings.privacy = textsOf(object["privacy"_L1].toObject());
    return settings;
}

QJsonObject DeviceSettings::toJson() const {
    return {{u"ui"_s, QJsonObject{{u"appearance"_s, appearance},
                                  {u"contentSize"_s, contentSize},
                                  {u"increaseContrast"_s, increaseContrast},
                                  {u"reduceMotion"_s, reduceMotion}}},
            {u"statusBar"_s, objectOf(statusBar)},
            {u"privacy"_s, objectOf(privacy)}};
}

LocationAccess DeviceSettings::locationAccess() const {
    for (const QString& service : locationServices()) {
        if (const auto choice = privacy.find(browserEntry(service)); choice != privacy.end()) {
            return accessWords().key(*choice, LocationAccess::denied);
        }
    }
    return LocationAccess::granted;
}

void DeviceSettings::setLocationAccess(LocationAccess access) {
    privacy.remove(browserEntry(u"location-always"_s));
    privacy[browserEntry(u"location"_s)] = accessWords()[access];
}

void DeviceSettings::endSession() {
    statusBar.clear();
    if (locationAccess() == LocationAccess::grantedOnce) {
        setLocationAccess(LocationAccess::ask);
    }
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
