// SPDX-License-Identifier: MIT
#include "updates/UpdateAlert.h"

#include "updates/UpdateCheckError.h"
#include "updates/UpdateTransferError.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

UpdateManifest manifest(const QString& address = u"https://downloads.example/Corvanta.dmg"_s) {
    return {
        .version = u"1.4.0"_s,
        .build = 27,
        .downloadURL = URL::parse(address).value_or(URL()),
        .releaseNotes = u" Faster.\n<b>Bolder.</b> &amp; 100% %1 "_s,
        .sha256 = u"0123456789abcdef"_s.repeated(4),
    };
}

UpdateAlertButton button(const QString& text, UpdateAlertButtonRole role = UpdateAlertButtonRole::standard) {
    return {.text = text, .role = role, .opens = std::nullopt};
}

TEST(UpdateAlert, IsKnownByWhatItSays) {
    EXPECT_EQ(UpdateAlert::available(manifest()).id(), u"available-27");
    EXPECT_EQ(UpdateAlert::failed(u"No luck."_s).id(), u"failed-No luck.");
    EXPECT_EQ(UpdateAlert::failed(u""_s).id(), u"failed-");
    EXPECT_EQ(UpdateAlert::upToDate().id(), u"up-to-date");
}

TEST(UpdateAlert, DiffersByCaseAndPayload) {
    EXPECT_EQ(UpdateAlert::available(manifest()), UpdateAlert::available(manifest()));
    EXPECT_NE(UpdateAlert::available(manifest()), UpdateAlert::available(manifest(u"https://a.example/"_s)));
    EXPECT_NE(UpdateAlert::failed(u"a"_s), UpdateAlert::failed(u"b"_s));
    EXPECT_NE(UpdateAlert::failed(u"a"_s), UpdateAlert::upToDate());
}

TEST(UpdateAlertContent, OffersAnAvailableUpdate) {
    const auto content = updateAlertContent(UpdateAlert::available(manifest()), u"Corvanta 1.3 (26)"_s);
    EXPECT_EQ(content.title, u"Corvanta 1.4.0 is available");
    EXPECT_EQ(content.message, u" Faster.\n<b>Bolder.</b> &amp; 100% %1 ");
    const std::vector<UpdateAlertButton> buttons{
        {.text = u"Download Update"_s,
         .role = UpdateAlertButtonRole::standard,
         .opens = URL::parse(u"https://downloads.example/Corvanta.dmg")},
        button(u"Not Now"_s, UpdateAlertButtonRole::cancel),
    };
    EXPECT_EQ(content.buttons, buttons);
}

TEST(UpdateAlertContent, NamesTheProductTwiceWhenItIsUpToDate) {
    const auto content = updateAlertContent(UpdateAlert::upToDate(), u"Corvanta 1.4 (27)"_s);
    EXPECT_EQ(content.title, u"You're up to date");
    EXPECT_EQ(content.message, u"You have the latest version of Corvanta (Corvanta 1.4 (27)).");
    EXPECT_EQ(content.buttons, std::vector{button(u"OK"_s)});
}

TEST(UpdateAlertContent, ShowsAFailureAsItIsDescribed) {
    const auto content = updateAlertContent(UpdateAlert::failed(u"Host not found: %1."_s), u"Corvanta 1.4 (27)"_s);
    EXPECT_EQ(content.title, u"Couldn't Check for Updates");
    EXPECT_EQ(content.message, u"Host not found: %1.");
    EXPECT_EQ(content.buttons, std::vector{button(u"OK"_s)});
}

TEST(UpdateAlertContent, NeverOpensAnAddressThatIsNotHTTPS) {
    const auto content = updateAlertContent(UpdateAlert::available(manifest(u"file:///etc/passwd"_s)), {});
    for (const UpdateAlertButton& each : content.buttons)
        EXPECT_EQ(each.opens, std::nullopt) << each.text.toStdString();
}

TEST(UpdateDownloadAddress, IsHTTPSOrNothing) {
    for (const QString& text : {u"https://a.example/b"_s, u"HTTPS://a.example/b"_s, u"hTTps://a.example/b?c#d"_s})
        EXPECT_EQ(downloadAddress(manifest(text)), URL::parse(text)) << text.toStdString();
    for (const QString& text : {u"http://a.example/b"_s, u"file:///bin/sh"_s, u"//a.example/b"_s, u"a.example"_s,
                                u"mailto:a@b.example"_s, u"https.evil:x"_s})
        EXPECT_EQ(downloadAddress(manifest(text)), std::nullopt) << text.toStdString();
}

TEST(UpdateCheckError, SaysThatTheInformationIsNotThereYet) {
    EXPECT_EQ(UpdateCheckError::serverUnavailable().errorDescription(),
              u"The update information is not available yet. Please try again later.");
    EXPECT_EQ(UpdateCheckError::serverUnavailable(), UpdateCheckError::serverUnavailable());
}

TEST(UpdateTransferError, DescribesEachCase) {
    EXPECT_EQ(UpdateTransferError::failed(u"Connection refused"_s).errorDescription(), u"Connection refused");
    EXPECT_EQ(UpdateTransferError::timedOut().errorDescription(), u"The request timed out.");
    EXPECT_EQ(UpdateTransferError::tooLarge().errorDescription(), u"The update server returned too much data.");
    EXPECT_NE(UpdateTransferError::timedOut(), UpdateTransferError::tooLarge());
}

} // namespace
} // namespace corvanta
