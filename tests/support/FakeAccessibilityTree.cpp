// SPDX-License-Identifier: MIT
#include "FakeAccessibilityTree.h"

#include <utility>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

class FakeNode final : public AccessibilityNode {
public:
    FakeNode(FakeAccessibilityTree::Element& shownElement, int number)
        : element(shownElement)
        , m_number(number) {}

    [[nodiscard]] bool equals(const AccessibilityNode& other) const override {
        const auto* const node = dynamic_cast<const FakeNode*>(&other);
        return node != nullptr && &node->element == &element;
    }

    [[nodiscard]] std::size_t hash() const override { return static_cast<std::size_t>(m_number); }

    FakeAccessibilityTree::Element& element;

private:
    const int m_number;
};

struct ToClient {
    AccessibilityValue operator()(FakeAccessibilityTree::Element* element) const { return element->handle(); }

    AccessibilityValue operator()(const FakeAccessibilityTree::Element::Elements& elements) const {
        std::vector<AccessibilityElement> handles;
        for (FakeAccessibilityTree::Element* const element : elements)
            handles.push_back(element->handle());
        return handles;
    }

    template<typename Value>
    AccessibilityValue operator()(const Value& value) const {
        return value;
    }
};

QString pair(double first, double second) {
    return QString::number(first) + u',' + QString::number(second);
}

struct Text {
    QString operator()(const QString& text) const { return text; }

    QString operator()(bool flag) const { return flag ? u"true"_s : u"false"_s; }

    QString operator()(double number) const { return QString::number(number); }

    QString operator()(const Point& point) const { return pair(point.x, point.y); }

    QString operator()(const Size& size) const { return pair(size.width, size.height); }

    QString operator()(const AccessibilityElement&) const { return u"element"_s; }

    QString operator()(const std::vector<AccessibilityElement>&) const { return u"elements"_s; }
};

} // namespace

FakeAccessibilityTree::Element::Element(int number, QString name)
    : m_number(number)
    , m_name(std::move(name)) {}

AccessibilityElement FakeAccessibilityTree::Element::handle() {
    return AccessibilityElement(std::make_shared<FakeNode>(*this, m_number));
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::set(const QString& attribute, Value value) {
    m_attributes.insert_or_assign(attribute, std::move(value));
    return *this;
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::unset(const QString& attribute) {
    m_attributes.erase(attribute);
    return *this;
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::title(const QString& text) {
    return set(u"AXTitle"_s, text);
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::description(const QString& text) {
    return set(u"AXDescription"_s, text);
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::enabled(bool isEnabled) {
    return set(u"AXEnabled"_s, isEnabled);
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::place(const Rect& rect) {
    return set(u"AXPosition"_s, Point{rect.x, rect.y}).set(u"AXSize"_s, Size{rect.width, rect.height});
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::append(Element& element, const QString& attribute) {
    Value& value = m_attributes.try_emplace(attribute, Elements{}).first->second;
    std::get<Elements>(value).push_back(&element);
    return *this;
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::refuse(const QString& actionOrAttribute) {
    m_refused.insert(actionOrAttribute);
    return *this;
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::hang(bool isHung) {
    m_isHung = isHung;
    return *this;
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::whenPerformed(const QString& action, Change effect) {
    m_effects.insert_or_assign(action, std::move(effect));
    return *this;
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::Element::beforeRead(const QString& attribute, int number,
                                                                           Change change) {
    m_beforeReads.insert_or_assign({attribute, number}, std::move(change));
    return *this;
}

int FakeAccessibilityTree::Element::reads(const QString& attribute) const {
    const auto found = m_reads.find(attribute);
    return found == m_reads.end() ? 0 : found->second;
}

Rect FakeAccessibilityTree::Element::placement() const {
    const Point position = std::get<Point>(m_attributes.at(u"AXPosition"_s));
    const Size size = std::get<Size>(m_attributes.at(u"AXSize"_s));
    return {position.x, position.y, size.width, size.height};
}

FakeAccessibilityTree::FakeAccessibilityTree(const VirtualClock& clock)
    : log(clock)
    , m_clock(clock) {}

FakeAccessibilityTree::Element& FakeAccessibilityTree::add(const QString& name) {
    return addUntitled(name).title(name);
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::addUntitled(const QString& name) {
    return m_elements.emplace_back(static_cast<int>(m_elements.size()) + 1, name);
}

void FakeAccessibilityTree::remove(Element& element) {
    element.m_isGone = true;
    for (Element& holder : m_elements) {
        for (auto& [attribute, value] : holder.m_attributes) {
            if (auto* const elements = std::get_if<Element::Elements>(&value))
                std::erase(*elements, &element);
        }
    }
}

void FakeAccessibilityTree::setApplication(const QString& bundleIdentifier, Element& application) {
    m_applications.insert_or_assign(bundleIdentifier, &application);
}

void FakeAccessibilityTree::quitApplication(const QString& bundleIdentifier) {
    m_applications.erase(bundleIdentifier);
}

void FakeAccessibilityTree::after(Clock::Duration duration, Element::Change change) {
    m_changes.emplace(m_clock.now() + duration, std::move(change));
}

void FakeAccessibilityTree::catchUp() {
    while (!m_changes.empty() && m_changes.begin()->first <= m_clock.now()) {
        const auto change = m_changes.extract(m_changes.begin());
        change.mapped()();
    }
}

bool FakeAccessibilityTree::isAlive(const Element& element) const {
    return answers && !element.m_isGone && !element.m_isHung;
}

FakeAccessibilityTree::Element& FakeAccessibilityTree::elementOf(const AccessibilityElement& handle) {
    return dynamic_cast<const FakeNode&>(handle.node()).element;
}

bool FakeAccessibilityTree::isTrusted() {
    catchUp();
    return trusted;
}

bool FakeAccessibilityTree::requestTrust() {
    ++trustRequests;
    trusted = trusted || grantsTrustWhenAsked;
    return trusted;
}

std::optional<AccessibilityElement> FakeAccessibilityTree::application(const QString& bundleIdentifier) {
    catchUp();
    const auto found = m_applications.find(bundleIdentifier);
    return !answers || found == m_applications.end() ? std::nullopt : std::optional(found->second->handle());
}

std::optional<AccessibilityValue> FakeAccessibilityTree::attribute(const AccessibilityElement& element,
                                                                   QStringView name) {
    catchUp();
    Element& read = elementOf(element);
    const QString attribute = name.toString();
    const int number = ++read.m_reads[attribute];
    if (const auto change = read.m_beforeReads.extract({attribute, number}))
        change.mapped()();
    const auto found = read.m_attributes.find(attribute);
    if (!isAlive(read) || found == read.m_attributes.end())
        return std::nullopt;
    return std::visit(ToClient{}, found->second);
}

bool FakeAccessibilityTree::setAttribute(const AccessibilityElement& element, QStringView name,
                                         const AccessibilityValue& value) {
    catchUp();
    Element& written = elementOf(element);
    const QString attribute = name.toString();
    const QString call = attribute + u' ' + std::visit(Text{}, value) + u' ' + written.m_name;
    if (!isAlive(written) || written.m_refused.contains(attribute)) {
        log.add(call + u" refused"_s);
        return false;
    }
    log.add(call);
    if (const auto* const point = std::get_if<Point>(&value))
        written.set(attribute, *point);
    else if (const auto* const size = std::get_if<Size>(&value))
        written.set(attribute, *size);
    return true;
}

bool FakeAccessibilityTree::performAction(const AccessibilityElement& element, QStringView name) {
    catchUp();
    Element& performer = elementOf(element);
    const QString action = name.toString();
    const QString call = action + u' ' + performer.m_name;
    if (!isAlive(performer) || performer.m_refused.contains(action)) {
        log.add(call + u" refused"_s);
        return false;
    }
    log.add(call);
    if (const auto effect = performer.m_effects.find(action); effect != performer.m_effects.end()) {
        const Element::Change change = effect->second;
        change();
    }
    return true;
}

} // namespace corvanta::testing
