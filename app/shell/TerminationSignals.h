// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QSocketNotifier;

namespace corvanta {

/// Turns SIGTERM, SIGINT and SIGHUP into a signal on the main thread, so that a killed program still tidies up.
///
/// SIGXFSZ, by which a program ends whose file grows over a limit, has no effect: the writing fails, as it does on a
/// full disk. Programs that are started meanwhile get all of these signals with their default effect.
///
/// One instance at a time; the signals get their default effect back when it is destroyed.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested();

private:
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace corvanta
