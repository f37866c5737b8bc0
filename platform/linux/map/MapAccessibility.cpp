// SPDX-License-Identifier: MIT
#include "MapAccessibility.h"

#include "MapView.h"

#include <QAccessibleWidget>

namespace corvanta {

namespace {

class AccessibleMap final : public QAccessibleWidget {
public:
    explicit AccessibleMap(MapView& map)
        : QAccessibleWidget(&map, QAccessible::Graphic)
        , m_map(map) {}

    [[nodiscard]] QString text(QAccessible::Text which) const override {
        // At once, also before the map has come to rest.
        return which == QAccessible::Description ? m_map.description() : QAccessibleWidget::text(which);
    }

    [[nodiscard]] QStringList actionNames() const override {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    [[nodiscard]] QString localizedActionDescription(const QString& name) const override {
        return name == pressAction() ? MapView::tr("Selects the place in the middle of the map")
                                     : QAccessibleWidget::localizedActionDescription(name);
    }

    void doAction(const QString& name) override {
        if (name == pressAction())
            m_map.pointAtMiddle();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    MapView& m_map;
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* const map = qobject_cast<MapView*>(object);
    return map != nullptr ? new AccessibleMap(*map) : nullptr;
}

} // namespace

void makeMapsAccessible() {
    static const bool isDone = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isDone)
}

} // namespace corvanta
