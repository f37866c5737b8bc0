// SPDX-License-Identifier: MIT
#include "SettingsPreferencesStore.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

class SettingsPreferences : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"settings.ini"_s);
};

TEST_F(SettingsPreferences, KeepsBytesAcrossRuns) {
    constexpr char bytes[] = "{\"pageURL\":\"http:\\/\\/localhost:3000\",\"x\":\"ü – \\\"\"}\0\xff\n%1,;";
    const QByteArray value(bytes, sizeof bytes - 1);
    {
        SettingsPreferencesStore store(path);
        store.setData(u"workspaceProfile"_s, value);
    }
    EXPECT_EQ(SettingsPreferencesStore(path).data(u"workspaceProfile"_s), value);
}

TEST_F(SettingsPreferences, IsWrittenAtOnce) {
    SettingsPreferencesStore store(path);
    store.setData(u"favoriteLocations"_s, "[]");
    EXPECT_EQ(SettingsPreferencesStore(path).data(u"favoriteLocations"_s), QByteArray("[]"));
}

TEST_F(SettingsPreferences, IsForItsUserAlone) {
    SettingsPreferencesStore store(path);
    for (const char* const value : {"first", "second"}) {
        store.setData(u"workspaceProfile"_s, value);
        EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
                  QFile::ReadOwner | QFile::WriteOwner);
    }
}

TEST_F(SettingsPreferences, ReplacesAnEarlierValue) {
    SettingsPreferencesStore store(path);
    store.setData(u"key"_s, "first");
    store.setData(u"key"_s, "");
    EXPECT_EQ(store.data(u"key"_s), QByteArray(""));
    EXPECT_EQ(SettingsPreferencesStore(path).data(u"key"_s), QByteArray(""));
}

TEST_F(SettingsPreferences, HasNothingUnderAnUnknownKey) {
    EXPECT_FALSE(SettingsPreferencesStore(path).data(u"key"_s));
}

TEST_F(SettingsPreferences, ReadsValuesOfAnotherTypeAsAbsent) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\ntext=abc\nnumber=5\nlist=a, b\nbytes=@ByteArray(abc)\n");
    file.close();
    const SettingsPreferencesStore store(path);
    EXPECT_FALSE(store.data(u"text"_s));
    EXPECT_FALSE(store.data(u"number"_s));
    EXPECT_FALSE(store.data(u"list"_s));
    EXPECT_EQ(store.data(u"bytes"_s), QByteArray("abc"));
}

} // namespace
} // namespace corvanta
