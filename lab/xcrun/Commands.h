// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The commands of `simctl`. Each takes the words behind its name and returns the exit status, or throws
/// CommandFailure; what else goes wrong is thrown as std::runtime_error.
namespace corvanta::lab {

int listCommand(const QStringList& arguments);

int bootCommand(const QStringList& arguments);
int bootStatusCommand(const QStringList& arguments);
int shutDownCommand(const QStringList& arguments);

int createCommand(const QStringList& arguments);
int cloneCommand(const QStringList& arguments);
int deleteCommand(const QStringList& arguments);
int eraseCommand(const QStringList& arguments);
int renameCommand(const QStringList& arguments);

int openURLCommand(const QStringList& arguments);
int locationCommand(const QStringList& arguments);
int interfaceCommand(const QStringList& arguments);
int statusBarCommand(const QStringList& arguments);
int privacyCommand(const QStringList& arguments);
int environmentCommand(const QStringList& arguments);
int screenCommand(const QStringList& arguments);

int helpCommand(const QStringList& arguments);

/// Takes an option with a value, "--name=value" or "--name value", out of the words. Absent when it is not there; the
/// last one counts. Throws CommandFailure with the command's usage when its value is missing.
[[nodiscard]] std::optional<QString> takeOption(QStringList& words, const QString& name, const QString& command);

} // namespace corvanta::lab
