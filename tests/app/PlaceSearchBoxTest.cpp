// SPDX-License-Identifier: MIT
#include "window/PlaceSearchBox.h"

#include "OffscreenWindows.h"
#include "WindowSectionTest.h"
#include "window/widgets/ListRow.h"
#include "window/widgets/PlaceList.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Coordinate paris{48.85341, 2.3488};

/// Writes down when what it watches is hidden.
class HidingLog final : public QObject {
public:
    explicit HidingLog(testing::CallLog& log)
        : m_log(log) {}

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Hide)
            m_log.add(u"hidden"_s);
        return false;
    }

private:
    testing::CallLog& m_log;
};

class PlaceSearchBoxTest : public WindowSectionTest {
protected:
    PlaceSearchBox& showBox() {
        makeReady();
        auto& box = show<PlaceSearchBox>();
        m_box = &box;
        window.show();
        QApplication::setActiveWindow(&window);
        field().setFocus();
        return box;
    }

    [[nodiscard]] QLineEdit& field() const { return *m_box->findChild<QLineEdit*>(); }

    [[nodiscard]] testing::FakePlaceCompleter& completer() const { return *placeSearch.latestCompleter; }

    void type(const QString& text) {
        for (const QChar character : text)
            send(field(), Qt::Key_unknown, character);
    }

    static void send(QWidget& widget, int key, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&widget, &press);
    }

    void send(int key, const QString& text = {}) const {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        send(*QApplication::focusWidget(), key, text);
    }

    void suggest(const QStringList& titles) const {
        std::vector<PlaceCompletion> places;
        for (const QString& title : titles)
            places.push_back({.title = title, .subtitle = u"in "_s + title, .source = nullptr});
        completer().suggest(places);
    }

    [[nodiscard]] Texts rows() const {
        Texts texts;
        for (const ListRow* const row : shown<ListRow>(*m_box))
            texts.push_back((row->accessibleName() + u"; "_s + row->accessibleDescription()).toStdString());
        return texts;
    }

    [[nodiscard]] QString focusedText() const {
        const auto* const row = qobject_cast<ListRow*>(QApplication::focusWidget());
        return row ? row->accessibleName() : QApplication::focusWidget() == &field() ? u"field"_s : u"elsewhere"_s;
    }

private:
    testing::OffscreenWindows m_offscreen;
    PlaceSearchBox* m_box = nullptr;
};

TEST_F(PlaceSearchBoxTest, IsAFieldAndNothingElseAtFirst) {
    const auto& box = showBox();
    EXPECT_EQ(field().placeholderText(), u"Search for a place");
    EXPECT_EQ(field().accessibleName(), u"Search for a place");
    EXPECT_EQ(field().text(), u"");
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_THAT(labels(box), IsEmpty());
    EXPECT_THAT(shown<PlaceList>(box), IsEmpty());
}

TEST_F(PlaceSearchBoxTest, PassesEveryChangeOn) {
    showBox();
    log.clear();
    type(u"pa"_s);
    field().clear();
    EXPECT_THAT(log.calls(), ElementsAre("query fragment \"p\"", "query fragment \"pa\"", "query fragment \"\""));
}

TEST_F(PlaceSearchBoxTest, ShowsTitleAndSubtitleOfEachResult) {
    const auto& box = showBox();
    type(u"par"_s);
    suggest({u"Paris"_s, u"Parma <b>&amp;</b>"_s});
    EXPECT_THAT(rows(), ElementsAre("Paris; in Paris", "Parma <b>&amp;</b>; in Parma <b>&amp;</b>"));
    ASSERT_EQ(shown<PlaceList>(box).size(), 1U);
    EXPECT_EQ(shown<PlaceList>(box).front()->accessibleName(), u"Suggested places");
    suggest({u"Parma"_s});
    EXPECT_THAT(rows(), ElementsAre("Parma; in Parma"));
    suggest({});
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_THAT(shown<PlaceList>(box), IsEmpty());
}

TEST_F(PlaceSearchBoxTest, ShowsAFewResultsAtOnceAndScrollsTheRest) {
    const auto& box = showBox();
    type(u"s"_s);
    suggest({u"1"_s, u"2"_s, u"3"_s});
    const int three = shown<PlaceList>(box).front()->sizeHint().height();
    suggest(QString(u"x"_s).repeated(20).split(u""_s, Qt::SkipEmptyParts));
    const int twenty = shown<PlaceList>(box).front()->sizeHint().height();
    EXPECT_GT(twenty, three);
    EXPECT_LT(twenty, three * 2);
}

TEST_F(PlaceSearchBoxTest, ChoosesAResultInTheOrderOfItsEffects) {
    showBox();
    placeSearch.found = {{.name = u"Paris"_s, .coordinate = paris}};
    type(u"par"_s);
    suggest({u"Parma"_s, u"Paris"_s});
    HidingLog hiding(log);
    shown<PlaceList>(window).front()->installEventFilter(&hiding);
    log.clear();
    shown<ListRow>(window).at(1)->click();
    EXPECT_EQ(field().text(), u"Paris");
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_THAT(log.calls(), ElementsAre("query fragment \"Paris\"", "hidden", "query fragment \"\"", "search Paris"));
    clock.settle();
    EXPECT_EQ(coordinator->selectedCoordinate(), paris);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Paris");
    EXPECT_TRUE(coordinator->recenterMapOnSelection());
    EXPECT_EQ(focusedText(), u"field");
}

TEST_F(PlaceSearchBoxTest, TakesTheFirstResultWithReturn) {
    showBox();
    placeSearch.found = {{.name = std::nullopt, .coordinate = paris}};
    type(u"par"_s);
    suggest({u"Paris"_s, u"Parma"_s});
    send(Qt::Key_Return);
    clock.settle();
    EXPECT_EQ(field().text(), u"Paris");
    EXPECT_EQ(coordinator->selectedLocationName(), u"Paris");
}

TEST_F(PlaceSearchBoxTest, TakesNothingWithReturnWhenThereIsNothing) {
    showBox();
    type(u"par"_s);
    log.clear();
    send(Qt::Key_Return);
    EXPECT_EQ(field().text(), u"par");
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(PlaceSearchBoxTest, IsWorkedByTheKeyboardAlone) {
    showBox();
    placeSearch.found = {{.name = u"Parma"_s, .coordinate = paris}};
    type(u"par"_s);
    suggest({u"Paris"_s, u"Parma"_s});
    send(Qt::Key_Down);
    EXPECT_EQ(focusedText(), u"Paris");
    send(Qt::Key_Up);
    EXPECT_EQ(focusedText(), u"field");
    send(Qt::Key_Down);
    send(Qt::Key_Down);
    EXPECT_EQ(focusedText(), u"Parma");
    send(Qt::Key_Down);
    EXPECT_EQ(focusedText(), u"Parma");
    send(Qt::Key_Return);
    clock.settle();
    EXPECT_EQ(coordinator->selectedLocationName(), u"Parma");
    EXPECT_EQ(focusedText(), u"field");
}

TEST_F(PlaceSearchBoxTest, HasItsResultsBetweenTheFieldAndWhatFollowsIt) {
    showBox();
    QPushButton following;
    window.layout()->addWidget(&following);
    following.show();
    type(u"par"_s);
    suggest({u"Paris"_s});
    suggest({u"Paris"_s, u"Parma"_s, u"Parana"_s});
    // What is laid out is shown when the events have run.
    QApplication::sendPostedEvents();
    for (const QString& next : {u"Paris"_s, u"Parma"_s, u"Parana"_s}) {
        send(Qt::Key_Tab, u"\t"_s);
        EXPECT_EQ(focusedText(), next);
    }
    send(Qt::Key_Tab, u"\t"_s);
    EXPECT_EQ(QApplication::focusWidget(), &following);
    suggest({u"Paris"_s});
    send(Qt::Key_Backtab);
    EXPECT_EQ(focusedText(), u"Paris");
    send(Qt::Key_Backtab);
    EXPECT_EQ(focusedText(), u"field");
}

TEST_F(PlaceSearchBoxTest, ClosesTheListWithEscapeAndThenEmptiesTheField) {
    showBox();
    type(u"par"_s);
    suggest({u"Paris"_s});
    log.clear();
    send(Qt::Key_Down);
    send(Qt::Key_Escape);
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_EQ(field().text(), u"par");
    EXPECT_EQ(focusedText(), u"field");
    EXPECT_THAT(log.calls(), ElementsAre("query fragment \"\""));
    send(Qt::Key_Escape);
    EXPECT_EQ(field().text(), u"");
}

TEST_F(PlaceSearchBoxTest, KeepsTheFocusOnAResultThatStaysWhenMoreArrive) {
    showBox();
    type(u"par"_s);
    suggest({u"Paris"_s, u"Parma"_s});
    send(Qt::Key_Down);
    send(Qt::Key_Down);
    suggest({u"Paris"_s, u"Parma"_s, u"Rue de Paris"_s});
    EXPECT_EQ(focusedText(), u"Parma");
}

TEST_F(PlaceSearchBoxTest, GivesTheFocusBackWhenTheResultIsGone) {
    showBox();
    type(u"par"_s);
    suggest({u"Paris"_s, u"Parma"_s});
    send(Qt::Key_Down);
    send(Qt::Key_Down);
    suggest({u"Paris"_s});
    EXPECT_EQ(focusedText(), u"field");
}

TEST_F(PlaceSearchBoxTest, ShowsTheErrorUntilSomethingElseIsTyped) {
    const auto& box = showBox();
    type(u"par"_s);
    suggest({u"Paris"_s});
    completer().fail(u"Offline & <i>away</i>."_s);
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_THAT(labels(box), ElementsAre("Offline & <i>away</i>."));
    EXPECT_EQ(field().text(), u"par");
    type(u"i"_s);
    EXPECT_THAT(labels(box), IsEmpty());
}

TEST_F(PlaceSearchBoxTest, SaysInTheStatusWhenAResultLeadsNowhere) {
    showBox();
    type(u"par"_s);
    suggest({u"Paris"_s});
    send(Qt::Key_Return);
    clock.settle();
    EXPECT_EQ(status(), "No matching location");
    EXPECT_EQ(tasks.size(), 0U);
}

} // namespace

} // namespace corvanta
