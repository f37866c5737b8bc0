// SPDX-License-Identifier: MIT
#include "shell/FirstPaint.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

namespace corvanta {

namespace {

using namespace std::chrono_literals;

constexpr auto unseenDelay = 300ms;

class FirstPaint final : public QObject {
public:
    FirstPaint(QWidget& window, QObject& context, std::function<void()> then)
        : QObject(&context)
        , m_then(std::move(then)) {
        window.installEventFilter(this);
        connect(&window, &QObject::destroyed, this, [this] { endSoon(0ms); });
        endSoon(unseenDelay);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        // What is painted is shown at the end of this turn.
        if (event->type() == QEvent::Paint)
            endSoon(0ms);
        return false;
    }

private:
    void endSoon(std::chrono::milliseconds delay) {
        QTimer::singleShot(delay, this, [this] {
            if (!std::exchange(m_isOver, true)) {
                deleteLater();
                m_then();
            }
        });
    }

    std::function<void()> m_then;
    bool m_isOver = false;
};

} // namespace

void afterFirstPaint(QWidget& window, QObject& context, std::function<void()> then) {
    new FirstPaint(window, context, std::move(then));
}

} // namespace corvanta
