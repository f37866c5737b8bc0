// SPDX-License-Identifier: MIT
#pragma once

#include "window/widgets/MapBox.h"

namespace corvanta {

class Clock;
class Desktop;
class PlaceSearch;
class TaskScope;
class WorkspaceCoordinator;

/// What the parts of the control window show and work with. All of it outlives them.
struct SectionContext {
    WorkspaceCoordinator& coordinator;
    Desktop& desktop;
    PlaceSearch& placeSearch;
    const Clock& clock;
    TaskScope& tasks;
    MapMaking makeMap;
};

} // namespace corvanta
