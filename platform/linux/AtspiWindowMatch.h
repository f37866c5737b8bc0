// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiItem.h"
#include "X11Windows.h"

#include <QHash>

#include <functional>
#include <optional>
#include <vector>

namespace corvanta {

/// Tells which X window is behind an accessible one, and stays with what it has told. Asks neither bus nor server.
class AtspiWindowMatch {
public:
    using Window = X11Windows::Window;

    /// What must be known to tell windows apart; asked only where it is needed.
    struct Facts {
        std::function<QString(Window)> title;
        std::function<PixelRect(Window)> frame;
        /// Where the accessible window says it is.
        std::function<PixelRect()> extents;
    };

    /// The window of `candidates`, the program's own, that was told before; otherwise the one of that title, and of
    /// several the one that lies nearest. Where none has that title, the nearest of all for the time being. Nothing
    /// where there are no candidates.
    [[nodiscard]] std::optional<Window> windowBehind(const AtspiReference& reference, const QString& title,
                                                     std::vector<Window> candidates, const Facts& facts);

    /// Forgets the windows of a process that has left.
    void forget(const QString& process);

    void clear() { m_told.clear(); }

    /// How many windows are remembered.
    [[nodiscard]] qsizetype size() const { return m_told.size(); }

private:
    QHash<AtspiReference, Window> m_told;
};

} // namespace corvanta
