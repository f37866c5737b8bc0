// SPDX-License-Identifier: MIT
#pragma once

#include "Doubles.h"
#include "TaskWaiting.h"
#include "support/Clock.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace corvanta {

/// A test of the layer on the doubles, after which every object has been given back.
class MacLayerTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

private:
    void* m_pool = nullptr;
    std::map<std::string, long> m_living;
    long m_references = 0;
};

/// A clock that is advanced by hand.
class HandClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override { return m_now; }

    [[nodiscard]] QCoro::Task<SleepResult> sleepFor(Duration, CancellationToken) override {
        co_return SleepResult::elapsed;
    }

    [[nodiscard]] Date wallClockNow() const override { return {}; }

    [[nodiscard]] QUuid freshUUID() override { return {}; }

    void advance(Duration duration) { m_now += duration; }

private:
    TimePoint m_now;
};

} // namespace corvanta
