// SPDX-License-Identifier: MIT
// What pages ask of a person, asked and answered on the device's screen.
#include "AccessibleObject.h"
#include "LabDesktop.h"
#include "WebServer.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <csignal>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;
using testing::WebServer;

/// A device with its window on the desktop, pressed and read over the accessibility bus.
class PageRequests : public Simulator {
protected:
    void SetUp() override {
        Simulator::SetUp();
        if (IsSkipped()) {
            return;
        }
        makeDownloadFolder();
        m_udid = create(u"iPhone 16 Pro"_s);
        ASSERT_EQ(showWindow(), 0);
    }

    [[nodiscard]] int showWindow() const {
        return runLab(u"open"_s, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, m_udid}).status;
    }

    /// Where the desktop of this test keeps downloads.
    static QDir downloads() { return {QFile::decodeName(qgetenv("XDG_DATA_HOME")) + u"/downloads"_s}; }

    static void makeDownloadFolder() {
        QDir().mkpath(downloads().path());
        QFile folders(QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + u"/user-dirs.dirs"_s);
        ASSERT_TRUE(folders.open(QIODevice::WriteOnly));
        folders.write("XDG_DOWNLOAD_DIR=\"" + QFile::encodeName(downloads().path()) + "\"\n");
    }

    void open(const QString& url) const { EXPECT_EQ(simctl({u"openurl"_s, m_udid, url}).status, 0); }

    static std::optional<AccessibleObject> shown(const std::function<bool(const QString& name)>& isWanted) {
        for (const AccessibleObject& window : AccessibleObject::windows(u"com.apple.iphonesimulator"_s)) {
            const auto found = window.find(
                [&](const AccessibleObject& object) { return isWanted(object.name()) && object.isShowing(); });
            if (found) {
                return found;
            }
        }
        return std::nullopt;
    }

    static std::optional<AccessibleObject> shown(const QString& name) {
        return shown([&](const QString& other) { return other == name; });
    }

    /// Whether something with that text is, or comes, on the screen.
    static bool comes(const QString& text) {
        return waitFor([&] { return shown([&](const QString& name) { return name.contains(text); }).has_value(); });
    }

    static bool goes(const QString& text) {
        return waitFor([&] { return !shown([&](const QString& name) { return name.contains(text); }); });
    }

    /// Presses what has that name, once it is on the screen.
    static bool press(const QString& name) {
        return waitFor([&] {
            const auto found = shown(name);
            return found && found->press();
        });
    }

    /// Presses a button of the page that asks something before it is done.
    static bool pressAsking(const QString& name) {
        return waitFor([&] {
            const auto found = shown(name);
            if (found) {
                found->pressAndGoOn();
            }
            return found.has_value();
        });
    }

    void choosePrivacy(const QString& action) const {
        const ToolRun run = simctl({u"privacy"_s, m_udid, action, u"location"_s, u"com.apple.mobilesafari"_s});
        EXPECT_EQ(run.status, 0) << run.error.constData();
    }

    [[nodiscard]] bool hears(const QString& page, const QString& location) const {
        return waitFor([&] { return server.last(page)[u"geo"].toString() == location; });
    }

    QString m_udid;
};

constexpr auto locationQuestion = "Allow “Safari” to use your location?";

TEST_F(PageRequests, AHostileQuestionIsPlainTextThatEnds) {
    WebServer site(WebServer::Scheme::http);
    site.answer(u"/hostile"_s, {.headers = "Content-Type: text/html; charset=utf-8\r\n",
                                .body = "<title>H</title><script>setTimeout(() => {"
                                        "alert('<b>Bold</b> _x & \xE2\x80\xAEgnp');"
                                        "alert('M'.repeat(1000000));"
                                        "prompt('<i>Sure</i>', 'x'.repeat(1000000));"
                                        "document.title = 'M'.repeat(1000000); }, 0)</script>"});
    open(site.url(u"/hostile"_s));
    ASSERT_TRUE(comes(u"<b>Bold</b> _x & gnp"_s));
    ASSERT_TRUE(press(u"Close"_s));
    ASSERT_TRUE(comes(u"MMMMMM"_s));
    const auto endless = shown([](const QString& name) { return name.startsWith(u"MMM"); });
    ASSERT_TRUE(endless);
    EXPECT_LE(endless->name().size(), 4'000);
    ASSERT_TRUE(press(u"Close"_s));
    ASSERT_TRUE(comes(u"<i>Sure</i>"_s));
    ASSERT_TRUE(press(u"Cancel"_s));
    // The overview of the pages shows the title.
    ASSERT_TRUE(press(u"Pages: 1 open"_s));
    EXPECT_TRUE(comes(u"MMMMMM"_s));
    EXPECT_TRUE(press(u"Done"_s));
}

TEST_F(PageRequests, ACertificateIsTrustedOnRequest) {
    WebServer site(WebServer::Scheme::https, u"self-signed"_s);
    site.answer(u"/"_s, {.headers = "Content-Type: text/html\r\n", .body = "<title>Trusted</title>"});
    open(site.url(u"/"_s));

    EXPECT_TRUE(comes(u"This Connection Is Not Private"_s));
    EXPECT_TRUE(comes(u"signed by an authority that this device does not know"_s));
    EXPECT_TRUE(press(u"Don’t Trust"_s));
    EXPECT_TRUE(goes(u"Trust “"_s));
    EXPECT_EQ(site.requests().size(), 0);

    EXPECT_TRUE(press(u"Reload"_s)) << "the page in front, not the browser's button";
    EXPECT_TRUE(press(u"Trust on This Device"_s));
    EXPECT_TRUE(waitFor([&] { return site.requests().size() > 0; }));
    EXPECT_TRUE(goes(u"This Connection Is Not Private"_s));
}

TEST_F(PageRequests, ATrustedCertificateIsGoodForEveryAddressOfItsServer) {
    // Signed by an authority of the developer's own.
    WebServer site(WebServer::Scheme::https);
    for (const QString& path : {u"/first"_s, u"/second"_s, u"/third"_s}) {
        site.answer(path, {.headers = "Content-Type: text/html\r\n",
                           .body = "<!doctype html><h1>The page at " + path.toUtf8() + "</h1>"});
    }
    open(site.url(u"/first"_s));
    EXPECT_TRUE(press(u"Trust on This Device"_s));
    EXPECT_TRUE(comes(u"The page at /first"_s));

    for (const QString& path : {u"/second"_s, u"/third"_s}) {
        open(site.url(path));
        EXPECT_TRUE(comes(u"The page at "_s + path));
        EXPECT_FALSE(shown(u"Trust on This Device"_s));
    }
}

TEST_F(PageRequests, ACertificatesProblemIsNamed) {
    WebServer expired(WebServer::Scheme::https, u"expired"_s);
    open(expired.url(u"/"_s));
    EXPECT_TRUE(comes(u"Its certificate has expired."_s));
    EXPECT_TRUE(press(u"Don’t Trust"_s));
    WebServer other(WebServer::Scheme::https, u"other-host"_s);
    open(other.url(u"/"_s));
    EXPECT_TRUE(comes(u"Its certificate is for another name."_s));
    EXPECT_EQ(expired.requests().size() + other.requests().size(), 0);
}

TEST_F(PageRequests, ADownloadIsKeptOnRequest) {
    WebServer site(WebServer::Scheme::http);
    site.answer(u"/kept"_s, {.headers = "Content-Type: text/plain\r\n"
                                        "Content-Disposition: attachment; filename=\"tide table.txt\"\r\n",
                             .body = "High water at 9:12"});
    const QString question = u"Do you want to download “tide table.txt”?"_s;
    const auto textOf = [](const QString& name) {
        QFile file(downloads().filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    open(site.url(u"/kept"_s));
    EXPECT_TRUE(comes(question));
    EXPECT_TRUE(press(u"Cancel"_s));
    EXPECT_TRUE(goes(question));
    EXPECT_EQ(downloads().entryList(QDir::Files), QStringList());

    for (const QString& name : {u"tide table.txt"_s, u"tide table 2.txt"_s}) {
        open(site.url(u"/kept"_s));
        EXPECT_TRUE(press(u"Download"_s));
        EXPECT_TRUE(waitFor([&] { return textOf(name) == "High water at 9:12"; })) << name.toStdString();
    }
}

TEST_F(PageRequests, AFileIsChosenForAPage) {
    QFile file(downloads().filePath(u"picture.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("a harbour");
    file.close();
    open(server.url(u"files"_s));
    ASSERT_TRUE(waitFor([&] { return !server.last(u"files"_s).isEmpty(); }));

    EXPECT_TRUE(press(u"Send a picture"_s));
    EXPECT_TRUE(comes(u"Choose a File"_s));
    EXPECT_TRUE(press(u"Cancel"_s));
    EXPECT_TRUE(goes(u"Choose a File"_s));
    EXPECT_EQ(server.last(u"files"_s)[u"file"].toString(), u"none");

    EXPECT_TRUE(press(u"Send a picture"_s));
    EXPECT_TRUE(comes(u"Choose a File"_s));
    EXPECT_TRUE(comes(u"picture.txt"_s)) << "the folder for downloads is where it begins";
    runServing(u"xdotool"_s, {u"key"_s, u"Home"_s, u"Return"_s});
    EXPECT_TRUE(waitFor([&] { return server.last(u"files"_s)[u"text"].toString() == u"a harbour"; }))
        << server.last(u"files"_s)[u"file"].toString().toStdString();
}

TEST_F(PageRequests, APageThatEndedIsLoadedAgain) {
    open(server.url(u"touch"_s));
    ASSERT_TRUE(waitFor([&] { return !server.last(u"touch"_s).isEmpty(); }));
    EXPECT_TRUE(pressAsking(u"Ask"_s));
    EXPECT_TRUE(comes(u"Really?"_s));
    for (const QString& process : labProcesses()) {
        if (process.contains(u"WebKitWebProcess")) {
            ::kill(process.section(u' ', 0, 0).toInt(), SIGKILL);
        }
    }
    EXPECT_TRUE(comes(u"This page ended unexpectedly."_s));
    EXPECT_TRUE(goes(u"Really?"_s)) << "nobody asks any more";
    const qsizetype before = server.reports(u"touch"_s).size();
    EXPECT_TRUE(press(u"Reload"_s));
    EXPECT_TRUE(waitFor([&] { return server.reports(u"touch"_s).size() > before; }));
    EXPECT_TRUE(goes(u"This page ended unexpectedly."_s));
    EXPECT_TRUE(pressAsking(u"Ask"_s)) << "the page can be used again";
    EXPECT_TRUE(press(u"OK"_s));
    EXPECT_TRUE(waitFor([&] { return server.last(u"touch"_s)[u"answer"].toString() == u"true"; }));
}

TEST_F(PageRequests, APortThatTheBrowserRefusesIsExplained) {
    open(u"http://127.0.0.1:6667/"_s);
    EXPECT_TRUE(comes(u"“http://127.0.0.1:6667/” cannot be opened: the network port 6667"_s));
    open(server.url(u"after"_s));
    EXPECT_TRUE(waitFor([&] { return !server.last(u"after"_s).isEmpty(); }));
    EXPECT_TRUE(goes(u"cannot be opened"_s));
    open(u"about:blank"_s);
    EXPECT_TRUE(comes(u"Address: about:blank"_s));
    EXPECT_FALSE(shown([](const QString& name) { return name.contains(u"cannot be opened"); }));
}

TEST_F(PageRequests, TheLocationIsAskedForAfterAReset) {
    EXPECT_EQ(simctl({u"location"_s, m_udid, u"set"_s, u"5,6"_s}).status, 0);
    open(server.url(u"located-new"_s));
    EXPECT_TRUE(hears(u"located-new"_s, u"5,6"_s)) << "a new device does not ask";

    choosePrivacy(u"reset"_s);
    open(server.url(u"located-once"_s));
    EXPECT_TRUE(comes(QString::fromUtf8(locationQuestion)));
    EXPECT_TRUE(hears(u"located-once"_s, u"none"_s));
    EXPECT_TRUE(press(u"Allow Once"_s));
    EXPECT_TRUE(hears(u"located-once"_s, u"5,6"_s));
    open(server.url(u"located-again"_s));
    EXPECT_TRUE(hears(u"located-again"_s, u"5,6"_s)) << "not asked twice";

    EXPECT_EQ(simctl({u"shutdown"_s, m_udid}).status, 0);
    EXPECT_EQ(showWindow(), 0);
    EXPECT_EQ(simctl({u"location"_s, m_udid, u"set"_s, u"7,8"_s}).status, 0);
    open(server.url(u"located-next"_s));
    EXPECT_TRUE(press(u"Allow While Using App"_s)) << "asked anew by a device that was off";
    EXPECT_TRUE(hears(u"located-next"_s, u"7,8"_s));
}

TEST_F(PageRequests, TheLocationIsRefusedAndGrantedWhileItIsAskedFor) {
    EXPECT_EQ(simctl({u"location"_s, m_udid, u"set"_s, u"5,6"_s}).status, 0);
    choosePrivacy(u"reset"_s);
    open(server.url(u"located-refused"_s));
    EXPECT_TRUE(press(u"Don’t Allow"_s));
    EXPECT_TRUE(hears(u"located-refused"_s, u"error 1"_s));
    open(server.url(u"located-silent"_s));
    EXPECT_TRUE(hears(u"located-silent"_s, u"error 1"_s)) << "nor is it asked again";

    choosePrivacy(u"reset"_s);
    open(server.url(u"located-granted"_s));
    EXPECT_TRUE(comes(QString::fromUtf8(locationQuestion)));
    choosePrivacy(u"grant"_s);
    EXPECT_TRUE(hears(u"located-granted"_s, u"5,6"_s));
    EXPECT_TRUE(goes(QString::fromUtf8(locationQuestion)));
}

} // namespace

} // namespace corvanta
