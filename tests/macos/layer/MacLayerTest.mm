// SPDX-License-Identifier: MIT
#include "MacLayerTest.h"

#include "TestMessages.h"

#include <QApplication>

extern "C" void* objc_autoreleasePoolPush(void);
extern "C" void objc_autoreleasePoolPop(void* pool);

namespace corvanta {

using namespace corvanta::testing;

void MacLayerTest::SetUp() {
    world() = World();
    // What the system has one of is no leak.
    (void)NSWorkspace.sharedWorkspace;
    (void)NSApplication.sharedApplication;
    (void)NSProcessInfo.processInfo;
    (void)NSUserDefaults.standardUserDefaults;
    (void)NSColor.systemBlueColor;
    (void)MKPointOfInterestFilter.filterIncludingAllCategories;
    (void)MKPointOfInterestFilter.filterExcludingAllCategories;
    m_living = livingObjects();
    m_references = ownedReferences();
    m_pool = objc_autoreleasePoolPush();
}

void MacLayerTest::TearDown() {
    for (auto& [key, object] : storedDefaults())
        [NSUserDefaults.standardUserDefaults setObject:nil forKey:makeText(QString::fromStdString(key))];
    world() = World();
    objc_autoreleasePoolPop(m_pool);
    EXPECT_EQ(livingObjects(), m_living) << "objects were not given back";
    EXPECT_EQ(ownedReferences(), m_references) << "CoreFoundation references were not given back";
}

} // namespace corvanta

int main(int argc, char** argv) {
    corvanta::testing::failOnUnexpectedMessages();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
