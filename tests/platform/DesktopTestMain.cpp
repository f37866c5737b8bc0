// SPDX-License-Identifier: MIT
#include "TestMessages.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    corvanta::testing::failOnUnexpectedMessages();
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
