// SPDX-License-Identifier: MIT
#include "DeviceCatalogue.h"
#include "LabDesktop.h"
#include "PublishedFigures.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <gmock/gmock.h>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

QString text(QSize size) {
    return u"%1x%2"_s.arg(size.width()).arg(size.height());
}

QString safeAreaText(const QMargins& area) {
    return u"%1px %2px %3px %4px"_s.arg(area.top()).arg(area.right()).arg(area.bottom()).arg(area.left());
}

/// What a page on the device finds that it does not find here, as docs/lab.md lists it, and what it finds here.
QJsonObject notImitated() {
    return {{u"displayMode"_s, false},
            {u"p3"_s, false},
            {u"highRange"_s, false},
            {u"largerLargeViewport"_s, false},
            {u"gestureEvent"_s, u"undefined"_s},
            {u"textSizeAdjust"_s, false},
            {u"touchCallout"_s, false}};
}

struct Way {
    QString orientation;
    bool isCover = false;
    QString scheme = u"light"_s;
};

/// What the device's page reports.
QJsonObject expectedReport(const PublishedFigures& figures, const Way& way) {
    const bool isLandscape = way.orientation != u"portrait";
    const QSize page = !isLandscape ? figures.portrait : way.isCover ? figures.landscapeCover : figures.landscape;
    const QMargins area = !way.isCover ? QMargins() : isLandscape ? figures.coverLandscape : figures.coverPortrait;
    const int angle = !isLandscape ? 0 : way.orientation == u"landscapeLeft" ? 90 : -90;
    QJsonObject report{
        {u"inner"_s, text(page)},
        {u"layout"_s, text(page)},
        {u"visual"_s, text(page) + u"@1"_s},
        {u"outer"_s, text(isLandscape ? figures.screen.transposed() : figures.screen)},
        {u"screen"_s, text(figures.screen)},
        {u"available"_s, text(figures.screen)},
        {u"depth"_s, 24},
        {u"ratio"_s, figures.ratio},
        {u"orientation"_s, angle == 0    ? u"portrait-primary"_s
                           : angle == 90 ? u"landscape-primary"_s
                                         : u"landscape-secondary"_s},
        {u"angle"_s, (angle + 360) % 360},
        {u"windowOrientation"_s, angle},
        {u"safeArea"_s, safeAreaText(area)},
        {u"padding"_s, safeAreaText({area.left(), area.top(), area.right() + 1, std::max(3, area.bottom())})},
        {u"agent"_s, lab::userAgent(*lab::findDeviceType(figures.name), *lab::findRuntime(u"18.2"_s))},
        {u"platform"_s, figures.platform},
        {u"vendor"_s, u"Apple Computer, Inc."_s},
        {u"language"_s, u"en-US"_s},
        {u"touchPoints"_s, 5},
        {u"standalone"_s, false},
        {u"touchHandlers"_s, true},
        {u"touchEvent"_s, u"function"_s},
        {u"webkitObject"_s, u"undefined"_s},
        {u"smallViewport"_s, page.height()},
        {u"widthQuery"_s, true},
        {u"heightQuery"_s, true},
        {u"deviceQuery"_s, true},
        {u"landscape"_s, isLandscape},
        {u"portrait"_s, !isLandscape},
        {u"resolution"_s, true},
        {u"webkitRatio"_s, true},
        {u"pointer"_s, u"coarse"_s},
        {u"anyPointer"_s, u"coarse"_s},
        {u"hover"_s, false},
        {u"anyHover"_s, false},
        {u"scheme"_s, way.scheme},
        {u"reducedMotion"_s, false},
        {u"moreContrast"_s, false},
        {u"srgb"_s, true},
        {u"p3"_s, true},
        {u"highRange"_s, figures.ratio == 3},
        {u"displayMode"_s, true},
        {u"largerLargeViewport"_s, !isLandscape && figures.platform == u"iPhone"},
        {u"gestureEvent"_s, u"function"_s},
        {u"textSizeAdjust"_s, true},
        {u"touchCallout"_s, true},
        {u"bodyFont"_s, true}};
    const QJsonObject exceptions = notImitated();
    for (auto entry = exceptions.begin(); entry != exceptions.end(); ++entry) {
        report[entry.key()] = entry.value();
    }
    return report;
}

/// The entries that differ, as lines "key: found instead of expected".
std::string difference(const QJsonObject& found, const QJsonObject& expected) {
    const auto shown = [](const QJsonValue& value) {
        return QJsonDocument(QJsonObject{{QString(), value}}).toJson(QJsonDocument::Compact);
    };
    QByteArray lines;
    QSet<QString> keys;
    for (const QJsonObject& report : {found, expected}) {
        for (const QString& key : report.keys()) {
            keys.insert(key);
        }
    }
    keys.remove(u"page"_s);
    for (const QString& key : keys) {
        if (found[key] != expected[key]) {
            lines += '\n' + key.toUtf8() + ": " + shown(found[key]) + " instead of " + shown(expected[key]);
        }
    }
    return lines.toStdString();
}

class PageKnowledge : public Simulator, public ::testing::WithParamInterface<PublishedFigures> {
protected:
    /// Waits until the page reports what is expected.
    void expectReport(const QString& page, const Way& way) {
        const QJsonObject expected = expectedReport(GetParam(), way);
        EXPECT_TRUE(waitFor([&] { return difference(server.last(page), expected).empty(); }))
            << way.orientation.toStdString() << (way.isCover ? " cover" : "")
            << difference(server.last(page), expected);
    }
};

TEST_P(PageKnowledge, IsThatOfTheDevice) {
    const QString udid = createBooted(GetParam().name);
    simctl({u"openurl"_s, udid, server.url(u"measure"_s)});
    expectReport(u"measure"_s, {u"portrait"_s});
    turn(udid, u"landscapeLeft"_s);
    expectReport(u"measure"_s, {u"landscapeLeft"_s});
    simctl({u"openurl"_s, udid, server.url(u"measure-cover"_s)});
    expectReport(u"measure-cover"_s, {u"landscapeLeft"_s, true});
    turn(udid, u"portrait"_s);
    expectReport(u"measure-cover"_s, {u"portrait"_s, true});
    simctl({u"ui"_s, udid, u"appearance"_s, u"dark"_s});
    turn(udid, u"landscapeRight"_s);
    expectReport(u"measure-cover"_s, {u"landscapeRight"_s, true, u"dark"_s});
}

INSTANTIATE_TEST_SUITE_P(Models, PageKnowledge, ::testing::ValuesIn(publishedFigures()), [](const auto& model) {
    std::string name;
    for (const QChar letter : model.param.name) {
        name += letter.isLetterOrNumber() ? letter.toLatin1() : char();
    }
    std::erase(name, char());
    return name;
});

TEST(PublishedFigures, CoverEveryModelOfTheCatalogue) {
    std::vector<QString> published;
    for (const PublishedFigures& figures : publishedFigures()) {
        published.push_back(figures.name);
    }
    std::vector<QString> catalogue;
    for (const lab::DeviceType& type : lab::deviceTypes()) {
        catalogue.push_back(type.name);
    }
    EXPECT_EQ(published, catalogue);
}

} // namespace

} // namespace corvanta
