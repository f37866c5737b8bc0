// SPDX-License-Identifier: MIT
#include "support/JsonDecoder.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

/// The error that `read` throws.
template<typename Read>
JsonDecodingError errorOf(Read read) {
    try {
        (void)read();
    } catch (const JsonDecodingError& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return JsonDecodingError::malformed({});
}

TEST(JsonDecoder, RefusesWhatIsNotJSON) {
    const auto error = errorOf([] { return JsonDecoder::parse("No devices."); });
    EXPECT_TRUE(std::holds_alternative<JsonDecodingError::Malformed>(error.value()));
    EXPECT_TRUE(error.errorDescription().startsWith(u"The data is not valid JSON: "));
}

TEST(JsonDecoder, RefusesNoBytesAndHalfADocument) {
    EXPECT_THROW((void)JsonDecoder::parse(""), JsonDecodingError);
    EXPECT_THROW((void)JsonDecoder::parse("{\"a\": [1, 2"), JsonDecodingError);
}

TEST(JsonDecoder, RefusesATextThatIsNotUTF8) {
    EXPECT_THROW((void)JsonDecoder::parse("[\"A\xFF\"]"), JsonDecodingError);
}

TEST(JsonDecoder, ReadsEveryTypeAtItsPath) {
    const auto document =
        JsonDecoder::parse(R"({"name": "x\/y", "on": true, "ratio": 0.3, "list": [{"count": 12}], "at": 5.5})");
    EXPECT_EQ(document.member(u"name"_s).string(), u"x/y");
    EXPECT_TRUE(document.member(u"on"_s).boolean());
    EXPECT_EQ(document.member(u"ratio"_s).number(), 0.3);
    const JsonDecoder count = document.member(u"list"_s).elements().at(0).member(u"count"_s);
    EXPECT_EQ(count.integer(), 12);
    EXPECT_EQ(count.keyPath(), u"list[0].count");
    EXPECT_EQ(document.member(u"at"_s).date(), Date{5.5});
}

TEST(JsonDecoder, ListsMembersInTheOrderOfTheirKeys) {
    const auto members = JsonDecoder::parse(R"({"b": 2, "a": 1})").members();
    ASSERT_EQ(members.size(), 2U);
    EXPECT_EQ(members[0].first, u"a");
    EXPECT_EQ(members[1].second.integer(), 2);
}

TEST(JsonDecoder, NamesTheMissingKey) {
    const auto error = errorOf([] { return JsonDecoder::parse("[{}]").elements().at(0).member(u"udid"_s); });
    EXPECT_EQ(error, JsonDecodingError::keyNotFound(u"[0].udid"_s));
    EXPECT_EQ(error.errorDescription(), u"The key “[0].udid” is missing from the data.");
    EXPECT_EQ(error.recoverySuggestion(), std::nullopt);
}

TEST(JsonDecoder, NamesTheExpectedType) {
    const auto error =
        errorOf([] { return JsonDecoder::parse(R"({"a": {"b": 1}})").member(u"a"_s).member(u"b"_s).string(); });
    EXPECT_EQ(error, JsonDecodingError::typeMismatch(u"a.b"_s, u"a string"_s));
    EXPECT_EQ(error.errorDescription(), u"“a.b” is not a string.");
    EXPECT_EQ(errorOf([] { return JsonDecoder::parse("[]").member(u"a"_s); }).errorDescription(),
              u"The document is not an object.");
}

TEST(JsonDecoder, TakesNullAndAbsenceAsNothingWhereAValueIsOptional) {
    const auto document = JsonDecoder::parse(R"({"null": null, "text": ""})");
    EXPECT_FALSE(document.optionalMember(u"null"_s));
    EXPECT_FALSE(document.optionalMember(u"absent"_s));
    EXPECT_EQ(document.optionalMember(u"text"_s)->string(), u"");
}

TEST(JsonDecoder, RefusesNullWhereAValueIsRequired) {
    const auto document = JsonDecoder::parse(R"({"null": null})");
    EXPECT_THROW((void)document.member(u"null"_s).string(), JsonDecodingError);
    EXPECT_THROW((void)document.member(u"null"_s).number(), JsonDecodingError);
    EXPECT_THROW((void)document.member(u"null"_s).elements(), JsonDecodingError);
    EXPECT_THROW((void)document.member(u"null"_s).members(), JsonDecodingError);
}

TEST(JsonDecoder, TakesNoTypeForAnother) {
    const auto values = JsonDecoder::parse(R"(["1", 1, true, 1.5, [], {}])").elements();
    EXPECT_THROW((void)values[0].number(), JsonDecodingError);
    EXPECT_THROW((void)values[0].boolean(), JsonDecodingError);
    EXPECT_THROW((void)values[1].string(), JsonDecodingError);
    EXPECT_THROW((void)values[1].boolean(), JsonDecodingError);
    EXPECT_THROW((void)values[2].number(), JsonDecodingError);
    EXPECT_THROW((void)values[2].integer(), JsonDecodingError);
    EXPECT_THROW((void)values[3].integer(), JsonDecodingError);
    EXPECT_THROW((void)values[4].members(), JsonDecodingError);
    EXPECT_THROW((void)values[4].optionalMember(u"a"_s), JsonDecodingError);
    EXPECT_THROW((void)values[5].elements(), JsonDecodingError);
}

TEST(JsonDecoder, ReadsTheFirstElementsAlone) {
    const JsonDecoder list = JsonDecoder::parse("[1, 2, 3]");
    EXPECT_EQ(list.elements(0).size(), 0U);
    EXPECT_EQ(list.elements(2).size(), 2U);
    EXPECT_EQ(list.elements(2).at(1).integer(), 2);
    EXPECT_EQ(list.elements(4).size(), 3U);
    EXPECT_THROW((void)JsonDecoder::parse("{}").elements(0), JsonDecodingError);
}

TEST(JsonDecoder, RefusesIntegersBeyond64Bits) {
    EXPECT_THROW((void)JsonDecoder::parse("[1e30]").elements().at(0).integer(), JsonDecodingError);
    EXPECT_EQ(JsonDecoder::parse("[9223372036854775807]").elements().at(0).integer(), 9223372036854775807);
}

TEST(JsonDecoder, ReadsAUUIDInEitherCase) {
    const auto values =
        JsonDecoder::parse(R"(["E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "e621e1f8-c36c-495a-93fc-0c247a3e6e5f"])")
            .elements();
    EXPECT_EQ(values[0].uuid(), QUuid(u"E621E1F8-C36C-495A-93FC-0C247A3E6E5F"_s));
    EXPECT_EQ(values[1].uuid(), values[0].uuid());
}

TEST(JsonDecoder, RefusesWhatIsNotAUUID) {
    const auto values = JsonDecoder::parse(R"(["{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}", "E621E1F8", "", 7,
        "E621E1F8-C36C-495A-93FC-0C247A3E6E5G", "E621E1F8C36C-495A-93FC-0C247A3E6E5FAA"])")
                            .elements();
    for (const JsonDecoder& value : values)
        EXPECT_THROW((void)value.uuid(), JsonDecodingError) << value.keyPath().toStdString();
}

} // namespace
} // namespace corvanta
