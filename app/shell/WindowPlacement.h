// SPDX-License-Identifier: MIT
#pragma once

#include "support/PreferencesStore.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace corvanta {

/// Remembers the place and size of a window from one time it is open to the next.
class WindowPlacement final : public QObject {
    Q_OBJECT

public:
    /// `isOwn` says whether the window stands where it was put by whoever uses it, rather than by the program. Both
    /// outlive this object.
    WindowPlacement(PreferencesStore& preferences, QString key, std::function<bool()> isOwn, QObject* parent = nullptr);

    /// Puts a window that has not been shown yet where the last one was, within today's screens; one of `defaultSize`
    /// where the window system likes it when nothing is known. Follows it from then on.
    void apply(QWidget& window, QSize defaultSize);

    /// Stores what is known.
    void save();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PreferencesStore& m_preferences;
    const QString m_key;
    const std::function<bool()> m_isOwn;
    QByteArray m_geometry;
};

} // namespace corvanta
