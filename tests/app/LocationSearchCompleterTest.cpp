// SPDX-License-Identifier: MIT
#include "locations/LocationSearchCompleter.h"

#include "FakePlaceSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LocationSearchCompleterTest : public ::testing::Test {
protected:
    LocationSearchCompleterTest() {
        QObject::connect(&completer, &LocationSearchCompleter::resultsChanged, &completer,
                         [this] { log.add(u"results %1"_s.arg(completer.results().size())); });
        QObject::connect(&completer, &LocationSearchCompleter::errorMessageChanged, &completer,
                         [this] { log.add(u"error "_s + completer.errorMessage().value_or(u"none"_s)); });
    }

    [[nodiscard]] testing::FakePlaceCompleter& platform() const { return *search.latestCompleter; }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> titles;
        for (const PlaceCompletion& completion : completer.results())
            titles.push_back(completion.title.toStdString());
        return titles;
    }

    [[nodiscard]] static std::vector<PlaceCompletion> suggestions(const QStringList& titles) {
        std::vector<PlaceCompletion> result;
        for (const QString& title : titles)
            result.push_back({.title = title, .subtitle = u"Somewhere"_s, .source = nullptr});
        return result;
    }

    testing::VirtualClock clock;
    testing::CallLog log{clock};
    testing::FakePlaceSearch search{clock, log};
    LocationSearchCompleter completer{search};
};

TEST_F(LocationSearchCompleterTest, HasNothingAtFirst) {
    EXPECT_THAT(completer.results(), IsEmpty());
    EXPECT_EQ(completer.errorMessage(), std::nullopt);
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(LocationSearchCompleterTest, AsksForAddressesAndPointsOfInterest) {
    EXPECT_EQ(platform().resultTypes, PlaceResultTypes::addressAndPointOfInterest);
    EXPECT_EQ(static_cast<unsigned>(platform().resultTypes), 3U);
    EXPECT_NE(platform().delegate, nullptr);
    EXPECT_EQ(&completer.completer(), &platform());
}

TEST_F(LocationSearchCompleterTest, PassesEachTextOnAtOnceTrimmed) {
    for (const QString& text : {u"p"_s, u" pa"_s, u"par \n"_s, u"\u2003paris\t"_s})
        completer.update(text);
    EXPECT_THAT(log.calls(), ElementsAre("query fragment \"p\"", "query fragment \"pa\"", "query fragment \"par\"",
                                         "query fragment \"paris\""));
    EXPECT_THAT(clock.requestedSleeps(), IsEmpty());
}

TEST_F(LocationSearchCompleterTest, ShowsTheSuggestionsInTheCompletersOrder) {
    completer.update(u"par"_s);
    platform().suggest(suggestions({u"Paris"_s, u"Parma"_s, u"Paramaribo"_s}));
    EXPECT_THAT(titles(), ElementsAre("Paris", "Parma", "Paramaribo"));
    platform().suggest(suggestions({u"Parma"_s}));
    EXPECT_THAT(titles(), ElementsAre("Parma"));
}

TEST_F(LocationSearchCompleterTest, KeepsTheSuggestionsUntilThereAreNewOnes) {
    completer.update(u"par"_s);
    platform().suggest(suggestions({u"Paris"_s}));
    completer.update(u"pari"_s);
    EXPECT_THAT(titles(), ElementsAre("Paris"));
}

TEST_F(LocationSearchCompleterTest, EmptiesTheSuggestionsForSpacesAlone) {
    completer.update(u"par"_s);
    platform().suggest(suggestions({u"Paris"_s}));
    log.clear();
    completer.update(u"  \n "_s);
    EXPECT_THAT(completer.results(), IsEmpty());
    EXPECT_EQ(platform().queryFragment, u"");
}

TEST_F(LocationSearchCompleterTest, ClearsTheErrorForSpacesAlone) {
    completer.update(u"par"_s);
    platform().fail(u"Offline."_s);
    completer.update(u" "_s);
    EXPECT_EQ(completer.errorMessage(), std::nullopt);
}

TEST_F(LocationSearchCompleterTest, ShowsTheErrorInThePlaceOfSuggestions) {
    completer.update(u"par"_s);
    platform().suggest(suggestions({u"Paris"_s}));
    platform().fail(u"Offline."_s);
    EXPECT_THAT(completer.results(), IsEmpty());
    EXPECT_EQ(completer.errorMessage(), u"Offline."_s);
}

TEST_F(LocationSearchCompleterTest, ClearsTheErrorBeforeNewResultsArrive) {
    completer.update(u"par"_s);
    platform().fail(u"Offline."_s);
    log.clear();
    completer.update(u"pari"_s);
    EXPECT_EQ(completer.errorMessage(), std::nullopt);
    platform().suggest(suggestions({u"Paris"_s}));
    EXPECT_THAT(log.calls(), ElementsAre("error none", "query fragment \"pari\"", "results 1"));
}

TEST_F(LocationSearchCompleterTest, KeepsAnErrorWhenSuggestionsStillArrive) {
    completer.update(u"par"_s);
    platform().fail(u"Offline."_s);
    platform().suggest(suggestions({u"Paris"_s}));
    EXPECT_THAT(titles(), ElementsAre("Paris"));
    EXPECT_EQ(completer.errorMessage(), u"Offline."_s);
}

TEST_F(LocationSearchCompleterTest, PublishesOnlyWhatChanges) {
    completer.update(u""_s);
    completer.update(u" "_s);
    platform().suggest({});
    platform().fail(u"Offline."_s);
    platform().fail(u"Offline."_s);
    EXPECT_THAT(log.calls(), ElementsAre("query fragment \"\"", "query fragment \"\"", "error Offline."));
}

TEST_F(LocationSearchCompleterTest, GivesItsCompleterBackItsPeace) {
    struct Watched final : PlaceSearch {
        struct Completer final : PlaceCompleter {
            explicit Completer(QStringList& heardCalls)
                : heard(heardCalls) {}

            void setDelegate(PlaceCompleterDelegate* delegate) override {
                heard.append(delegate ? u"delegate"_s : u"no delegate"_s);
            }

            void setResultTypes(PlaceResultTypes) override {}

            void setQueryFragment(const QString&) override {}

            [[nodiscard]] std::vector<PlaceCompletion> results() const override { return {}; }

            QStringList& heard;
        };

        [[nodiscard]] QCoro::Task<std::vector<MapItem>> search(PlaceCompletion) override { co_return {}; }

        [[nodiscard]] std::unique_ptr<PlaceCompleter> makeCompleter() override {
            return std::make_unique<Completer>(heard);
        }

        QStringList heard;
    } watched;

    {
        const LocationSearchCompleter shortLived(watched);
    }
    EXPECT_EQ(watched.heard, QStringList({u"delegate"_s, u"no delegate"_s}));
}

} // namespace
} // namespace corvanta
