// SPDX-License-Identifier: MIT
#include "AccessibilityTree.h"

#include <atspi/atspi.h>

#include <utility>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

QString takeText(gchar* text) {
    const QString result = QString::fromUtf8(text);
    g_free(text);
    return result;
}

template<typename Object>
std::shared_ptr<Object> own(Object* object) {
    return std::shared_ptr<Object>(object, [](Object* held) {
        if (held)
            g_object_unref(held);
    });
}

bool hasState(AtspiAccessible* object, AtspiStateType state) {
    const auto states = own(atspi_accessible_get_state_set(object));
    return states && atspi_state_set_contains(states.get(), state);
}

std::shared_ptr<AtspiAccessible> desktop() {
    static const int initialised = [] {
        constexpr int callLimit = 2000;
        constexpr int startLimit = 5000;
        const int status = atspi_init();
        atspi_set_timeout(callLimit, startLimit);
        return status;
    }();
    if (initialised > 1)
        return nullptr;
    auto root = own(atspi_get_desktop(0));
    // What is remembered here could be stale, and the tests are about what is there now.
    if (root)
        atspi_accessible_set_cache_mask(root.get(), ATSPI_CACHE_NONE);
    return root;
}

} // namespace

Accessible::Accessible(std::shared_ptr<_AtspiAccessible> object)
    : m_object(std::move(object)) {}

QString Accessible::name() const {
    return takeText(atspi_accessible_get_name(m_object.get(), nullptr));
}

QString Accessible::role() const {
    return takeText(atspi_accessible_get_role_name(m_object.get(), nullptr));
}

int Accessible::processID() const {
    return static_cast<int>(atspi_accessible_get_process_id(m_object.get(), nullptr));
}

bool Accessible::isSensitive() const {
    return hasState(m_object.get(), ATSPI_STATE_SENSITIVE);
}

bool Accessible::isShowing() const {
    return hasState(m_object.get(), ATSPI_STATE_SHOWING);
}

QString Accessible::text() const {
    const auto text = own(atspi_accessible_get_text_iface(m_object.get()));
    return text ? takeText(atspi_text_get_text(text.get(), 0, -1, nullptr)) : QString();
}

std::vector<Accessible> Accessible::children() const {
    std::vector<Accessible> result;
    const int count = atspi_accessible_get_child_count(m_object.get(), nullptr);
    for (int index = 0; index < count; ++index) {
        if (auto child = own(atspi_accessible_get_child_at_index(m_object.get(), index, nullptr)))
            result.emplace_back(std::move(child));
    }
    return result;
}

bool Accessible::press() const {
    const auto action = own(atspi_accessible_get_action_iface(m_object.get()));
    return action && atspi_action_do_action(action.get(), 0, nullptr);
}

bool Accessible::setText(const QString& text) const {
    const auto editable = own(atspi_accessible_get_editable_text_iface(m_object.get()));
    return editable && atspi_editable_text_set_text_contents(editable.get(), text.toUtf8().constData(), nullptr);
}

std::optional<Accessible> Accessible::find(const std::function<bool(const Accessible&)>& matches, int depth) const {
    if (matches(*this))
        return *this;
    if (depth == 0)
        return std::nullopt;
    for (const Accessible& child : children()) {
        if (auto found = child.find(matches, depth - 1))
            return found;
    }
    return std::nullopt;
}

std::optional<Accessible> Accessible::find(const QString& role, const QString& name) const {
    return find([&](const Accessible& object) { return object.name() == name && object.role() == role; });
}

QStringList Accessible::allTexts(int depth) const {
    QStringList texts;
    for (const QString& own : {name(), text()}) {
        if (!own.trimmed().isEmpty())
            texts.append(own.trimmed());
    }
    if (depth > 0) {
        for (const Accessible& child : children())
            texts.append(child.allTexts(depth - 1));
    }
    return texts;
}

std::vector<Accessible> applications(const QString& name) {
    std::vector<Accessible> result;
    const auto root = desktop();
    if (!root)
        return result;
    for (const Accessible& application : Accessible(root).children()) {
        if (application.name() == name)
            result.push_back(application);
    }
    return result;
}

std::vector<Accessible> frames(const QString& applicationName) {
    std::vector<Accessible> result;
    for (const Accessible& application : applications(applicationName)) {
        for (const Accessible& child : application.children()) {
            if (child.role() == u"frame" || child.role() == u"window" || child.role() == u"dialog")
                result.push_back(child);
        }
    }
    return result;
}

} // namespace corvanta::testing
