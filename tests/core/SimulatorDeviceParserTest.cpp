// SPDX-License-Identifier: MIT
#include "simulator/SimulatorDeviceParser.h"

#include "Printing.h"
#include "support/JsonDecoder.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr const char* iOS = "com.apple.CoreSimulator.SimRuntime.iOS-18-2";

QByteArray record(const QByteArray& udid, const QByteArray& name, const QByteArray& more = {}) {
    return R"({"udid":")" + udid + R"(","name":")" + name + R"(","state":"Shutdown")" + more + "}";
}

QByteArray booted(const QByteArray& udid, const QByteArray& name) {
    return R"({"udid":")" + udid + R"(","name":")" + name + R"(","state":"Booted"})";
}

QByteArray runtime(const QByteArray& identifier, const QByteArrayList& records) {
    return "\"" + identifier + "\":[" + records.join(',') + "]";
}

QByteArray document(const QByteArrayList& runtimes) {
    return R"({"devices":{)" + runtimes.join(',') + "}}";
}

QStringList udids(const QByteArray& output) {
    QStringList result;
    for (const SimulatorDevice& device : SimulatorDeviceParser::availableIOSDevices(output))
        result.append(device.udid);
    return result;
}

TEST(SimulatorDeviceParser, TakesEveryFieldOfARecord) {
    const auto devices = SimulatorDeviceParser::availableIOSDevices(document({runtime(
        iOS, {record("A", "iPhone", R"(,"deviceTypeIdentifier":"type","isAvailable":true,"logPath":"\/l")")})}));
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0],
              (SimulatorDevice{u"A"_s, u"iPhone"_s, u"Shutdown"_s, QString::fromLatin1(iOS), u"type"_s, true}));
}

TEST(SimulatorDeviceParser, ListsADeviceWithoutAvailabilityButNotOneThatIsUnavailable) {
    const QByteArray output = document({runtime(iOS, {record("A", "a"), record("B", "b", R"(,"isAvailable":false)"),
                                                      record("C", "c", R"(,"isAvailable":null)")})});
    EXPECT_EQ(udids(output), (QStringList{u"A"_s, u"C"_s}));
}

TEST(SimulatorDeviceParser, LeavesDevicesOfOtherSystemsOut) {
    const QByteArray output = document({runtime("com.apple.CoreSimulator.SimRuntime.watchOS-11-0", {record("W", "w")}),
                                        runtime("com.apple.CoreSimulator.SimRuntime.tvOS-18-0", {record("T", "t")}),
                                        runtime("com.apple.CoreSimulator.SimRuntime.xrOS-2-0", {record("X", "x")}),
                                        runtime("com.apple.coresimulator.simruntime.ios-1", {record("L", "l")}),
                                        runtime("my.CoreSimulator.SimRuntime.iOSx", {record("I", "i")})});
    EXPECT_EQ(udids(output), QStringList{u"I"_s});
}

TEST(SimulatorDeviceParser, SortsNamesByTheirNumbersAndWithoutRegardToCase) {
    const QByteArray output = document({runtime(iOS, {record("10", "iPhone 10"), record("9", "iphone 9"),
                                                      record("air", "iPad Air"), record("11", "IPHONE 11")})});
    EXPECT_EQ(udids(output), (QStringList{u"air"_s, u"9"_s, u"10"_s, u"11"_s}));
}

TEST(SimulatorDeviceParser, PutsBootedDevicesFirst) {
    const QByteArray output =
        document({runtime(iOS, {record("a", "a"), booted("z", "z"), record("b", "b"), booted("y", "y")})});
    EXPECT_EQ(udids(output), (QStringList{u"y"_s, u"z"_s, u"a"_s, u"b"_s}));
}

TEST(SimulatorDeviceParser, PutsTheNewerRuntimeOfOneNameFirst) {
    const QByteArray output =
        document({runtime("com.apple.CoreSimulator.SimRuntime.iOS-17-5", {record("17", "iPhone")}),
                  runtime("com.apple.CoreSimulator.SimRuntime.iOS-18-2", {record("18", "iPhone")})});
    EXPECT_EQ(udids(output), (QStringList{u"18"_s, u"17"_s}));
}

TEST(SimulatorDeviceParser, PutsTheOlderRuntimeFirstWhenItsDeviceIsBooted) {
    const QByteArray output =
        document({runtime("com.apple.CoreSimulator.SimRuntime.iOS-17-5", {booted("17", "iPhone")}),
                  runtime("com.apple.CoreSimulator.SimRuntime.iOS-18-2", {record("18", "iPhone")})});
    EXPECT_EQ(udids(output), (QStringList{u"17"_s, u"18"_s}));
}

TEST(SimulatorDeviceParser, ComparesRuntimesAsPlainText) {
    const QByteArray output =
        document({runtime("com.apple.CoreSimulator.SimRuntime.iOS-9-3", {record("9", "iPhone")}),
                  runtime("com.apple.CoreSimulator.SimRuntime.iOS-18-2", {record("18", "iPhone")})});
    EXPECT_EQ(udids(output), (QStringList{u"9"_s, u"18"_s}));
}

TEST(SimulatorDeviceParser, KeepsTheOrderOfEqualDevices) {
    const QByteArray output =
        document({runtime(iOS, {record("1", "iPhone"), record("2", "IPHONE"), record("3", "iPhone")})});
    EXPECT_EQ(udids(output), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
}

TEST(SimulatorDeviceParser, ListsNothingForNoDevices) {
    EXPECT_EQ(udids(document({})), QStringList());
    EXPECT_EQ(udids(document({runtime(iOS, {})})), QStringList());
}

TEST(SimulatorDeviceParser, KeepsTheRuntimeKeyUnchanged) {
    const auto devices = SimulatorDeviceParser::availableIOSDevices(
        document({runtime(iOS, {record("A", "a", R"(,"runtimeIdentifier":"other")")})}));
    EXPECT_EQ(devices.at(0).runtimeIdentifier, QString::fromLatin1(iOS));
}

TEST(SimulatorDeviceParser, FailsWithoutTheDevicesKey) {
    EXPECT_THROW((void)SimulatorDeviceParser::availableIOSDevices("{}"), JsonDecodingError);
}

TEST(SimulatorDeviceParser, FailsForADocumentOfAnotherShape) {
    for (const QByteArray& output :
         {QByteArray(), QByteArray("Devices"), QByteArray("[]"), QByteArray(R"({"devices":[]})"),
          QByteArray(R"({"devices":null})"), QByteArray(R"({"devices":{"r":{}}})"),
          document({runtime(iOS, {R"({"name":"n","state":"s"})"})}),
          document({runtime(iOS, {R"({"udid":"u","state":"s"})"})}),
          document({runtime(iOS, {R"({"udid":"u","name":"n"})"})}),
          document({runtime(iOS, {R"({"udid":1,"name":"n","state":"s"})"})}),
          document({runtime(iOS, {record("A", "a", R"(,"isAvailable":"YES")")})}),
          document({runtime("watchOS", {R"({"udid":"u"})"})})}) {
        EXPECT_THROW((void)SimulatorDeviceParser::availableIOSDevices(output), JsonDecodingError)
            << output.toStdString();
    }
}

TEST(SimulatorDeviceParser, ReadsTextsHoweverTheyAreWritten) {
    const auto devices = SimulatorDeviceParser::availableIOSDevices(
        document({runtime(iOS, {record("A", R"(Xʀ \"one\" \/ \\ \t)"), record("B", R"(\u0058\u0280 two)"),
                                R"({"ud\u0069d":"C","name":"c","state":"Shutdown"})"})}));
    QStringList names;
    for (const SimulatorDevice& device : devices)
        names.append(device.udid + u':' + device.name);
    EXPECT_EQ(names, (QStringList{u"C:c"_s, u"A:Xʀ \"one\" / \\ \t"_s, u"B:Xʀ two"_s}));
}

TEST(SimulatorDeviceParser, PassesOverWhatNobodyAsksFor) {
    EXPECT_EQ(udids(R"( {"version": [1, -2.5, 1e3, {"a": {"b": [[]]}}, null], "devices": {"r": []}, "x": "é"} )"),
              QStringList());
    EXPECT_EQ(
        udids(document({runtime(iOS, {record("A", "a", R"(,"sizes":[0,{"x":1.25}],"on":true,"path":"\/a\/b")")})})),
        QStringList{u"A"_s});
}

TEST(SimulatorDeviceParser, TakesTheLastOfValuesUnderOneKey) {
    EXPECT_EQ(udids(document({runtime(iOS, {record("A", "a", R"(,"udid":"B")")})})), QStringList{u"B"_s});
    EXPECT_EQ(udids(document({runtime(iOS, {record("A", "a")}), runtime(iOS, {record("B", "b")})})),
              QStringList{u"B"_s});
}

TEST(SimulatorDeviceParser, FailsForBytesThatAreNoTextWhereverTheyStand) {
    for (const QByteArray& output :
         {document({runtime(iOS, {record("A", "\xFF")})}),
          document({runtime(iOS, {record("A", "a", ",\"p\":\"\xC3\"")})}),
          document({runtime("watchOS", {record("\xED\xA0\x80", "a")})}), QByteArray("{\"\xFE\":1,\"devices\":{}}")}) {
        EXPECT_THROW((void)SimulatorDeviceParser::availableIOSDevices(output), JsonDecodingError)
            << output.toStdString();
    }
}

TEST(SimulatorDeviceParser, FailsForADocumentThatIsCutOffAnywhere) {
    const QByteArray whole =
        document({runtime(iOS, {record("A", "a", R"(,"isAvailable":true,"n":[1.5,{"k":null}])")})});
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_THROW((void)SimulatorDeviceParser::availableIOSDevices(whole.first(length)), JsonDecodingError)
            << length;
    EXPECT_THROW((void)SimulatorDeviceParser::availableIOSDevices(whole + '}'), JsonDecodingError);
}

} // namespace
} // namespace corvanta
