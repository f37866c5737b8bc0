// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>
#include <QWidget>

#include <vector>

class QVBoxLayout;

namespace corvanta {

class IconButton;
class ListRow;
class TextLabel;
struct StoredLocation;

/// Stored locations that are pressed to be selected, in a frame of fixed height that scrolls.
class LocationList final : public QWidget {
    Q_OBJECT

public:
    enum class Deletion { none, offered };

    LocationList(const QString& emptyText, Deletion deletion, QWidget* parent = nullptr);

    ~LocationList() override;

    void showLocations(const std::vector<StoredLocation>& locations);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void chosen(const corvanta::StoredLocation& location);
    void deletionRequested(const QUuid& id);

private:
    struct Entry {
        QWidget* frame;
        ListRow* row;
        /// Null where nothing can be deleted.
        IconButton* trash;
    };

    [[nodiscard]] Entry makeEntry(std::size_t index);
    void removeLastEntry();

    Deletion m_deletion;
    TextLabel* m_emptyText;
    QWidget* m_content;
    QVBoxLayout* m_layout;
    std::vector<StoredLocation> m_locations;
    std::vector<Entry> m_entries;
};

} // namespace corvanta
