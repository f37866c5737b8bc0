// SPDX-License-Identifier: MIT
#include "LabFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

class LabFolderTest : public ::testing::Test {
protected:
    void write(const QString& path, const QByteArray& text) {
        QDir(folder.path()).mkpath(path.section(u'/', 0, -2));
        QFile file(folder.filePath(path));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QTemporaryDir folder;
    LabFolder lab{folder.filePath(u"programs"_s), folder.filePath(u"home"_s)};
};

TEST_F(LabFolderTest, NamesItsPrograms) {
    EXPECT_EQ(lab.program(u"xcrun"_s), folder.filePath(u"programs/xcrun"_s));
    EXPECT_EQ(lab.shared(u"help/a.html"_s), folder.filePath(u"programs/share/help/a.html"_s));
}

TEST_F(LabFolderTest, ReadsTheShippedSystemWhereTheUserHasNone) {
    write(u"programs/share/system.json"_s, R"({"macOS": "15.5", "xcode": null})");
    EXPECT_EQ(lab.operatingSystemVersion(), (OperatingSystemVersion{15, 5}));
}

TEST_F(LabFolderTest, PrefersTheUsersOwnSystem) {
    write(u"programs/share/system.json"_s, R"({"macOS": "15.5"})");
    write(u"home/system.json"_s, R"({"macOS": "14.7.1"})");
    EXPECT_EQ(lab.operatingSystemVersion(), (OperatingSystemVersion{14, 7}));
}

TEST_F(LabFolderTest, PassesOverASystemThatCannotBeRead) {
    write(u"programs/share/system.json"_s, R"({"macOS": "15"})");
    for (const char* const text : {"", "[]", R"({"macOS": 14})", R"({"macOS": "Sequoia"})"}) {
        write(u"home/system.json"_s, text);
        EXPECT_EQ(lab.operatingSystemVersion(), (OperatingSystemVersion{15, 0})) << text;
    }
}

TEST_F(LabFolderTest, KnowsNoSystemWithoutAnyFile) {
    EXPECT_EQ(lab.operatingSystemVersion(), (OperatingSystemVersion{0, 0}));
}

TEST(LabFolder, IsWhereTheEnvironmentSays) {
    qputenv("CORVANTA_LAB_DIR", "/somewhere/lab");
    EXPECT_EQ(LabFolder().program(u"open"_s), u"/somewhere/lab/open"_s);
    qunsetenv("CORVANTA_LAB_DIR");
    EXPECT_TRUE(LabFolder().program(u"open"_s).endsWith(u"/libexec/corvanta-lab/open"_s));
}

} // namespace
} // namespace corvanta
