// SPDX-License-Identifier: MIT
#pragma once

#include "locations/LocationSearchCompleter.h"
#include "window/SectionContext.h"

#include <QWidget>

#include <cstddef>

class QLineEdit;

namespace corvanta {

class PlaceList;
class TextLabel;

/// A field in which the name of a place is typed, and under it the places that it may be.
///
/// Down goes from the field into the list, Return takes the first place. Escape closes the list, and then empties the
/// field.
class PlaceSearchBox final : public QWidget {
    Q_OBJECT

public:
    explicit PlaceSearchBox(const SectionContext& context, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void choose(std::size_t index);
    void dismiss();
    void forgetQuestion();
    void showResults();
    void showError();
    /// Whether the field has taken the key.
    [[nodiscard]] bool takeKey(int key);

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    LocationSearchCompleter m_completer;
    QLineEdit* m_field;
    PlaceList* m_list;
    TextLabel* m_error;
};

} // namespace corvanta
