// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "CallLog.h"

#include <QSet>

#include <deque>
#include <functional>
#include <map>

namespace corvanta::testing {

/// Other programs' user interfaces, as a test describes them and lets them change.
///
/// Changes happen at a point of the virtual time, before the n-th read of an attribute, or as the effect of an action.
/// Every action and every write is recorded in order, refused ones too. Each read makes handles of its own, so that
/// only their identity tells elements apart.
class FakeAccessibilityTree final : public AccessibilityClient {
public:
    /// One element; lives as long as the tree.
    class Element {
    public:
        using Elements = std::vector<Element*>;
        using Value = std::variant<QString, bool, double, Point, Size, Element*, Elements>;
        using Change = std::function<void()>;

        Element(int number, QString name);
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;

        /// A handle as a client gets it.
        [[nodiscard]] AccessibilityElement handle();

        /// The name under which the element is recorded.
        [[nodiscard]] const QString& name() const { return m_name; }

        Element& set(const QString& attribute, Value value);
        Element& unset(const QString& attribute);
        Element& title(const QString& text);
        Element& description(const QString& text);
        Element& enabled(bool isEnabled);
        /// Position and size, the origin at the top left.
        Element& place(const Rect& rect);
        /// Adds to the list under `attribute`.
        Element& append(Element& element, const QString& attribute = QStringLiteral("AXChildren"));

        /// Refuses the action or the write of the attribute with that name.
        Element& refuse(const QString& actionOrAttribute);
        /// Answers no read and refuses everything, or ends that, as the elements of a program do that hangs.
        Element& hang(bool isHung);
        /// What a successful action brings about.
        Element& whenPerformed(const QString& action, Change effect);
        /// What happens just before the attribute is read for the `number`-th time, 1 being the first.
        Element& beforeRead(const QString& attribute, int number, Change change);

        /// How often the attribute has been read.
        [[nodiscard]] int reads(const QString& attribute) const;
        /// Where the element is now, the origin at the top left.
        [[nodiscard]] Rect placement() const;

    private:
        friend class FakeAccessibilityTree;

        const int m_number;
        const QString m_name;
        bool m_isGone = false;
        bool m_isHung = false;
        std::map<QString, Value> m_attributes;
        QSet<QString> m_refused;
        std::map<QString, Change> m_effects;
        std::map<QString, int> m_reads;
        std::map<std::pair<QString, int>, Change> m_beforeReads;
    };

    explicit FakeAccessibilityTree(const VirtualClock& clock);

    /// A new element that stands nowhere yet. `name` is its title, too.
    Element& add(const QString& name);
    /// A new element that stands nowhere yet and has no title.
    Element& addUntitled(const QString& name);
    /// Takes the element out of every list; its handles answer nothing from now on.
    void remove(Element& element);

    void setApplication(const QString& bundleIdentifier, Element& application);
    void quitApplication(const QString& bundleIdentifier);

    /// The element behind a client's handle.
    [[nodiscard]] static Element& elementOf(const AccessibilityElement& handle);

    /// Makes `change` happen once that much time has passed.
    void after(Clock::Duration duration, Element::Change change);

    [[nodiscard]] bool isTrusted() override;
    bool requestTrust() override;
    [[nodiscard]] std::optional<AccessibilityElement> application(const QString& bundleIdentifier) override;
    [[nodiscard]] std::optional<AccessibilityValue> attribute(const AccessibilityElement& element,
                                                              QStringView name) override;
    bool setAttribute(const AccessibilityElement& element, QStringView name, const AccessibilityValue& value) override;
    bool performAction(const AccessibilityElement& element, QStringView name) override;

    /// "AXPress Develop", "AXPosition 8,25 Simulator", with " refused" behind it where that was the answer.
    CallLog log;
    bool trusted = true;
    /// Whether anything at all answers.
    bool answers = true;
    bool grantsTrustWhenAsked = false;
    int trustRequests = 0;

private:
    void catchUp();
    /// Whether the element answers reads and takes actions and writes.
    [[nodiscard]] bool isAlive(const Element& element) const;
    const VirtualClock& m_clock;
    std::deque<Element> m_elements;
    std::map<QString, Element*> m_applications;
    std::multimap<Clock::TimePoint, Element::Change> m_changes;
};

} // namespace corvanta::testing
