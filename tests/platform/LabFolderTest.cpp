// SPDX-License-Identifier: MIT
#include "LabFolder.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>

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

TEST_F(LabFolderTest, ReadsTheSystemWhereTheLabsProgramsDo) {
    const std::array names{"CORVANTA_LAB_HOME", "XDG_DATA_HOME", "HOME"};
    std::array<QByteArray, 3> saved;
    std::ranges::transform(names, saved.begin(), [](const char* name) { return qgetenv(name); });
    const auto restore = qScopeGuard([&] {
        for (std::size_t index = 0; index < names.size(); ++index)
            saved[index].isNull() ? qunsetenv(names[index]) : qputenv(names[index], saved[index]);
    });
    write(u".local/share/corvanta-lab/system.json"_s, R"({"macOS": "13.1"})");
    write(u"data/corvanta-lab/system.json"_s, R"({"macOS": "13.2"})");
    write(u"own/system.json"_s, R"({"macOS": "13.3"})");
    qputenv("HOME", folder.path().toUtf8());
    qunsetenv("CORVANTA_LAB_HOME");
    qputenv("XDG_DATA_HOME", "data");
    EXPECT_EQ(LabFolder().operatingSystemVersion(), (OperatingSystemVersion{13, 1})) << "relative is none";
    qputenv("XDG_DATA_HOME", folder.filePath(u"data"_s).toUtf8());
    EXPECT_EQ(LabFolder().operatingSystemVersion(), (OperatingSystemVersion{13, 2}));
    qputenv("CORVANTA_LAB_HOME", folder.filePath(u"own"_s).toUtf8());
    EXPECT_EQ(LabFolder().operatingSystemVersion(), (OperatingSystemVersion{13, 3}));
}

} // namespace
} // namespace corvanta
