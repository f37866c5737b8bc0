// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>
#include <string>

QT_BEGIN_NAMESPACE

/// How test failures show a text.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

/// How test failures show bytes.
inline void PrintTo(const QByteArray& bytes, std::ostream* stream) {
    *stream << '"' << bytes.toStdString() << '"';
}

QT_END_NAMESPACE

namespace corvanta::testing {

/// Names a parameterised test by the `name` of its case.
struct CaseName {
    template<typename Info>
    std::string operator()(const Info& info) const {
        return info.param.name;
    }
};

} // namespace corvanta::testing
