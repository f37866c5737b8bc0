// SPDX-License-Identifier: MIT
#include "workspace/WorkspaceStateMachine.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace corvanta {
namespace {

using enum WorkspacePhase;

/// A machine that was led to `phase` by allowed moves.
WorkspaceStateMachine machineIn(WorkspacePhase phase) {
    WorkspaceStateMachine machine;
    if (phase == failed) {
        machine.transition(failed);
        return machine;
    }
    for (const WorkspacePhase next : allWorkspacePhases) {
        if (next > phase)
            break;
        machine.transition(next);
    }
    return machine;
}

TEST(WorkspaceStateMachine, StartsIdle) {
    EXPECT_EQ(WorkspaceStateMachine().phase(), idle);
}

TEST(WorkspaceStateMachine, AllowsEveryPhaseToFollowItself) {
    for (const WorkspacePhase phase : allWorkspacePhases) {
        WorkspaceStateMachine machine = machineIn(phase);
        EXPECT_NO_THROW(machine.transition(phase));
        EXPECT_EQ(machine.phase(), phase);
        EXPECT_FALSE(WorkspaceStateMachine::allowedTransitions().at(phase).contains(phase));
    }
}

TEST(WorkspaceStateMachine, AllowsExactlyTheMovesOfItsTable) {
    const std::vector<std::pair<WorkspacePhase, std::vector<WorkspacePhase>>> table{
        {idle, {preflight, failed}},
        {preflight, {booting, failed, idle}},
        {booting, {openingPage, failed, idle}},
        {openingPage, {attachingInspector, failed, idle}},
        {attachingInspector, {running, failed, idle}},
        {running, {openingPage, attachingInspector, failed, idle}},
        {failed, {preflight, idle}},
    };
    for (const auto& [from, allowed] : table) {
        for (const WorkspacePhase to : allWorkspacePhases) {
            WorkspaceStateMachine machine = machineIn(from);
            ASSERT_EQ(machine.phase(), from);
            if (to == from || std::ranges::count(allowed, to) > 0) {
                EXPECT_NO_THROW(machine.transition(to));
                EXPECT_EQ(machine.phase(), to);
            } else {
                EXPECT_THROW(machine.transition(to), WorkspaceTransitionError);
                EXPECT_EQ(machine.phase(), from);
            }
        }
    }
}

TEST(WorkspaceStateMachine, RefusesShortcutsWithTheExactPairAndStays) {
    const std::vector<std::pair<WorkspacePhase, WorkspacePhase>> shortcuts{
        {idle, running}, {idle, booting}, {failed, running}, {running, preflight}, {running, booting},
    };
    for (const auto& [from, to] : shortcuts) {
        WorkspaceStateMachine machine = machineIn(from);
        try {
            machine.transition(to);
            ADD_FAILURE() << rawValue(from).toStdString() << " to " << rawValue(to).toStdString();
        } catch (const WorkspaceTransitionError& error) {
            EXPECT_EQ(error, WorkspaceTransitionError::invalid(from, to));
        }
        EXPECT_EQ(machine.phase(), from);
    }
}

TEST(WorkspaceStateMachine, GoesFromRunningToOpeningPageAndToAttachingInspector) {
    for (const WorkspacePhase next : {openingPage, attachingInspector}) {
        WorkspaceStateMachine machine = machineIn(running);
        machine.transition(next);
        EXPECT_EQ(machine.phase(), next);
    }
}

TEST(WorkspaceStateMachine, IsEqualToAMachineInTheSamePhase) {
    EXPECT_EQ(machineIn(booting), machineIn(booting));
    EXPECT_NE(machineIn(booting), WorkspaceStateMachine());
}

TEST(WorkspaceTransitionError, HasTheGenericDescriptionAndNoSuggestion) {
    const auto error = WorkspaceTransitionError::invalid(idle, running);
    EXPECT_EQ(error.errorDescription(),
              QStringLiteral("The operation couldn’t be completed. (CorvantaCore.WorkspaceTransitionError error 0.)"));
    EXPECT_EQ(error.recoverySuggestion(), std::nullopt);
}

TEST(WorkspaceTransitionError, IsEqualForTheSamePairOnly) {
    EXPECT_EQ(WorkspaceTransitionError::invalid(idle, running), WorkspaceTransitionError::invalid(idle, running));
    EXPECT_FALSE(WorkspaceTransitionError::invalid(idle, running) == WorkspaceTransitionError::invalid(running, idle));
}

} // namespace
} // namespace corvanta
