// SPDX-License-Identifier: MIT
#include "AtspiApplications.h"

#include "AtspiMessages.h"

#include <QCoreApplication>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>
#include <chrono>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr std::chrono::milliseconds lifetime{100};

} // namespace

AtspiApplications::AtspiApplications(AtspiBus& bus, HangAllowance& allowance)
    : m_bus(bus)
    , m_allowance(allowance) {}

QList<AtspiReference> AtspiApplications::named(const QString& name) {
    update();
    QList<AtspiReference> roots;
    for (const Application& application : m_applications) {
        if (application.name == name)
            roots.append(application.root);
    }
    return roots;
}

QList<AtspiReference> AtspiApplications::namedLike(const QString& process) {
    const auto found =
        std::ranges::find(m_applications, process, [](const Application& application) { return application.root.bus; });
    // A copy, since looking for the name may renew the list.
    const std::optional<QString> name = found == m_applications.end() ? std::nullopt : found->name;
    return name ? named(*name) : QList<AtspiReference>();
}

bool AtspiApplications::answers() {
    update();
    return m_hasAnswered && !(m_rootsCall && m_rootsCall->isOverdue());
}

std::optional<std::uint32_t> AtspiApplications::processId(const QString& process) {
    const auto found =
        std::ranges::find(m_applications, process, [](const Application& application) { return application.root.bus; });
    return found == m_applications.end() ? std::nullopt : found->processId;
}

bool AtspiApplications::contains(const QString& process) const {
    return std::ranges::any_of(m_applications,
                               [&](const Application& application) { return application.root.bus == process; });
}

void AtspiApplications::clear() {
    m_applications.clear();
    m_rootsCall.reset();
    m_age.invalidate();
    m_hasAnswered = false;
}

std::optional<QDBusPendingCall> AtspiApplications::ask() {
    if (m_rootsCall && m_rootsCall->isStale())
        takeAnswer();
    if (!m_rootsCall) {
        m_rootsCall.emplace(m_bus.call({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s},
                                       u"org.a11y.atspi.Accessible"_s, u"GetChildren"_s));
    }
    return m_rootsCall->pending.isFinished() ? std::nullopt : std::optional(m_rootsCall->pending);
}

void AtspiApplications::update() {
    if (!m_age.hasExpired(lifetime.count()))
        return;
    (void)ask();
    if (!m_allowance.wait(*m_rootsCall)) {
        if (m_rootsCall->isOverdue())
            m_applications.clear();
        return;
    }
    if (!takeAnswer())
        return;
    m_age.start();
    for (Application& application : m_applications)
        takeProcessId(application);
    for (Application& application : m_applications)
        askName(application);
    for (Application& application : m_applications)
        takeName(application);
}

bool AtspiApplications::takeAnswer() {
    const std::optional<QList<AtspiReference>> roots = parseReferences(m_rootsCall->pending.reply());
    m_rootsCall.reset();
    m_hasAnswered = roots.has_value();
    if (roots) {
        takeRoots(*roots);
    } else {
        m_applications.clear();
        m_age.invalidate();
    }
    return m_hasAnswered;
}

void AtspiApplications::takeRoots(const QList<AtspiReference>& roots) {
    std::vector<Application> applications;
    for (const AtspiReference& root : roots) {
        const auto known = std::ranges::find(m_applications, root, &Application::root);
        if (known != m_applications.end()) {
            applications.push_back(std::move(*known));
        } else {
            applications.push_back({});
            applications.back().root = root;
        }
        Application& application = applications.back();
        if (!application.processId && !application.processIdCall) {
            application.processIdCall.emplace(m_bus.call({u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s},
                                                         u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s,
                                                         {root.bus}));
        }
    }
    m_applications = std::move(applications);
}

void AtspiApplications::takeProcessId(Application& application) {
    if (!application.processIdCall || !m_allowance.wait(*application.processIdCall))
        return;
    const QDBusPendingReply<quint32> processId = application.processIdCall->pending;
    if (processId.isValid())
        application.processId = processId.value();
    application.processIdCall.reset();
}

void AtspiApplications::askName(Application& application) {
    // This process is on the bus as well, and cannot answer while it waits.
    const auto ownProcessId = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
    if (application.name || application.nameCall || application.processId.value_or(ownProcessId) == ownProcessId)
        return;
    application.nameCall.emplace(m_bus.call(application.root, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                            {u"org.a11y.atspi.Accessible"_s, u"Name"_s}));
}

void AtspiApplications::takeName(Application& application) {
    if (!application.nameCall || !m_allowance.wait(*application.nameCall))
        return;
    const QDBusPendingReply<QDBusVariant> name = application.nameCall->pending;
    if (name.isValid() && !name.value().variant().toString().isEmpty())
        application.name = name.value().variant().toString();
    application.nameCall.reset();
}

} // namespace corvanta
