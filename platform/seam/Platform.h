// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "ControlWindow.h"
#include "Desktop.h"
#include "MapSurface.h"
#include "PlaceSearch.h"
#include "simulator/CommandRunning.h"
#include "support/Clock.h"
#include "support/PreferencesStore.h"

#include <memory>

class QWidget;

namespace corvanta {

/// Everything of the host that the application reaches, made once and kept for the life of the process.
class Platform {
public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    /// Returns once the host has told what the first look at it needs, after some seconds at the latest.
    [[nodiscard]] virtual QCoro::Task<void> untilReady() = 0;

    [[nodiscard]] virtual AccessibilityClient& accessibility() = 0;
    [[nodiscard]] virtual Desktop& desktop() = 0;
    [[nodiscard]] virtual Clock& clock() = 0;
    [[nodiscard]] virtual PreferencesStore& preferences() = 0;
    [[nodiscard]] virtual PlaceSearch& placeSearch() = 0;

    /// A map of its own for each caller, whose widget is a child of `parent`. Takes no longer than any widget does;
    /// what it shows may come later.
    [[nodiscard]] virtual std::unique_ptr<MapSurface> makeMapSurface(QWidget& parent) = 0;

    /// A runner of its own for each caller.
    [[nodiscard]] virtual std::unique_ptr<CommandRunning> makeCommandRunner() = 0;

    /// The seam's view of a top-level widget, which must outlive it.
    [[nodiscard]] virtual std::shared_ptr<ControlWindow> makeControlWindow(QWidget& window) = 0;
};

/// The platform that this build was made for. Called once, after the QApplication exists.
[[nodiscard]] std::unique_ptr<Platform> makePlatform();

} // namespace corvanta
