// SPDX-License-Identifier: MIT
#include "Scene.h"

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

SimulatorDevice device(const QString& udid, const QString& name, const QString& state) {
    SimulatorDevice device;
    device.udid = udid;
    device.name = name;
    device.state = state;
    device.runtimeIdentifier = u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"_s;
    return device;
}

SafariTarget page(const QString& title, int index) {
    return {u"0.%1|%2"_s.arg(index).arg(title), title, {0, index}};
}

} // namespace

Scene::Scene() {
    simulator.devices = {device(u"A"_s, u"iPhone 16 Pro"_s, u"Booted"_s), device(u"B"_s, u"iPad Air"_s, u"Shutdown"_s)};
    coordinator = std::make_unique<WorkspaceCoordinator>(WorkspaceCoordinator::Services{
        .simulator = simulator,
        .safari = safari,
        .arranger = arranger,
        .preflightProbe = probe,
        .profileRepository = profileRepository,
        .locationRepository = locationRepository,
        .placeSearch = placeSearch,
        .accessibility = tree,
        .desktop = desktop,
        .clock = clock,
    });
    coordinator->setUrlInput(u"http://localhost:3000/checkout"_s);
}

Scene::~Scene() {
    coordinator.reset();
    // What was suspended resumes without its coordinator and ends by itself.
    while (clock.step()) {
    }
}

SectionContext Scene::context() {
    return {.coordinator = *coordinator,
            .desktop = desktop,
            .placeSearch = placeSearch,
            .clock = clock,
            .tasks = m_tasks,
            .makeMap = makeMap};
}

void Scene::prepare() {
    coordinator->setControlWindow(controlWindow);
    m_tasks.start(coordinator->runSetupChecks());
    clock.advance(1s);
    m_tasks.start(coordinator->refreshDevices());
    clock.advance(1s);
}

void Scene::boot() {
    prepare();
    simulator.script.delay(SimulatorOperation::boot, 60s);
    m_tasks.start(coordinator->startWorkspace());
    clock.advance(12s);
}

void Scene::run(int pageCount) {
    prepare();
    safari.willList({});
    safari.listed.clear();
    const QStringList titles{u"localhost — Checkout"_s, u"localhost — Payment pop-up"_s};
    for (int index = 0; index < pageCount; ++index)
        safari.listed.push_back(page(titles[index], index));
    m_tasks.start(coordinator->startWorkspace());
    clock.advance(300ms);
}

void Scene::fail(const QString& status, const std::optional<QString>& recovery) {
    prepare();
    simulator.script.fail(SimulatorOperation::boot, recovery ? FakeError(status, *recovery) : FakeError(status));
    m_tasks.start(coordinator->startWorkspace());
    clock.advance(300ms);
}

void Scene::visit() {
    coordinator->selectLocation({35.65948, 139.70055}, u"Shibuya crossing"_s, true);
    coordinator->saveFavorite();
    coordinator->selectLocation({37.33182, -122.03118}, u"Office"_s, true);
    coordinator->saveFavorite();
    coordinator->selectLocation({41.403626, 2.174356}, u"Sagrada Família"_s, true);
}

} // namespace corvanta::testing
