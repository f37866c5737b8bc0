// SPDX-License-Identifier: MIT
#include "TestMessages.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace corvanta::testing {

namespace {

MessageCollector* collector = nullptr;

std::string kindOf(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "information";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        return "fatal";
    }
    return "unknown";
}

/// What Qt 6.4 says of itself: a reply that a cache answers finds out late that it was given up, or the other way
/// round. It changes nothing, since the second of the two errors is dropped.
bool isOfQtItself(const QString& message) {
    return message.startsWith(QLatin1StringView("QNetworkReplyImplPrivate::error: Internal problem"));
}

} // namespace

void failOnUnexpectedMessages() {
    qInstallMessageHandler(&MessageCollector::handle);
}

MessageCollector::MessageCollector() {
    EXPECT_EQ(collector, nullptr) << "another collector lives already";
    collector = this;
}

MessageCollector::~MessageCollector() {
    collector = nullptr;
}

void MessageCollector::handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QByteArray text = qFormatLogMessage(type, context, message).toUtf8();
    if (type == QtDebugMsg || type == QtInfoMsg || isOfQtItself(message))
        std::fprintf(stderr, "%s\n", text.constData());
    else if (collector != nullptr)
        collector->m_messages.push_back(kindOf(type) + ": " + message.toStdString());
    else
        ADD_FAILURE() << "unexpected message: " << text.constData();
}

} // namespace corvanta::testing
