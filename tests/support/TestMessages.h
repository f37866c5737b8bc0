// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <string>
#include <vector>

namespace corvanta::testing {

/// From now on a warning, and whatever is worse, fails the running test, unless a MessageCollector takes it.
///
/// Other messages go to standard error. For a test program's `main`, before it makes the application object.
void failOnUnexpectedMessages();

/// Takes warnings, and whatever is worse, for itself while it lives, so that a test can tell what it expects.
///
/// One at a time. Main thread only.
class MessageCollector {
public:
    MessageCollector();
    MessageCollector(const MessageCollector&) = delete;
    MessageCollector& operator=(const MessageCollector&) = delete;
    ~MessageCollector();

    /// The messages so far, each behind its kind: "critical: Out of cheese".
    [[nodiscard]] const std::vector<std::string>& messages() const { return m_messages; }

private:
    friend void failOnUnexpectedMessages();

    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);

    std::vector<std::string> m_messages;
};

} // namespace corvanta::testing
