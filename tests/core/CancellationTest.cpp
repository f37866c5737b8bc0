// SPDX-License-Identifier: MIT
#include "support/Cancellation.h"

#include <gtest/gtest.h>

#include <optional>

namespace corvanta {
namespace {

TEST(CancellationToken, IsNeverCancelledWithoutASource) {
    const CancellationToken token;
    int calls = 0;
    const auto registration = token.onCancel([&calls] { ++calls; });
    EXPECT_FALSE(token.isCancelled());
    EXPECT_EQ(calls, 0);
}

TEST(CancellationToken, LearnsOfTheCancellationThroughEveryCopy) {
    CancellationSource source;
    const CancellationToken token = source.token();
    const CancellationToken copy = token;
    EXPECT_FALSE(copy.isCancelled());
    source.cancel();
    EXPECT_TRUE(token.isCancelled());
    EXPECT_TRUE(copy.isCancelled());
    EXPECT_TRUE(source.token().isCancelled());
}

TEST(CancellationToken, CallsBackOnceFromInsideTheCancellingCall) {
    CancellationSource source;
    int calls = 0;
    const auto registration = source.token().onCancel([&calls] { ++calls; });
    EXPECT_EQ(calls, 0);
    source.cancel();
    EXPECT_EQ(calls, 1);
    source.cancel();
    EXPECT_EQ(calls, 1);
}

TEST(CancellationToken, CallsBackAtOnceWhenItIsCancelledAlready) {
    CancellationSource source;
    source.cancel();
    int calls = 0;
    const auto registration = source.token().onCancel([&calls] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(CancellationToken, ForgetsACallbackWithItsRegistration) {
    CancellationSource source;
    int calls = 0;
    {
        const auto registration = source.token().onCancel([&calls] { ++calls; });
    }
    source.cancel();
    EXPECT_EQ(calls, 0);
}

TEST(CancellationToken, KeepsACallbackWhoseRegistrationWasMoved) {
    CancellationSource source;
    int calls = 0;
    CancellationToken::Registration kept;
    {
        auto registration = source.token().onCancel([&calls] { ++calls; });
        kept = std::move(registration);
    }
    source.cancel();
    EXPECT_EQ(calls, 1);
}

TEST(CancellationSource, DoesNotCancelWhenItIsDestroyed) {
    std::optional<CancellationSource> source(std::in_place);
    const CancellationToken token = source->token();
    int calls = 0;
    const auto registration = token.onCancel([&calls] { ++calls; });
    source.reset();
    EXPECT_FALSE(token.isCancelled());
    EXPECT_EQ(calls, 0);
}

TEST(CancellationSource, MayBeDestroyedByACallback) {
    std::optional<CancellationSource> source(std::in_place);
    const CancellationToken token = source->token();
    int laterCalls = 0;
    const auto first = token.onCancel([&source] { source.reset(); });
    const auto second = token.onCancel([&laterCalls] { ++laterCalls; });
    source->cancel();
    EXPECT_EQ(laterCalls, 1);
    EXPECT_TRUE(token.isCancelled());
}

TEST(CancellationSource, SkipsACallbackThatAnEarlierOneUnregisters) {
    CancellationSource source;
    int calls = 0;
    std::optional<CancellationToken::Registration> second;
    const auto first = source.token().onCancel([&second] { second.reset(); });
    second = source.token().onCancel([&calls] { ++calls; });
    source.cancel();
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace corvanta
