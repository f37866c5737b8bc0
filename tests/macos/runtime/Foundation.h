// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <string>

#import <Foundation/Foundation.h>

namespace corvanta::testing {

[[nodiscard]] NSString* makeText(const QString& text);
[[nodiscard]] std::string textIn(NSString* text);
[[nodiscard]] NSError* makeError(const QString& description);
/// A URL's or a file's whole address.
[[nodiscard]] std::string addressOf(NSURL* url);
/// Whether a number came from a flag.
[[nodiscard]] bool isFlag(NSNumber* number);

/// What the user's defaults hold.
[[nodiscard]] std::map<std::string, id>& storedDefaults();

} // namespace corvanta::testing
