// SPDX-License-Identifier: MIT
#include "places/GazetteerFile.h"

#include "GazetteerBuilder.h"
#include "places/Gazetteer.h"
#include "places/GazetteerError.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::GazetteerBuilder;
using testing::GazetteerOnDisk;

GazetteerBuilder builder() {
    std::vector<GazetteerBuilder::Place> places{
        {u"Munich"_s,
         1'260'391,
         {48.13743, 11.57549},
         u"Bavaria"_s,
         u"Germany"_s,
         {u"munchen"_s, u"monaco di baviera"_s}},
        {u"São Paulo"_s, 12'400'232, {-23.5475, -46.63611}, u"São Paulo"_s, u"Brazil"_s}};
    for (std::uint32_t number = 0; number < 200; ++number)
        places.push_back({u"Place of %1"_s.arg(number), number, {1, 2}, u"Region"_s, u"Country"_s});
    return GazetteerBuilder(places);
}

/// Why those bytes are refused; empty when they are not.
QString refusal(const QByteArray& bytes) {
    const GazetteerOnDisk disk(bytes);
    try {
        const GazetteerFile file(disk.path());
    } catch (const GazetteerError& error) {
        EXPECT_EQ(error.kind(), GazetteerError::Kind::damaged);
        EXPECT_EQ(error.errorDescription(), u"The list of places is damaged: "_s + error.detail());
        return error.detail();
    }
    return {};
}

/// Asks everything of a file that may say anything.
void askEverything(const QByteArray& bytes) {
    const GazetteerOnDisk disk(bytes);
    try {
        const Gazetteer gazetteer(disk.path());
        for (const QString& text :
             {u"m"_s, u"munchen"_s, u"place of 1"_s, u"of place"_s, u"monaco bav"_s, u"são"_s, u"?"_s, u"zzz"_s})
            for (const PlaceIndex index : gazetteer.search(text, 20))
                EXPECT_LT(index, gazetteer.count());
        for (PlaceIndex index = 0; index < gazetteer.count(); ++index)
            EXPECT_LE(gazetteer.place(index).name.size(), static_cast<qsizetype>(GazetteerFile::longestText) + 8);
        gazetteer.visitPlaces({}, 0, 1000, [](PlaceIndex, Coordinate) { return true; });
    } catch (const GazetteerError& error) {
        EXPECT_FALSE(error.detail().isEmpty());
    }
}

TEST(GazetteerFile, IsOpenedWhenItIsWhole) {
    EXPECT_EQ(refusal(builder().file()), u"");
}

TEST(GazetteerFile, IsUnreadableWhenItIsAbsent) {
    try {
        const GazetteerFile file(u"/nonexistent/places.gazetteer"_s);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const GazetteerError& error) {
        EXPECT_EQ(error.kind(), GazetteerError::Kind::unreadable);
        EXPECT_EQ(error.errorDescription(), u"The list of places could not be read: No such file or directory");
        EXPECT_EQ(error.recoverySuggestion(), std::nullopt);
    }
}

TEST(GazetteerFile, IsUnreadableWhenItIsAFolder) {
    const QTemporaryDir folder;
    EXPECT_THROW(const GazetteerFile file(folder.path()), GazetteerError);
}

struct DamageCase {
    const char* name;
    std::function<void(QByteArray&)> damage;
    QString refusal;
};

void PrintTo(const DamageCase& value, std::ostream* stream) {
    *stream << value.name;
}

class GazetteerDamage : public ::testing::TestWithParam<DamageCase> {};

TEST_P(GazetteerDamage, IsRefused) {
    QByteArray bytes = builder().file();
    GetParam().damage(bytes);
    EXPECT_EQ(refusal(bytes), GetParam().refusal);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GazetteerDamage,
    ::testing::Values(DamageCase{"empty", [](QByteArray& bytes) { bytes.clear(); }, u"it is too short"_s},
                      DamageCase{"header", [](QByteArray& bytes) { bytes.truncate(32); }, u"it is too short"_s},
                      DamageCase{"kind", [](QByteArray& bytes) { bytes[0] = 'c'; }, u"it is a file of another kind"_s},
                      DamageCase{"version", [](QByteArray& bytes) { bytes[8] = 2; }, u"it has another version"_s},
                      DamageCase{"sections", [](QByteArray& bytes) { bytes[12] = 14; },
                                 u"it has another number of sections"_s},
                      DamageCase{"cutOff", [](QByteArray& bytes) { bytes.chop(8); }, u"it is not whole"_s},
                      DamageCase{"longer", [](QByteArray& bytes) { bytes.append(8, 0); }, u"it is not whole"_s},
                      DamageCase{"oneBit",
                                 [](QByteArray& bytes) {
                                     char& byte = bytes[bytes.size() / 2];
                                     byte = static_cast<char>(byte ^ 0x10);
                                 },
                                 u"its checksum is wrong"_s},
                      DamageCase{"checksum", [](QByteArray& bytes) { bytes[24] = static_cast<char>(bytes[24] + 1); },
                                 u"its checksum is wrong"_s}),
    [](const auto& info) { return std::string(info.param.name); });

struct SpoiltCase {
    const char* name;
    std::size_t section;
    QByteArray bytes;
    QString refusal;
};

void PrintTo(const SpoiltCase& value, std::ostream* stream) {
    *stream << value.name;
}

class GazetteerSpoilt : public ::testing::TestWithParam<SpoiltCase> {};

TEST_P(GazetteerSpoilt, IsRefusedInSpiteOfItsChecksum) {
    GazetteerBuilder spoilt = builder();
    spoilt.sections.at(GetParam().section) = GetParam().bytes;
    EXPECT_EQ(refusal(spoilt.file()), GetParam().refusal);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GazetteerSpoilt,
    ::testing::Values(SpoiltCase{"positions", 0, QByteArray(12, 0), u"the positions are not whole"_s},
                      SpoiltCase{"morePositions", 0, QByteArray(8 * 1000, 0), u"the populations are not whole"_s},
                      SpoiltCase{"tooManyPositions", 0, QByteArray(8 * 300'000, 0), u"the positions are not whole"_s},
                      SpoiltCase{"populations", 1, QByteArray(), u"the populations are not whole"_s},
                      SpoiltCase{"names", 3, QByteArray(4, 0), u"the names are not whole"_s},
                      SpoiltCase{"symbols", 5, QByteArray(9, 1), u"a table of symbols has another size"_s},
                      SpoiltCase{"emptySymbol", 5, QByteArray(2295, 0), u"a symbol has no length that there is"_s},
                      SpoiltCase{"longSymbol", 6, QByteArray(2295, 9), u"a symbol has no length that there is"_s},
                      SpoiltCase{"words", 7, QByteArray(4, 0), u"the index of words is not whole"_s},
                      SpoiltCase{"wordBlocks", 8, QByteArray(), u"the index of words is not whole"_s},
                      SpoiltCase{"wordHeads", 9, QByteArray(8, 0), u"the index of words is not whole"_s},
                      SpoiltCase{"regions", 10, QByteArray(13, 0), u"the regions are not whole"_s},
                      SpoiltCase{"countries", 11, QByteArray(7, 0), u"the countries are not whole"_s},
                      SpoiltCase{"folding", 14, QByteArray(15, 0), u"the folding is not whole"_s}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GazetteerFile, RefusesASectionThatIsOutsideOfIt) {
    for (const qsizetype at : {32, 36, 60}) {
        QByteArray bytes = builder().file();
        bytes[at + 3] = 0x7F;
        testing::mendChecksum(bytes);
        EXPECT_EQ(refusal(bytes), u"a section is outside of it") << at;
    }
}

TEST(GazetteerFile, IsNeverReadBeyondItsEnd) {
    // Each section in turn full of ones, or empty where that is let pass: offsets, lengths and numbers of all kinds.
    for (std::size_t section = 0; section < builder().sections.size(); ++section) {
        GazetteerBuilder spoilt = builder();
        spoilt.sections[section].fill('\xFF');
        askEverything(spoilt.file());
        spoilt.sections[section].clear();
        askEverything(spoilt.file());
    }
}

TEST(GazetteerFile, SurvivesAnyBytesThatHaveAGoodChecksum) {
    const QByteArray whole = builder().file();
    std::mt19937 random(20'231'121);
    for (int round = 0; round < 400; ++round) {
        QByteArray bytes = whole;
        for (int change = 0; change < 1 + round % 40; ++change)
            bytes[static_cast<qsizetype>(random() % static_cast<std::size_t>(bytes.size()))] =
                static_cast<char>(random());
        testing::mendChecksum(bytes);
        askEverything(bytes);
    }
}

} // namespace
} // namespace corvanta
