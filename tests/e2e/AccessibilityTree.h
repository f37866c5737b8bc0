// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

namespace corvanta::testing {

/// An accessible object as any assistive technology sees it, asked attribute by attribute over the accessibility bus.
///
/// Deliberately not the application's client: the tests look at the desktop with other eyes. (Nor the desktop's client
/// library, which waits for itself for ever when an event arrives during a call; seen in libatspi 2.46.)
class Accessible {
public:
    Accessible(QString busName, QString path);

    [[nodiscard]] QString name() const;
    [[nodiscard]] QString description() const;
    [[nodiscard]] QString role() const;
    [[nodiscard]] int processID() const;
    [[nodiscard]] bool isSensitive() const;
    [[nodiscard]] bool isShowing() const;
    [[nodiscard]] bool isFocused() const;
    /// The text of a label or an entry.
    [[nodiscard]] QString text() const;
    [[nodiscard]] std::vector<Accessible> children() const;

    /// Performs the object's first action.
    bool press() const;
    /// Gives the object the keyboard within its window.
    bool takeFocus() const;
    /// Replaces the text of an entry.
    bool setText(const QString& text) const;

    /// The first object in pre-order that matches, this one included.
    [[nodiscard]] std::optional<Accessible> find(const std::function<bool(const Accessible&)>& matches,
                                                 int depth = 30) const;
    [[nodiscard]] std::optional<Accessible> find(const QString& role, const QString& name) const;
    /// The names and texts of the object and of those below it; pages do not say which of theirs are showing.
    enum class Objects { all, showing };
    [[nodiscard]] QStringList allTexts(Objects objects, int depth = 30) const;

private:
    [[nodiscard]] QVariant property(const QString& interface, const QString& name) const;
    [[nodiscard]] QVariantList call(const QString& interface, const QString& method,
                                    const QVariantList& arguments = {}) const;
    [[nodiscard]] bool hasState(unsigned state) const;

    QString m_busName;
    QString m_path;
};

/// The bus that the session says assistive technologies use; made anew for each test program.
[[nodiscard]] QDBusConnection accessibilityBus();

/// The applications on the accessibility bus that carry the name.
[[nodiscard]] std::vector<Accessible> applications(const QString& name);

/// The application on the accessibility bus that is this process. Asks no application, so that none that is held can
/// keep the caller waiting.
[[nodiscard]] std::optional<Accessible> application(int processID);

/// All frames of all applications that carry the name.
[[nodiscard]] std::vector<Accessible> frames(const QString& applicationName);

} // namespace corvanta::testing
