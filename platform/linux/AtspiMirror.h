// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiBus.h"
#include "AtspiFetch.h"
#include "AtspiTree.h"

#include <QElapsedTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace corvanta {

/// The accessible objects of one process as they were a moment ago.
///
/// Nothing here waits: a reader requests what it needs, waits for it as long as it may, and gives up on a mirror that
/// does not settle. What such a mirror held is read for a little longer, since a program that is busy is not a program
/// that hangs; then it holds nothing until its process has answered.
class AtspiMirror {
public:
    /// How old objects may be when they are read.
    static constexpr std::chrono::milliseconds lifetime{100};

    /// How old they may be at their first reading by one who has announced it: a pause of the driver goes before that.
    static constexpr std::chrono::milliseconds announcedLifetime = corvanta::announcedLifetime;

    /// How long they are read as they were while their process is asked and silent.
    static constexpr std::chrono::milliseconds patience = silenceOfABusyProgram;

    enum class Extent {
        everything, ///< A program of the desktop: all of it in one go.
        onDemand,   ///< A page inside another program, of any size: what is asked for and the next levels below.
    };

    /// `noteSettled` is called when nothing is on its way any more.
    AtspiMirror(const AtspiBus& bus, QString process, Extent extent, std::function<void()> noteSettled);

    /// Makes what has lain here unread as old as can be: it came while the thread was held up, and nobody knows when.
    void takeUnread();

    /// Begins to fetch everything anew unless that is under way; it arrives through the event loop.
    void refresh();

    /// The same for one who reads it after a pause.
    void refreshForLater();

    /// Begins to fetch what reading that object and its children needs, unless it is here or on its way.
    void request(const QString& path);

    /// Takes what has arrived; true when nothing is on its way.
    bool settle();

    /// Whether the process deserves to be waited for: it was not given up, or has shown a sign of life since.
    [[nodiscard]] bool isHopeful() const { return !m_isGivenUp; }

    void giveUp();

    /// Makes the next request fetch anew.
    void expire() { m_age.invalidate(); }

    /// Whether what is here is recent enough to be read without waiting.
    [[nodiscard]] bool isFresh() const {
        return !m_age.hasExpired((m_isAnnounced && !m_fetch ? announcedLifetime : lifetime).count());
    }

    /// Whether it is recent whoever has announced a reading.
    [[nodiscard]] bool isRecent() const { return !m_age.hasExpired(lifetime.count()); }

    /// Whether something is on its way that deserves to be waited for.
    [[nodiscard]] bool isExpected() const { return m_fetch && !m_isGivenUp; }

    [[nodiscard]] bool isPage() const { return m_extent == Extent::onDemand; }

    /// Null when it is not known or the process has been silent for too long.
    [[nodiscard]] const AtspiItem* item(const QString& path);

    [[nodiscard]] const AtspiTree& tree() const { return m_tree; }

private:
    void begin(std::unique_ptr<AtspiFetch> fetch, bool isAddition);

    const AtspiBus& m_bus;
    QString m_process;
    Extent m_extent;
    AtspiTree m_tree;
    QElapsedTimer m_age;
    QElapsedTimer m_asked;
    QElapsedTimer m_silence;
    std::unique_ptr<AtspiFetch> m_fetch;
    unsigned m_answersSeen = 0;
    std::function<void()> m_noteSettled;
    bool m_isAddition = false;
    bool m_isAnnounced = false;
    bool m_isGivenUp = false;
};

} // namespace corvanta
