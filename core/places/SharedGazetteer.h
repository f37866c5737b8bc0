// SPDX-License-Identifier: MIT
#pragma once

#include "places/Gazetteer.h"

#include <QString>

#include <optional>

namespace corvanta {

/// A gazetteer of which several make use, opened when the first of them asks for it. Not safe on several threads.
class SharedGazetteer {
public:
    explicit SharedGazetteer(QString path);

    /// The gazetteer, as long as this lives. Null when it cannot be used; it is not tried again then.
    [[nodiscard]] const Gazetteer* get();

    /// Why it cannot be used, for people, once it has been asked for; empty otherwise.
    [[nodiscard]] const QString& problem() const { return m_problem; }

private:
    QString m_path;
    bool m_isOpened = false;
    std::optional<Gazetteer> m_gazetteer;
    QString m_problem;
};

} // namespace corvanta
