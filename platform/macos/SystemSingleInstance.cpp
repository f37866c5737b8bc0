// SPDX-License-Identifier: MIT
#include "SingleInstance.h"

#include <QApplication>
#include <QGuiApplication>
#include <QObject>
#include <QWidget>

#include <algorithm>

namespace corvanta {

namespace {

bool isAnyWindowShown() {
    const QWidgetList all = QApplication::topLevelWidgets();
    return std::ranges::any_of(
        all, [](const QWidget* widget) { return widget->isVisible() && widget->windowType() == Qt::Window; });
}

/// The system itself keeps one program of a bundle, and activates it instead of starting a second one. Options cannot
/// come with that.
class SystemSingleInstance final : public SingleInstance {
public:
    SystemSingleInstance() {
        QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &m_context,
                         [this](Qt::ApplicationState state) {
                             if (state == Qt::ApplicationActive && !isAnyWindowShown())
                                 tellOpened({QCoreApplication::applicationName()});
                         });
    }

    [[nodiscard]] Standing claim(const QStringList&) override { return Standing::alone; }

    void release() override { setOpenedHandler(nullptr); }

private:
    QObject m_context;
};

} // namespace

std::unique_ptr<SingleInstance> makeSingleInstance() {
    return std::make_unique<SystemSingleInstance>();
}

} // namespace corvanta
