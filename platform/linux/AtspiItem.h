// SPDX-License-Identifier: MIT
#pragma once

#include <QHashFunctions>
#include <QList>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace corvanta {

/// Names one accessible object: the unique bus name of its process and its object path there.
struct AtspiReference {
    QString bus;
    QString path;

    [[nodiscard]] bool isNull() const { return path.isEmpty() || path == QLatin1String("/org/a11y/atspi/null"); }

    bool operator==(const AtspiReference&) const = default;
};

inline std::size_t qHash(const AtspiReference& reference, std::size_t seed = 0) {
    return qHashMulti(seed, reference.bus, reference.path);
}

/// The roles of the AT-SPI protocol that are told apart here, by their numbers on the bus.
enum class AtspiRole : std::uint32_t {
    invalid = 0,
    alert = 2,
    colorChooser = 9,
    dialog = 16,
    fileChooser = 19,
    frame = 23,
    menu = 33,
    menuBar = 34,
    menuItem = 35,
    fontChooser = 80,
};

/// The states that are told apart here, by their bit on the bus.
enum class AtspiState : unsigned { iconified = 15, sensitive = 24, showing = 25 };

/// One accessible object as its program describes it.
struct AtspiItem {
    AtspiReference reference;
    AtspiReference parent;
    /// Negative where the program does not say.
    int indexInParent = -1;
    /// Negative where the program does not say.
    int childCount = -1;
    QString name;
    QString description;
    AtspiRole role = AtspiRole::invalid;
    std::uint64_t states = 0;
    /// In the program's order; meaningful only where `areChildrenKnown`.
    QList<AtspiReference> children;
    bool areChildrenKnown = false;

    [[nodiscard]] bool has(AtspiState state) const { return ((states >> static_cast<unsigned>(state)) & 1U) != 0; }
};

} // namespace corvanta
