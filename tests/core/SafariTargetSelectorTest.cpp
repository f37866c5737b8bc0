// SPDX-License-Identifier: MIT
#include "safari/SafariTargetSelector.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using SafariTargetSelector::decide;
using Decision = SafariTargetDecision;
using Targets = std::vector<SafariTarget>;

SafariTarget page(const QString& title) {
    return {u"0|"_s + title, title, {0}};
}

const SafariTarget a = page(u"A"_s);
const SafariTarget b = page(u"B"_s);
const SafariTarget c = page(u"C"_s);

TEST(SafariTargetSelector, AttachesToTheOnlyPageOfTheFirstLookWhateverItsTitle) {
    EXPECT_EQ(decide({}, {a}, URL::parse(u"http://elsewhere/")), Decision::attach(a));
    EXPECT_EQ(decide({}, {a}, std::nullopt), Decision::attach(a));
}

TEST(SafariTargetSelector, OffersEveryPageOfTheFirstLookWithoutAnAddress) {
    EXPECT_EQ(decide({}, {a, b}, std::nullopt), Decision::ambiguous({a, b}));
}

TEST(SafariTargetSelector, AttachesToTheOnlyPageThatMentionsTheAddress) {
    const auto url = URL::parse(u"http://Example.com/Docs/");
    for (const QString& title : {u"EXAMPLE.COM"_s, u"guide — /docs/ — x"_s, u"http://example.com/docs/"_s})
        EXPECT_EQ(decide({}, {a, page(title), c}, url), Decision::attach(page(title))) << title.toStdString();
}

TEST(SafariTargetSelector, OffersEveryPageWhenTwoMentionTheAddress) {
    const Targets all{page(u"example.com one"_s), b, page(u"example.com two"_s)};
    EXPECT_EQ(decide({}, all, URL::parse(u"http://example.com/docs/")), Decision::ambiguous(all));
}

TEST(SafariTargetSelector, OffersEveryPageWhenNoneMentionsTheAddress) {
    EXPECT_EQ(decide({}, {a, b, c}, URL::parse(u"http://example.com/docs/")), Decision::ambiguous({a, b, c}));
}

TEST(SafariTargetSelector, DoesNotLookForABareSlash) {
    const Targets all{page(u"one / two"_s), b};
    EXPECT_EQ(decide({}, all, URL::parse(u"http://example.com/")), Decision::ambiguous(all));
}

TEST(SafariTargetSelector, DoesNotLookForAnEmptyPathOrHost) {
    // Every title contains an empty text, so that looking for one would make all pages candidates.
    const SafariTarget host = page(u"example.com"_s);
    EXPECT_EQ(decide({}, {host, a}, URL::parse(u"http://example.com")), Decision::attach(host));
    const SafariTarget path = page(u"The /docs of it"_s);
    EXPECT_EQ(decide({}, {path, a}, URL::parse(u"http:///docs")), Decision::attach(path));
    const SafariTarget address = page(u"someone@example.com"_s);
    EXPECT_EQ(decide({}, {address, a}, URL::parse(u"mailto:someone@example.com")), Decision::attach(address));
}

TEST(SafariTargetSelector, DoesNothingForAPageThatReplacedAnother) {
    EXPECT_EQ(decide({a, b}, {a, c}, std::nullopt), Decision::none());
}

TEST(SafariTargetSelector, OffersOnlyTheNewPages) {
    EXPECT_EQ(decide({a}, {a, b, c}, std::nullopt), Decision::ambiguous({b, c}));
}

TEST(SafariTargetSelector, AttachesToTheOnlyNewPage) {
    EXPECT_EQ(decide({b}, {a, b}, URL::parse(u"http://b/")), Decision::attach(a));
}

TEST(SafariTargetSelector, ChoosesAmongTheNewPagesByTheAddress) {
    const SafariTarget local = page(u"localhost app"_s);
    EXPECT_EQ(decide({page(u"localhost"_s)}, {page(u"localhost"_s), local, c}, URL::parse(u"http://localhost:3000")),
              Decision::attach(local));
}

TEST(SafariTargetSelector, DoesNothingWhenPagesWentAway) {
    EXPECT_EQ(decide({a, b}, {b}, std::nullopt), Decision::none());
}

TEST(SafariTargetSelector, DoesNothingWithoutPages) {
    EXPECT_EQ(decide({}, {}, URL::parse(u"http://a")), Decision::none());
    EXPECT_EQ(decide({a}, {}, std::nullopt), Decision::none());
}

TEST(SafariTargetSelector, KnowsAPageByItsIdentityAlone) {
    SafariTarget renamed = a;
    renamed.title = u"Other"_s;
    EXPECT_EQ(decide({a}, {renamed, b}, std::nullopt), Decision::attach(b));
    EXPECT_EQ(decide({a}, {renamed, a}, std::nullopt), Decision::none());
}

} // namespace
} // namespace corvanta
