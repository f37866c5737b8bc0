// SPDX-License-Identifier: MIT
#include "AtspiMirror.h"

#include <utility>

namespace corvanta {

namespace {

/// A page's objects cost four calls each, so they are fetched a few levels at a time, and not more than this of a page
/// of any size within one lifetime: the controls of a program that is drawn as a page are near its top.
constexpr int levelsOnDemand = 3;
constexpr qsizetype objectsOnDemand = 400;

} // namespace

AtspiMirror::AtspiMirror(const AtspiBus& bus, QString process, Extent extent, std::function<void()> noteSettled)
    : m_bus(bus)
    , m_process(std::move(process))
    , m_extent(extent)
    , m_noteSettled(std::move(noteSettled)) {}

void AtspiMirror::refresh() {
    if (m_extent != Extent::everything)
        return;
    takeUnread();
    if (!m_fetch)
        begin(AtspiFetch::everything(m_bus, m_process), false);
    m_fetch->watch([this] { settle(); });
}

void AtspiMirror::refreshForLater() {
    refresh();
    m_isAnnounced = m_extent == Extent::everything;
}

void AtspiMirror::request(const QString& path) {
    takeUnread();
    if (m_fetch)
        return;
    const bool fresh = isFresh();
    if (m_extent == Extent::everything) {
        if (!fresh)
            begin(AtspiFetch::everything(m_bus, m_process), false);
        return;
    }
    const AtspiItem* const known = m_tree.item(path);
    if (fresh && known != nullptr && known->areChildrenKnown)
        return;
    const qsizetype allowed = objectsOnDemand - (fresh ? m_tree.size() : 0);
    if (allowed <= 0)
        return;
    begin(AtspiFetch::below(m_bus, {m_process, path}, {levelsOnDemand, allowed}), fresh);
}

void AtspiMirror::begin(std::unique_ptr<AtspiFetch> fetch, bool isAddition) {
    m_fetch = std::move(fetch);
    m_answersSeen = 0;
    m_isAddition = isAddition;
    m_asked.start();
    m_silence.start();
}

void AtspiMirror::takeUnread() {
    if (m_fetch && m_asked.hasExpired(lifetime.count()) && settle())
        expire();
}

bool AtspiMirror::settle() {
    if (!m_fetch)
        return true;
    const bool isComplete = m_fetch->advance();
    if (m_fetch->answers() != m_answersSeen) {
        // A program that answers slowly is not silent.
        m_answersSeen = m_fetch->answers();
        m_silence.start();
        m_isGivenUp = false;
    }
    if (!isComplete)
        return false;
    AtspiTree tree = m_fetch->takeTree();
    m_fetch.reset();
    if (m_isAddition) {
        m_tree.merge(tree);
    } else {
        m_tree = std::move(tree);
        m_age.start();
    }
    m_noteSettled();
    return true;
}

void AtspiMirror::giveUp() {
    m_isGivenUp = true;
    if (m_fetch)
        m_fetch->watch([this] { settle(); });
}

const AtspiItem* AtspiMirror::item(const QString& path) {
    if (m_isAnnounced && !m_fetch) {
        // From its first reading on it is as any other.
        if (isFresh())
            m_age.start();
        m_isAnnounced = false;
    }
    const bool isSilent = m_fetch && m_silence.hasExpired(patience.count());
    return isSilent ? nullptr : m_tree.item(path);
}

} // namespace corvanta
