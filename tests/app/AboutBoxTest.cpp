// SPDX-License-Identifier: MIT
#include "shell/AboutBox.h"

#include "OffscreenWindows.h"
#include "shell/AppIdentity.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>

#include <gtest/gtest.h>

namespace corvanta {
namespace {

TEST(AboutBox, NamesTheVersionAndWhoseDataItContains) {
    const testing::OffscreenWindows offscreen;
    QWidget window;
    openAboutBox(window);
    const auto boxes = window.findChildren<QMessageBox*>();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes.first()->text(), AppIdentity::versionLine());
    EXPECT_TRUE(boxes.first()->informativeText().contains(dataCredits()));
    EXPECT_TRUE(dataCredits().contains(u"GeoNames"));
    EXPECT_TRUE(dataCredits().contains(u"CC BY 4.0"));
    EXPECT_EQ(boxes.first()->textFormat(), Qt::PlainText);
    EXPECT_FALSE(boxes.first()->isModal());
}

TEST(AboutBox, IsOpenOnce) {
    const testing::OffscreenWindows offscreen;
    QWidget window;
    openAboutBox(window);
    openAboutBox(window);
    const auto boxes = window.findChildren<QMessageBox*>();
    ASSERT_EQ(boxes.size(), 1);
    const QPointer<QMessageBox> box = boxes.first();
    box->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(box, nullptr);
}

} // namespace
} // namespace corvanta
