// SPDX-License-Identifier: MIT
#pragma once

#include "map/MapLabels.h"

#include <cstdint>

namespace corvanta {

class Gazetteer;

/// Names the towns of the gazetteer, the larger ones from further away.
class GazetteerLabels final : public MapLabelSource {
public:
    /// The gazetteer outlives this.
    explicit GazetteerLabels(const Gazetteer& gazetteer)
        : m_gazetteer(gazetteer) {}

    [[nodiscard]] std::vector<MapLabel> labelsIn(const WorldArea& area, double zoom, int most) const override;

    /// The least population with which a place is named at that zoom.
    [[nodiscard]] static std::uint32_t leastPopulation(double zoom);

private:
    const Gazetteer& m_gazetteer;
};

} // namespace corvanta
