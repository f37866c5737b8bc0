// SPDX-License-Identifier: MIT
#include "DeviceCatalogue.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

DeviceType makePhone(QString suffix, QString name, QString model, DeviceShape shape, QSize screen, double scale,
                     int statusBar, int viewportHeight, QVersionNumber minimumVersion) {
    return {.identifier = u"com.apple.CoreSimulator.SimDeviceType."_s + suffix,
            .name = std::move(name),
            .productFamily = u"iPhone"_s,
            .modelIdentifier = std::move(model),
            .shape = shape,
            .screen = screen,
            .scale = scale,
            .viewport = {screen.width(), viewportHeight},
            .statusBar = statusBar,
            .touchPoints = 5,
            .platform = u"iPhone"_s,
            .minimumVersion = std::move(minimumVersion)};
}

DeviceType makeTablet(QString suffix, QString name, QString model, QSize screen, QVersionNumber minimumVersion) {
    // A status bar of 24 and the browser's one row of 50 are above the page: 820 x 1106 of 820 x 1180 on an iPad Air.
    return {.identifier = u"com.apple.CoreSimulator.SimDeviceType."_s + suffix,
            .name = std::move(name),
            .productFamily = u"iPad"_s,
            .modelIdentifier = std::move(model),
            .shape = DeviceShape::tablet,
            .screen = screen,
            .scale = 2,
            .viewport = {screen.width(), screen.height() - 74},
            .statusBar = 24,
            .touchPoints = 5,
            .platform = u"MacIntel"_s,
            .minimumVersion = std::move(minimumVersion)};
}

} // namespace

const std::vector<DeviceType>& deviceTypes() {
    // Screen sizes and scales are the maker's. The page height of the iPhone 15 models is the one that browser
    // automation projects publish for them (393 x 659 of 393 x 852: 59 of status bar, 134 of bars and home indicator).
    // The heights of the iPhone 16 models, of the iPhone SE and of the tablets are our own: the same bars taken off the
    // screen with the model's status bar (62 on the Pro models; no home indicator on the SE, where the bars take 99).
    using enum DeviceShape;
    static const std::vector<DeviceType> types = {
        makePhone(u"iPhone-SE-3rd-generation"_s, u"iPhone SE (3rd generation)"_s, u"iPhone14,6"_s, homeButton,
                  {375, 667}, 2, 20, 548, QVersionNumber(15, 4)),
        makePhone(u"iPhone-15"_s, u"iPhone 15"_s, u"iPhone15,4"_s, island, {393, 852}, 3, 59, 659,
                  QVersionNumber(17, 0)),
        makePhone(u"iPhone-15-Pro"_s, u"iPhone 15 Pro"_s, u"iPhone16,1"_s, island, {393, 852}, 3, 59, 659,
                  QVersionNumber(17, 0)),
        makePhone(u"iPhone-16"_s, u"iPhone 16"_s, u"iPhone17,3"_s, island, {393, 852}, 3, 59, 659,
                  QVersionNumber(18, 0)),
        makePhone(u"iPhone-16-Pro"_s, u"iPhone 16 Pro"_s, u"iPhone17,1"_s, island, {402, 874}, 3, 62, 678,
                  QVersionNumber(18, 0)),
        makePhone(u"iPhone-16-Pro-Max"_s, u"iPhone 16 Pro Max"_s, u"iPhone17,2"_s, island, {440, 956}, 3, 62, 760,
                  QVersionNumber(18, 0)),
        makeTablet(u"iPad-mini-A17-Pro"_s, u"iPad mini (A17 Pro)"_s, u"iPad16,1"_s, {744, 1133}, QVersionNumber(18, 0)),
        makeTablet(u"iPad-Pro-13-inch-M4-8GB"_s, u"iPad Pro 13-inch (M4)"_s, u"iPad16,5"_s, {1032, 1376},
                   QVersionNumber(17, 4)),
    };
    return types;
}

const std::vector<Runtime>& runtimes() {
    static const std::vector<Runtime> known = {
        {u"com.apple.CoreSimulator.SimRuntime.iOS-17-5"_s, u"iOS 17.5"_s, QVersionNumber(17, 5), u"21F79"_s},
        {u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"_s, u"iOS 18.2"_s, QVersionNumber(18, 2), u"22C150"_s},
    };
    return known;
}

const DeviceType* findDeviceType(const QString& identifierOrName) {
    const auto& types = deviceTypes();
    const auto found = std::ranges::find_if(types, [&](const DeviceType& type) {
        return type.identifier == identifierOrName || type.name == identifierOrName;
    });
    return found == types.end() ? nullptr : &*found;
}

const Runtime* findRuntime(const QString& identifierOrName) {
    const auto& known = runtimes();
    const auto found = std::ranges::find_if(known, [&](const Runtime& runtime) {
        const QString version = runtime.version.toString();
        return runtime.identifier == identifierOrName || runtime.name == identifierOrName ||
               version == identifierOrName || u"iOS"_s + version == identifierOrName;
    });
    return found == known.end() ? nullptr : &*found;
}

bool isSupported(const DeviceType& type, const Runtime& runtime) {
    return runtime.version >= type.minimumVersion;
}

QString userAgent(const DeviceType& type, const Runtime& runtime) {
    const QString version = runtime.version.toString();
    if (type.isTablet()) {
        // Tablets ask for desktop sites, so their browser names a Mac.
        return u"Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/%1 "
               "Safari/605.1.15"_s.arg(version);
    }
    return u"Mozilla/5.0 (iPhone; CPU iPhone OS %1 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/%2 "
           "Mobile/15E148 Safari/604.1"_s.arg(QString(version).replace(u'.', u'_'), version);
}

} // namespace corvanta::lab
