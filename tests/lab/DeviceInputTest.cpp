// SPDX-License-Identifier: MIT
#include "DeviceLayout.h"
#include "LabDesktop.h"

#include <QJsonObject>

#include <gmock/gmock.h>

#include <utility>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;
using lab::DeviceLayout;
using ::testing::StartsWith;

/// A device's window with a page in it that is touched with the mouse.
class DeviceInput : public Simulator {
protected:
    void SetUp() override {
        Simulator::SetUp();
        if (IsSkipped()) {
            return;
        }
        const QString name = u"iPhone 16 Pro"_s;
        m_udid = create(name);
        runLab(u"open"_s, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, m_udid});
        m_window = window(name + u" – iOS 18.2"_s);
        ASSERT_FALSE(m_window.isEmpty());
        const QSize size(471, 950);
        runServing(u"xdotool"_s, {u"windowsize"_s, m_window, u"471"_s, u"950"_s});
        m_layout = DeviceLayout::fit(*lab::findDeviceType(name), size);
        simctl({u"openurl"_s, m_udid, server.url(u"touch"_s)});
        ASSERT_TRUE(waitFor([&] { return last()[u"inner"].toInt() == 678; }));
    }

    [[nodiscard]] QJsonObject last() const { return server.last(u"touch"_s); }

    /// A place of the page, in CSS pixels, as coordinates in the window.
    [[nodiscard]] QStringList inWindow(QPointF place) const {
        return words(QPointF(m_layout.page.topLeft()) + place * m_layout.zoom);
    }

    [[nodiscard]] static QStringList words(QPointF place) {
        return {QString::number(qRound(place.x())), QString::number(qRound(place.y()))};
    }

    void mouse(const QStringList& place, const QStringList& then) const {
        runServing(u"xdotool"_s, QStringList{u"mousemove"_s, u"--window"_s, m_window} + place + then);
    }

    /// Touches and lets go until the page did what is expected: the window may still come to rest.
    [[nodiscard]] bool tap(QPointF place, const std::function<bool()>& isDone) const {
        mouse(inWindow(place), {u"click"_s, u"1"_s});
        return waitFor(isDone);
    }

    QString m_udid;
    QString m_window;
    DeviceLayout m_layout;
};

TEST_F(DeviceInput, MakesTheMouseAFinger) {
    ASSERT_TRUE(tap({200, 400}, [&] { return last()[u"events"].toString().contains(u"click"); }));
    EXPECT_THAT(last()[u"events"].toString().toStdString(),
                StartsWith("touchstart@200,400 touchend@200,400 mousedown click "));
    mouse(inWindow({200, 500}), {u"mousedown"_s, u"1"_s});
    for (int y = 480; y >= 200; y -= 20) {
        mouse(inWindow({200, double(y)}), {});
    }
    mouse(inWindow({200, 200}), {u"mouseup"_s, u"1"_s});
    EXPECT_TRUE(waitFor([&] { return last()[u"scrolled"].toDouble() >= 200; })) << last()[u"scrolled"].toDouble();
    EXPECT_EQ(last()[u"events"].toString().count(u"click"), 1) << "a drag scrolls and clicks nothing";
}

TEST_F(DeviceInput, CoversPartOfTheVisualViewportWithTheKeyboard) {
    ASSERT_TRUE(tap({100, 65}, [&] { return last()[u"visual"].toInt() < 678; }));
    const int covered = qRound((m_layout.page.bottom() + 1 - m_layout.keyboard.top()) / m_layout.zoom);
    EXPECT_EQ(last()[u"visual"].toInt(), 678 - covered);
    EXPECT_EQ(last()[u"inner"].toInt(), 678);
    // The first letter of the upper row.
    const QRectF keys(m_layout.keyboard);
    mouse(words(keys.topLeft() + QPointF(keys.width() / 20, 42 * m_layout.zoom + keys.height() * 0.1)),
          {u"click"_s, u"1"_s});
    EXPECT_TRUE(waitFor([&] { return last()[u"text"].toString() == u"q"; }));
    mouse(words(keys.topRight() + QPointF(-40, 21) * m_layout.zoom), {u"click"_s, u"1"_s});
    EXPECT_TRUE(waitFor([&] { return last()[u"visual"].toInt() == 678; }));
}

TEST_F(DeviceInput, AsksWhatPagesAskOnItsScreen) {
    const auto answers = [&](const QString& key, const QString& answer) {
        mouse(inWindow({100, 165}), {u"click"_s, u"1"_s});
        // The page reports nothing while its question waits.
        qsizetype reports = -1;
        const bool isAsked = waitFor([&] {
            const qsizetype before = std::exchange(reports, server.reports(u"touch"_s).size());
            runServing(u"sleep"_s, {u"0.3"_s});
            return before == reports;
        });
        runServing(u"xdotool"_s, {u"key"_s, key});
        return isAsked && waitFor([&] { return last()[u"answer"].toString() == answer; });
    };
    EXPECT_TRUE(answers(u"Return"_s, u"true"_s));
    EXPECT_TRUE(answers(u"Escape"_s, u"false"_s));
}

} // namespace

} // namespace corvanta
