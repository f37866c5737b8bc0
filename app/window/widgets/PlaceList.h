// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <cstddef>
#include <vector>

class QVBoxLayout;

namespace corvanta {

class ListRow;
struct PlaceCompletion;

/// Suggested places that are pressed to be chosen: some are seen, the rest is scrolled to. Up and Down go from one to
/// the next.
class PlaceList final : public QWidget {
    Q_OBJECT

public:
    /// Tab goes from `predecessor`, which is in the same window as long as places are shown, to the first place.
    explicit PlaceList(QWidget& predecessor, QWidget* parent = nullptr);

    /// What stays in its place keeps the focus, too.
    void showPlaces(const std::vector<PlaceCompletion>& places);

    /// Moves the focus to the first place.
    void enter();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void chosen(std::size_t index);
    /// Up was pressed on the first place, or the place that had the focus is gone.
    void left();
    /// Escape was pressed.
    void dismissed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] ListRow* makeRow(std::size_t index);
    void removeLastRow();

    QWidget* m_predecessor;
    QWidget* m_content;
    QVBoxLayout* m_layout;
    std::vector<ListRow*> m_rows;
};

} // namespace corvanta
