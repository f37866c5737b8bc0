// SPDX-License-Identifier: MIT
#include "InspectorFrames.h"

#include "GlibPointers.h"

#include <gtest/gtest.h>

#include <random>

namespace corvanta::lab {

namespace {

GVariant* targetList(std::uint64_t connection, const InspectableTargets& targets, const char* type = "WebPage") {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(tsssb)"));
    for (const InspectableTarget& target : targets) {
        g_variant_builder_add(&builder, "(tsssb)", target.identifier.target, type, target.name.c_str(),
                              target.url.c_str(), FALSE);
    }
    return g_variant_new("(ta(tsssb))", connection, &builder);
}

std::vector<std::byte> bytes(std::initializer_list<int> values) {
    std::vector<std::byte> result;
    for (const int value : values)
        result.push_back(static_cast<std::byte>(value));
    return result;
}

const InspectableTargets twoPages{{{7, 1}, "First", "http://one.test/"}, {{7, 2}, "", "about:blank"}};

} // namespace

TEST(InspectorFrames, StartWithTheBodySizeAndTheByteOrder) {
    const auto frame = encodeInspectorFrame("Hi", nullptr);

    EXPECT_EQ(frame, bytes({0, 0, 0, 3, G_BYTE_ORDER == G_LITTLE_ENDIAN ? 1 : 0, 'H', 'i', 0}));
}

TEST(InspectorFrames, CarryATargetListThere) {
    InspectorFrameReader reader;
    reader.append(encodeInspectorFrame("SetTargetList", targetList(7, twoPages)));

    const auto frame = reader.next();
    ASSERT_TRUE(frame);
    const auto list = decodeTargetList(*frame);

    ASSERT_TRUE(list);
    EXPECT_EQ(list->connection, 7U);
    EXPECT_EQ(list->targets, twoPages);
    EXPECT_FALSE(reader.next());
}

TEST(InspectorFrames, AreReadByteByByte) {
    const auto first = encodeInspectorFrame("DidSetupInspectorClient", g_variant_new("(^ay)", "commands"));
    const auto second = encodeInspectorFrame("SetTargetList", targetList(7, twoPages));
    InspectorFrameReader reader;
    std::vector<std::string> names;

    for (const auto& frame : {first, second}) {
        for (const std::byte byte : frame) {
            reader.append(std::span(&byte, 1));
            while (const auto complete = reader.next())
                names.push_back(complete->name);
        }
    }

    EXPECT_EQ(names, (std::vector<std::string>{"DidSetupInspectorClient", "SetTargetList"}));
}

TEST(InspectorFrames, AreReadInTheSendersByteOrder) {
    const GlibPointer<GVariant> value(g_variant_ref_sink(targetList(7, twoPages)));
    GVariant* const swapped = g_variant_byteswap(value.get());
    auto bytesOfFrame = encodeInspectorFrame("SetTargetList", swapped);
    g_variant_unref(swapped);
    bytesOfFrame[4] ^= std::byte{1};
    InspectorFrameReader reader;
    reader.append(bytesOfFrame);

    const auto list = decodeTargetList(reader.next().value());

    ASSERT_TRUE(list);
    EXPECT_EQ(list->targets, twoPages);
}

TEST(InspectorFrames, ListTargetsInTheOrderOfOpening) {
    InspectorFrameReader reader;
    reader.append(encodeInspectorFrame("SetTargetList", targetList(7, {{{7, 10}, "", "b"}, {{7, 9}, "", "a"}})));

    const auto pages = decodeTargetList(reader.next().value());

    ASSERT_TRUE(pages);
    EXPECT_EQ(pages->targets, (InspectableTargets{{{7, 9}, "", "a"}, {{7, 10}, "", "b"}}));
}

TEST(InspectorFrames, TellTheKindOfEachTarget) {
    const auto kindOf = [](const char* type, const char* url) {
        InspectorFrameReader reader;
        reader.append(encodeInspectorFrame("SetTargetList", targetList(7, {{{7, 1}, "", url}}, type)));
        const auto list = decodeTargetList(reader.next().value());
        return list && !list->targets.empty() ? std::optional(list->targets.front().kind) : std::nullopt;
    };
    EXPECT_EQ(kindOf("WebPage", "https://apple.test/"), TargetKind::page);
    EXPECT_EQ(kindOf("WebPage", "safari-web-extension://1/background.html"), TargetKind::extensionPage);
    EXPECT_EQ(kindOf("ServiceWorker", "https://apple.test/"), TargetKind::serviceWorker);
    EXPECT_EQ(kindOf("JavaScript", "null"), TargetKind::javaScriptContext);
    EXPECT_EQ(kindOf("ITML", "https://apple.test/"), std::nullopt);
}

TEST(InspectorFrames, HoldAMessage) {
    InspectorFrameReader reader;
    const std::uint64_t number = 7;
    reader.append(encodeInspectorFrame("SendMessageToBackend", g_variant_new("(tts)", number, number, R"({"id":1})")));
    reader.append(encodeInspectorFrame("Setup", g_variant_new("(tt)", number, number)));

    const InspectorFrame message = reader.next().value();
    EXPECT_EQ(frameMessage(message), R"({"id":1})");
    EXPECT_EQ(frameMessage(reader.next().value()), std::nullopt);
    EXPECT_EQ(frameMessage({.name = "SendMessageToBackend", .parameters = bytes({1, 2, 3})}), std::nullopt);
}

TEST(InspectorFrames, OfOtherNamesAreNoTargetList) {
    EXPECT_FALSE(decodeTargetList({.name = "DidSetupInspectorClient", .parameters = {}}));
}

TEST(InspectorFrames, WithDamagedParametersAreNoTargetList) {
    EXPECT_FALSE(decodeTargetList({.name = "SetTargetList", .parameters = bytes({1, 2, 3})}));
}

TEST(InspectorFrameReader, RefusesAnEmptyBody) {
    InspectorFrameReader reader;
    reader.append(bytes({0, 0, 0, 0, 1}));

    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isMalformed());
}

TEST(InspectorFrameReader, RefusesABodyBeyondAllReason) {
    InspectorFrameReader reader;
    reader.append(bytes({8, 0, 0, 1, 1}));

    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isMalformed());
}

TEST(InspectorFrameReader, WaitsForTheLargestBody) {
    InspectorFrameReader reader;
    reader.append(bytes({8, 0, 0, 0, 1}));

    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.isMalformed());
}

TEST(InspectorFrameReader, RefusesANameWithoutAnEnd) {
    InspectorFrameReader reader;
    reader.append(bytes({0, 0, 0, 2, 1, 'H', 'i'}));

    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isMalformed());
}

TEST(InspectorFrameReader, SurvivesEveryDamageToAList) {
    const auto sound = encodeInspectorFrame("SetTargetList", targetList(7, twoPages));
    std::mt19937 random(20250601); // NOLINT(*-msc51-cpp): the same damage in every run
    for (int round = 0; round < 20000; ++round) {
        auto damaged = sound;
        for (unsigned hits = 1 + random() % 4; hits > 0; --hits)
            damaged[5 + random() % (damaged.size() - 5)] = static_cast<std::byte>(random());
        damaged.resize(random() % 3 == 0 ? random() % damaged.size() : damaged.size());
        InspectorFrameReader reader;
        reader.append(damaged);
        while (const auto frame = reader.next()) {
            if (const auto list = decodeTargetList(*frame))
                EXPECT_LE(list->targets.size(), damaged.size());
        }
    }
}

} // namespace corvanta::lab
