// SPDX-License-Identifier: MIT
#pragma once

#include "window/SectionContext.h"

#include <QWidget>

#include <vector>

class QVBoxLayout;

namespace corvanta {

class ListRow;

/// The pages to choose from while a choice is pending; hidden otherwise.
class ChoiceSection final : public QWidget {
    Q_OBJECT

public:
    explicit ChoiceSection(const SectionContext& context, QWidget* parent = nullptr);

private:
    void showCandidates();
    void makeRows(std::size_t count);
    void choose(std::size_t index);

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    QWidget* m_list;
    QVBoxLayout* m_layout;
    std::vector<ListRow*> m_rows;
};

} // namespace corvanta
