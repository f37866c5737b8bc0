// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct _AtspiAccessible;

namespace corvanta::testing {

/// An accessible object as any assistive technology sees it, read through the desktop's own client library.
///
/// Deliberately not the application's client: the tests look at the desktop with other eyes.
class Accessible {
public:
    explicit Accessible(std::shared_ptr<_AtspiAccessible> object);

    [[nodiscard]] QString name() const;
    [[nodiscard]] QString role() const;
    [[nodiscard]] int processID() const;
    [[nodiscard]] bool isSensitive() const;
    [[nodiscard]] bool isShowing() const;
    /// The text of a label or an entry.
    [[nodiscard]] QString text() const;
    [[nodiscard]] std::vector<Accessible> children() const;

    /// Performs the object's first action.
    bool press() const;
    /// Replaces the text of an entry.
    bool setText(const QString& text) const;

    /// The first object in pre-order that matches, this one included.
    [[nodiscard]] std::optional<Accessible> find(const std::function<bool(const Accessible&)>& matches,
                                                 int depth = 30) const;
    [[nodiscard]] std::optional<Accessible> find(const QString& role, const QString& name) const;
    /// Every non-empty name and text below the object.
    [[nodiscard]] QStringList allTexts(int depth = 30) const;

private:
    std::shared_ptr<_AtspiAccessible> m_object;
};

/// The applications on the accessibility bus that carry the name.
[[nodiscard]] std::vector<Accessible> applications(const QString& name);

/// All frames of all applications that carry the name.
[[nodiscard]] std::vector<Accessible> frames(const QString& applicationName);

} // namespace corvanta::testing
