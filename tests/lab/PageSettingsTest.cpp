// SPDX-License-Identifier: MIT
// What pages see of the settings that a person makes on the device.
#include "AccessibleObject.h"
#include "LabDesktop.h"
#include "LabFolders.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

class PageSettings : public Simulator {
protected:
    void SetUp() override {
        Simulator::SetUp();
        if (!IsSkipped()) {
            m_udid = createBooted(u"iPhone 16 Pro"_s);
        }
    }

    void set(const QString& option, const QString& value) const {
        const ToolRun run = simctl({u"ui"_s, m_udid, option, value});
        EXPECT_EQ(run.status, 0) << run.error.constData();
    }

    QString m_udid;
};

TEST_F(PageSettings, TheTextSizeShowsInTheSystemsFonts) {
    simctl({u"openurl"_s, m_udid, server.url(u"styles"_s)});
    const auto fonts = [&] {
        QJsonObject report = server.last(u"styles"_s);
        report.remove(u"page"_s);
        return report;
    };
    const auto shows = [&](const QJsonObject& expected) {
        EXPECT_TRUE(waitFor([&] { return fonts() == expected; }))
            << QJsonDocument(fonts()).toJson().constData() << "instead of "
            << QJsonDocument(expected).toJson().constData();
    };
    QJsonObject expected{{u"sheet"_s, u"17/400"_s},
                         {u"later"_s, u"13/400"_s},
                         {u"nested"_s, u"17/600"_s},
                         {u"asked"_s, u"28/400"_s},
                         {u"linked"_s, u"20/400"_s},
                         {u"plain"_s, u"16/400"_s},
                         {u"attribute"_s, u"12/400"_s},
                         {u"scripted"_s, u"15/400"_s},
                         {u"added"_s, u"34/400"_s},
                         {u"inserted"_s, u"11/400"_s},
                         {u"colour"_s, u"rgb(255, 0, 0)"_s},
                         {u"style"_s, u"italic"_s},
                         {u"known"_s, true},
                         {u"unknown"_s, false}};
    shows(expected);

    set(u"content_size"_s, u"accessibility-large"_s);
    for (const auto& [name, font] :
         {std::pair{u"sheet"_s, u"33/400"_s}, std::pair{u"later"_s, u"27/400"_s}, std::pair{u"nested"_s, u"33/600"_s},
          std::pair{u"asked"_s, u"43/400"_s}, std::pair{u"linked"_s, u"37/400"_s},
          std::pair{u"attribute"_s, u"26/400"_s}, std::pair{u"scripted"_s, u"30/400"_s},
          std::pair{u"added"_s, u"48/400"_s}, std::pair{u"inserted"_s, u"24/400"_s}}) {
        expected[name] = font;
    }
    shows(expected);
    // A page that is opened now, whose linked sheet the engine still has.
    const qsizetype before = server.reports(u"styles"_s).size();
    simctl({u"openurl"_s, m_udid, server.url(u"styles"_s)});
    EXPECT_TRUE(waitFor([&] { return server.reports(u"styles"_s).size() > before; }));
    shows(expected);
}

TEST_F(PageSettings, MoreContrastIsSeenInBothAppearances) {
    simctl({u"openurl"_s, m_udid, server.url(u"measure"_s)});
    const auto shows = [&](bool moreContrast, const QString& scheme) {
        EXPECT_TRUE(waitFor([&] {
            const QJsonObject report = server.last(u"measure"_s);
            return report[u"moreContrast"].toBool() == moreContrast && report[u"scheme"].toString() == scheme;
        })) << moreContrast
            << ' ' << scheme.toStdString() << ": " << server.last(u"measure"_s)[u"moreContrast"].toBool() << ' '
            << server.last(u"measure"_s)[u"scheme"].toString().toStdString();
    };
    set(u"increase_contrast"_s, u"enabled"_s);
    shows(true, u"light"_s);
    set(u"appearance"_s, u"dark"_s);
    shows(true, u"dark"_s);
    set(u"increase_contrast"_s, u"disabled"_s);
    shows(false, u"dark"_s);
    set(u"appearance"_s, u"light"_s);
    shows(false, u"light"_s);
}

TEST_F(PageSettings, ReducedMotionIsKeptWithTheDevice) {
    const auto reducedMotion = [&](const QString& page) {
        simctl({u"openurl"_s, m_udid, server.url(page)});
        EXPECT_TRUE(waitFor([&] { return !server.last(page).isEmpty(); }));
        return server.last(page)[u"reducedMotion"].toBool();
    };
    EXPECT_FALSE(reducedMotion(u"measure"_s));
    EXPECT_EQ(simctl({u"shutdown"_s, m_udid}).status, 0);
    QFile settings(lab::deviceSetFolder() + u'/' + m_udid + u"/settings.json"_s);
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write(R"({"ui": {"reduceMotion": true}})");
    settings.close();
    EXPECT_EQ(simctl({u"bootstatus"_s, m_udid, u"-b"_s}).status, 0);
    EXPECT_TRUE(reducedMotion(u"measure-again"_s));
}

TEST_F(PageSettings, ReducedMotionIsChosenInTheDevicesMenu) {
    const QStringList show{u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, m_udid};
    const auto press = [](const QString& name) {
        return waitFor([&] {
            for (const AccessibleObject& window : AccessibleObject::windows(u"com.apple.iphonesimulator"_s)) {
                const auto found = window.find(
                    [&](const AccessibleObject& object) { return object.name() == name && object.isShowing(); });
                if (found && found->press()) {
                    return true;
                }
            }
            return false;
        });
    };
    const auto sees = [&](const QString& page, bool isReduced) {
        return waitFor([&] {
            const QJsonObject report = server.last(page);
            return !report.isEmpty() && report[u"reducedMotion"].toBool() == isReduced;
        });
    };
    ASSERT_EQ(runLab(u"open"_s, show).status, 0);
    simctl({u"openurl"_s, m_udid, server.url(u"measure"_s)});
    ASSERT_TRUE(sees(u"measure"_s, false));

    ASSERT_TRUE(press(u"Device"_s) && press(u"Reduce Motion"_s));
    EXPECT_TRUE(sees(u"measure"_s, true)) << "the page that is open";

    EXPECT_EQ(simctl({u"shutdown"_s, m_udid}).status, 0);
    ASSERT_EQ(runLab(u"open"_s, show).status, 0);
    simctl({u"openurl"_s, m_udid, server.url(u"measure-again"_s)});
    EXPECT_TRUE(sees(u"measure-again"_s, true)) << "a page after the next boot";

    ASSERT_TRUE(press(u"Device"_s) && press(u"Reduce Motion"_s));
    EXPECT_TRUE(sees(u"measure-again"_s, false));
}

} // namespace

} // namespace corvanta
