// SPDX-License-Identifier: MIT
#include "TaskWaiting.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace corvanta::testing {

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    // Wakes the loop also where nothing else happens: at the limit, and for conditions outside this process.
    QTimer wakeUp;
    wakeUp.start(std::chrono::milliseconds(10));
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return condition();
}

} // namespace corvanta::testing
