// SPDX-License-Identifier: MIT
// Renders the control window in every state that it has, light and dark, at the scale of QT_SCALE_FACTOR.
#include "MapSetup.h"
#include "Scene.h"
#include "WidgetMapSurface.h"
#include "window/Appearance.h"
#include "window/WorkspaceView.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPalette>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>

#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {

using namespace corvanta;
using namespace Qt::Literals::StringLiterals;
using testing::Scene;

struct State {
    QString name;
    std::function<void(Scene&)> lead;
    QSize size{430, 860};
    /// Shows all of the content, however high, instead of the window.
    bool isWhole = false;
    /// The name of the control that has the focus; the address when it is empty.
    QString focus = {};
    /// What happens once the window is shown.
    std::function<void(Scene&, QWidget&)> then = {};
};

const QString longError =
    u"The simulator could not be started because the runtime it was made for is not installed on this Mac any more, "
    u"and "
    "the one that replaced it does not know the device type com.apple.CoreSimulator.SimDeviceType.iPhone-16-Pro-Max, "
    "which was asked for by the device set"_s;

void fillEverything(Scene& scene) {
    scene.simulator.devices.front().name = u"iPhone 16 Pro Max of the Payments Team — Do Not Erase Before Friday"_s;
    scene.coordinator->setUrlInput(
        u"https://staging.payments.example.com/checkout/basket/7f0c7a52-11ce/confirm?session=0123456789abcdef"_s);
    scene.run(2);
    scene.visit();
    scene.coordinator->selectLocation(
        {41.40362612, -122.17435612},
        u"Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogogoch railway station, platform two"_s, true);
    scene.coordinator->saveFavorite();
}

/// Types into the search field and scrolls to it.
void searchPlace(Scene& scene, QWidget& view, const QString& text) {
    scene.clock.settle();
    for (QLineEdit* const field : view.findChildren<QLineEdit*>()) {
        if (field->placeholderText() != u"Search for a place")
            continue;
        field->setText(text);
        field->setFocus(Qt::OtherFocusReason);
    }
}

void findPlaces(Scene& scene, QWidget& view) {
    searchPlace(scene, view, u"san fra"_s);
    const std::vector<std::pair<QString, QString>> texts{
        {u"San Francisco"_s, u"California, United States"_s},
        {u"San Francisco de Macorís"_s, u"Duarte Province, Dominican Republic"_s},
        {u"San Francisco del Rincón"_s, u"Guanajuato, Mexico"_s},
        {u"San Francisco"_s, u"Cordoba, Argentina"_s},
        {u"San Francisco El Alto"_s, u"Totonicapán, Guatemala"_s},
        {u"San Francisco"_s, u"Heredia Province, Costa Rica"_s},
        {u"San Francisco International Airport Terminal Building with a Long Name"_s,
         u"Airport Boulevard, San Francisco, California, United States of America"_s}};
    std::vector<PlaceCompletion> places;
    for (const auto& [title, subtitle] : texts)
        places.push_back({.title = title, .subtitle = subtitle, .source = nullptr});
    scene.placeSearch.latestCompleter->suggest(places);
}

std::vector<State> states() {
    return {
        {u"setup-incomplete"_s,
         [](Scene& scene) {
             scene.tree.trusted = false;
             scene.probe.found.availableIOSRuntimeCount = 0;
             scene.prepare();
         }},
        {u"checking"_s,
         [](Scene& scene) {
             scene.prepare();
             scene.probe.script.delay(testing::PreflightOperation::facts, std::chrono::seconds(60));
             scene.context().tasks.start(scene.coordinator->runSetupChecks());
             scene.clock.advance(std::chrono::seconds(3));
         }},
        {u"ready"_s, [](Scene& scene) { scene.prepare(); }},
        {u"booting"_s, [](Scene& scene) { scene.boot(); }},
        {u"running"_s, [](Scene& scene) { scene.run(1); }},
        {u"running-whole"_s,
         [](Scene& scene) {
             scene.visit();
             scene.run(1);
         },
         QSize(430, 480), true},
        {u"choice"_s, [](Scene& scene) { scene.run(2); }},
        {u"failed-accessibility"_s,
         [](Scene& scene) {
             scene.fail(u"Accessibility permission is required."_s,
                        u"Allow Corvanta in System Settings > Privacy & Security > Accessibility."_s);
         }},
        {u"failed-safari"_s,
         [](Scene& scene) {
             scene.fail(u"Safari's Develop menu was not found."_s,
                        u"In Safari, turn on Settings > Advanced > Show features for web developers."_s);
         }},
        {u"failed-long"_s,
         [](Scene& scene) {
             scene.fail(longError, u"Open Safari and look at its Develop menu, then start again. "_s + longError);
         }},
        {u"no-devices"_s,
         [](Scene& scene) {
             scene.simulator.devices.clear();
             scene.prepare();
         }},
        {u"focus-start"_s, [](Scene& scene) { scene.prepare(); }, QSize(430, 860), false, u"Start Workspace"_s},
        {u"focus-favorite"_s,
         [](Scene& scene) {
             scene.visit();
             scene.prepare();
         },
         QSize(430, 860), false, u"Shibuya crossing"_s},
        {u"places"_s,
         [](Scene& scene) {
             scene.visit();
             scene.prepare();
         },
         QSize(430, 480),
         true,
         {},
         findPlaces},
        {u"places-narrow"_s, [](Scene& scene) { scene.prepare(); }, QSize(300, 480), true, {}, findPlaces},
        {u"places-failed"_s,
         [](Scene& scene) { scene.prepare(); },
         QSize(430, 480),
         true,
         {},
         [](Scene& scene, QWidget& view) {
             searchPlace(scene, view, u"san fra"_s);
             scene.placeSearch.latestCompleter->fail(
                 u"The list of places could not be read: No such file or directory"_s);
         }},
        {u"narrow"_s, fillEverything, QSize(300, 480)},
        {u"narrow-whole"_s, fillEverything, QSize(300, 480), true},
        {u"wide"_s, fillEverything, QSize(700, 900)},
    };
}

QPalette paletteFor(const QString& look) {
    QPalette palette;
    const auto set = [&palette](const QColor& ground, const QColor& text, const QColor& highlight) {
        palette = QPalette(ground);
        palette.setColor(QPalette::Window, ground);
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Text, text);
        palette.setColor(QPalette::Highlight, highlight);
    };
    if (look == u"dark")
        set(u"#2d2d2d"_s, u"#f5f5f5"_s, u"#4a95f5"_s);
    else if (look == u"contrast")
        set(Qt::black, Qt::white, u"#ffff00"_s);
    else
        set(u"#efefef"_s, u"#101010"_s, u"#0a66d8"_s);
    return palette;
}

/// The real map, without a network.
std::unique_ptr<MapSurface> makeMap(QWidget& parent) {
    static MapData data;
    return std::make_unique<WidgetMapSurface>(data.sources({}), parent);
}

bool render(const State& state, const QString& file) {
    Scene scene;
    scene.makeMap = makeMap;
    state.lead(scene);
    WorkspaceView view(scene.context(), [](QWidget*) {});
    view.resize(state.size);
    view.show();
    QApplication::setActiveWindow(&view);
    for (QPushButton* const button : view.findChildren<QPushButton*>()) {
        if (!state.focus.isEmpty() && button->text() == state.focus)
            button->setFocus(Qt::TabFocusReason);
    }
    if (state.then)
        state.then(scene, view);
    const auto* const content = view.findChild<QWidget*>(u"scrolledContent"_s);
    for (int round = 0; round < 4; ++round) {
        view.grab();
        QCoreApplication::processEvents();
        if (state.isWhole)
            view.resize(view.width(), view.height() + content->height() - content->parentWidget()->height());
    }
    return view.grab().save(file);
}

/// The list that the picker opens.
bool renderPicker(const QString& file) {
    Scene scene;
    scene.prepare();
    WorkspaceView view(scene.context(), [](QWidget*) {});
    view.resize(view.sizeHint());
    view.show();
    auto* const picker = view.findChild<QComboBox*>();
    picker->showPopup();
    QCoreApplication::processEvents();
    const bool isSaved = picker->view()->window()->grab().save(file);
    picker->hidePopup();
    return isSaved;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 64;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.mkpath(u"."_s))
        return 73;
    corvanta::applyAppearance(application);
    const QString scale = QString::number(application.devicePixelRatio());
    for (const QString& look : {u"light"_s, u"dark"_s, u"contrast"_s}) {
        QApplication::setPalette(paletteFor(look));
        for (const State& state : states()) {
            const QString file = folder.filePath(u"%1-%2@%3x.png"_s.arg(state.name, look, scale));
            if (!render(state, file)) {
                std::fprintf(stderr, "%s: cannot be written\n", qUtf8Printable(file));
                return 73;
            }
            std::printf("%s\n", qUtf8Printable(file));
        }
        if (!renderPicker(folder.filePath(u"picker-%1@%2x.png"_s.arg(look, scale))))
            return 73;
    }
    return 0;
}
