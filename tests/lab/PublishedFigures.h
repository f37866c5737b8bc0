// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QSize>
#include <QString>

#include <ostream>
#include <vector>

namespace corvanta {

/// What is published of a model: what its browser's pages see while the browser's bars are expanded, in CSS pixels.
struct PublishedFigures {
    QString name;
    QSize screen;
    double ratio = 1;
    QSize portrait;
    QSize landscape;
    /// On its side, of a page with `viewport-fit=cover`.
    QSize landscapeCover;
    QMargins coverPortrait;
    QMargins coverLandscape;
    QString platform;
};

/// For the test framework.
inline void PrintTo(const PublishedFigures& figures, std::ostream* stream) {
    *stream << figures.name.toStdString();
}

/// Every model of the catalogue. Where the figures are from:
///
/// - Screens and ratios: the maker's Human Interface Guidelines, "Layout", table of device dimensions
///   (https://developer.apple.com/design/human-interface-guidelines/layout).
/// - Pages of the iPhone 15 and 15 Pro, 393 x 659 and 734 x 343: the registry of devices of the Playwright project
///   (packages/playwright-core/src/server/deviceDescriptorsSource.json; 14 Pro and 15 share the screen). Those of the
///   iPhone 16 models are ours: the registry's bars taken off their screens, 134 below and the status bar above, or 50
///   above on the side, where 2 x the status bar's height is kept free (852 - 734 = 2 x 59 in the registry).
/// - Page of the iPhone SE: ours, 20 of status bar and 99 of bars, or 50 on its side.
/// - Safe areas on the side: 59, 0, 21, 59 of the 15 and 16 (https://pub.dev/packages/flutterware, Devices.iphone16),
///   62, 0, 21, 62 of the 16 Pro and Pro Max (https://pub.dev/packages/device_preview, DevicePresets.iPhone16ProMax). A
///   page between the browser's bars has none at the top and the bottom, and a page without `viewport-fit=cover` none
///   at all (https://webkit.org/blog/7929/designing-websites-for-iphone-x/).
/// - Pages of the tablets: ours, 24 of status bar and one row of 50 (820 x 1106 of 820 x 1180 on an iPad Air), with the
///   20 of the home indicator as the safe area at the bottom.
inline std::vector<PublishedFigures> publishedFigures() {
    const QString phone = QStringLiteral("iPhone");
    const QString tablet = QStringLiteral("MacIntel");
    const QMargins none;
    const QMargins side59(59, 0, 59, 21);
    const QMargins side62(62, 0, 62, 21);
    const QMargins below(0, 0, 0, 20);
    return {
        {QStringLiteral("iPhone SE (3rd generation)"),
         {375, 667},
         2,
         {375, 548},
         {667, 325},
         {667, 325},
         none,
         none,
         phone},
        {QStringLiteral("iPhone 15"), {393, 852}, 3, {393, 659}, {734, 343}, {852, 343}, none, side59, phone},
        {QStringLiteral("iPhone 15 Pro"), {393, 852}, 3, {393, 659}, {734, 343}, {852, 343}, none, side59, phone},
        {QStringLiteral("iPhone 16"), {393, 852}, 3, {393, 659}, {734, 343}, {852, 343}, none, side59, phone},
        {QStringLiteral("iPhone 16 Pro"), {402, 874}, 3, {402, 678}, {750, 352}, {874, 352}, none, side62, phone},
        {QStringLiteral("iPhone 16 Pro Max"), {440, 956}, 3, {440, 760}, {832, 390}, {956, 390}, none, side62, phone},
        {QStringLiteral("iPad mini (A17 Pro)"),
         {744, 1133},
         2,
         {744, 1059},
         {1133, 670},
         {1133, 670},
         below,
         below,
         tablet},
        {QStringLiteral("iPad Pro 13-inch (M4)"),
         {1032, 1376},
         2,
         {1032, 1302},
         {1376, 958},
         {1376, 958},
         below,
         below,
         tablet},
    };
}

} // namespace corvanta
