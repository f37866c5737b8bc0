// SPDX-License-Identifier: MIT
#include "TestMessages.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    corvanta::testing::failOnUnexpectedMessages();
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
