// SPDX-License-Identifier: MIT
#include "FaultTable.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::Fault;
using testing::FaultMoment;
using testing::FaultTableRow;

/// A table with that row in it.
QString tableWith(const QString& row) {
    return u"Some words.\n\n| During | Fault | Phase | Status | Recovery |\n| --- | --- | --- | --- | --- |\n"_s + row;
}

TEST(FaultTableReading, ReadsARow) {
    const auto rows = testing::parseFaultTable(
        tableWith(u"| booting: open   | Safari gone | failed | {device} is gone. | none |\n\nMore words.\n"_s));
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].moment, FaultMoment::openSimulator);
    EXPECT_EQ(rows[0].fault, Fault::safariGone);
    EXPECT_EQ(rows[0].phase, WorkspacePhase::failed);
    EXPECT_EQ(rows[0].status, u"{device} is gone."_s);
    EXPECT_EQ(rows[0].recovery, std::nullopt);
    EXPECT_EQ(rows[0].line, 5);
    EXPECT_EQ(rows[0].testName(), "BootingOpenSafariGone");
}

TEST(FaultTableReading, GivesEachCellATestNameOfItsOwn) {
    std::set<std::string> names;
    FaultTableRow row;
    for (const FaultMoment moment : testing::allFaultMoments) {
        row.moment = moment;
        for (const Fault fault : testing::allFaults) {
            row.fault = fault;
            EXPECT_TRUE(names.insert(row.testName()).second) << row.testName();
        }
    }
}

TEST(FaultTableReading, SpreadsARowOfEveryMoment) {
    const auto rows = testing::parseFaultTable(
        tableWith(u"| every moment | display resized | as without | as without | as without |"_s));
    ASSERT_EQ(rows.size(), testing::allFaultMoments.size());
    for (const FaultTableRow& row : rows) {
        EXPECT_EQ(row.fault, Fault::displayResized);
        EXPECT_EQ(row.recovery, std::nullopt);
        EXPECT_EQ(row.line, 5);
    }
    EXPECT_EQ(rows.front().moment, FaultMoment::setupCheck);
    EXPECT_EQ(rows.front().phase, WorkspacePhase::idle);
    EXPECT_EQ(rows.front().status, u"Setup ready; looking for simulators"_s);
    EXPECT_EQ(rows.back().phase, WorkspacePhase::running);
    EXPECT_EQ(rows.back().status, u"Workspace running"_s);
}

TEST(FaultTableReading, TellsWhatIsOtherwiseOnLinux) {
    const auto rows = testing::parseFaultTable(tableWith(u"| running | Safari hung | running | A | none |\n"
                                                         "| running | Safari hung (on Linux) | failed | B | none |"_s));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_FALSE(rows[0].isOnLinux);
    EXPECT_EQ(rows[1].fault, Fault::safariHung);
    EXPECT_TRUE(rows[1].isOnLinux);
    EXPECT_EQ(rows[1].status, u"B"_s);
}

TEST(FaultTableReading, PutsEachValueInItsPlace) {
    const QHash<QString, QString> values{{u"page"_s, u"A {device}"_s}, {u"device"_s, u"B"_s}};
    EXPECT_EQ(testing::filledText(u"{page} on {device}."_s, values), u"A {device} on B."_s);
    EXPECT_THROW((void)testing::filledText(u"{pages}"_s, values), testing::FaultTableError);
}

TEST(FaultTableReading, MissesItsFile) {
    EXPECT_THROW((void)testing::readFaultTable(u"/nowhere/faults.md"_s), testing::FaultTableError);
}

struct DamagedTable {
    std::string name;
    QString text;
    std::string complaint;
};

void PrintTo(const DamagedTable& damaged, std::ostream* stream) {
    *stream << damaged.name;
}

class FaultTableDamage : public ::testing::TestWithParam<DamagedTable> {};

TEST_P(FaultTableDamage, IsRefusedWithItsLine) {
    try {
        (void)testing::parseFaultTable(GetParam().text);
        FAIL() << "not refused";
    } catch (const testing::FaultTableError& error) {
        EXPECT_EQ(std::string(error.what()), GetParam().complaint);
    }
}

const std::vector<DamagedTable> damagedTables{
    {"MissingColumn", tableWith(u"| running | Safari gone | running | Workspace running |"_s),
     "line 5: 4 columns instead of 5"},
    {"SurplusColumn", tableWith(u"| running | Safari gone | running | Workspace | running | none |"_s),
     "line 5: 6 columns instead of 5"},
    {"OpenRow", tableWith(u"| running | Safari gone | running | Workspace running | none"_s),
     "line 5: a row of a table begins and ends with a bar"},
    {"UnknownMoment", tableWith(u"| resting | Safari gone | running | Workspace running | none |"_s),
     "line 5: unknown name \"resting\""},
    {"UnknownFault", tableWith(u"| running | Safari odd | running | Workspace running | none |"_s),
     "line 5: unknown name \"Safari odd\""},
    {"UnknownPhase", tableWith(u"| running | Safari gone | Running | Workspace running | none |"_s),
     "line 5: unknown phase \"Running\""},
    {"EmptyStatus", tableWith(u"| running | Safari gone | running | | none |"_s), "line 5: a text is missing"},
    {"EmptyRecovery", tableWith(u"| running | Safari gone | running | Workspace running | |"_s),
     "line 5: a text is missing"},
    {"SameCellTwice",
     tableWith(u"| running | Safari gone | running | A | none |\n"
               "| running | Safari gone | running | A | none |"_s),
     "line 6: \"running\" × \"Safari gone\" has been there before"},
    {"EveryMomentOtherwise", tableWith(u"| every moment | Safari gone | running | Workspace running | none |"_s),
     "line 5: what is the same at every moment is \"as without\""},
    {"EveryMomentOnceMore",
     tableWith(u"| running | Safari gone | running | A | none |\n"
               "| every moment | Safari gone | as without | as without | as without |"_s),
     "line 6: \"running\" × \"Safari gone\" has been there before"},
    {"OtherHeader", u"| Fault | During | Phase | Status | Recovery |"_s,
     "line 1: a table begins with the header \"During | Fault | Phase | Status | Recovery\""},
    {"NoDashes", u"| During | Fault | Phase | Status | Recovery |\n| running | Safari gone | running | A | none |"_s,
     "line 2: dashes belong between the header and the rows"},
};

INSTANTIATE_TEST_SUITE_P(Tables, FaultTableDamage, ::testing::ValuesIn(damagedTables), testing::CaseName());

} // namespace

} // namespace corvanta
