// SPDX-License-Identifier: MIT
#include "SessionHistory.h"

#include <gtest/gtest.h>

namespace corvanta::lab {

using Visits = std::vector<Visit>;

TEST(SessionHistory, HasTheLastPageFirst) {
    SessionHistory history;
    history.visit("http://one.test/");
    history.visit("http://two.test/");
    history.retitle("http://one.test/", "One");
    EXPECT_EQ(history.visits(), (Visits{{"http://two.test/", "http://two.test/"}, {"http://one.test/", "One"}}));
}

TEST(SessionHistory, HasEachPageOnce) {
    SessionHistory history;
    history.visit("http://one.test/");
    history.retitle("http://one.test/", "One");
    history.visit("http://two.test/");
    history.visit("http://one.test/");
    EXPECT_EQ(history.visits(), (Visits{{"http://one.test/", "One"}, {"http://two.test/", "http://two.test/"}}));
}

TEST(SessionHistory, LeavesOutPagesWithoutAnAddress) {
    SessionHistory history;
    for (const char* const url : {"", "about:blank", "data:text/html,x", "blob:http://one.test/1"})
        history.visit(url);
    EXPECT_TRUE(history.visits().empty());
}

TEST(SessionHistory, ForgetsTheOldestPages) {
    SessionHistory history;
    for (std::size_t number = 0; number <= SessionHistory::longest; ++number)
        history.visit("http://test/" + std::to_string(number));
    EXPECT_EQ(history.visits().size(), SessionHistory::longest);
    EXPECT_EQ(history.visits().back().url, "http://test/1");
}

TEST(SessionHistory, TakesNoTitleThatIsEmptyOrOfAPageThatIsNotInIt) {
    SessionHistory history;
    history.visit("http://one.test/");
    history.retitle("http://one.test/", "");
    history.retitle("http://two.test/", "Two");
    EXPECT_EQ(history.visits(), (Visits{{"http://one.test/", "http://one.test/"}}));
}

TEST(SessionHistory, IsCleared) {
    SessionHistory history;
    history.visit("http://one.test/");
    history.clear();
    EXPECT_TRUE(history.visits().empty());
}

} // namespace corvanta::lab
