// SPDX-License-Identifier: MIT
#include "workspace/URLNormalizationError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Description {
    QString operator()(const URLNormalizationError::UnsupportedScheme& error) const {
        return u"The "_s + error.scheme + u" URL scheme is not supported."_s;
    }

    QString operator()(const URLNormalizationError::Invalid& error) const {
        return error.input + u" is not a valid webpage URL."_s;
    }

    QString operator()(const URLNormalizationError::Empty& /*error*/) const { return u"Enter a webpage URL."_s; }
};

} // namespace

URLNormalizationError URLNormalizationError::unsupportedScheme(QString scheme) {
    return URLNormalizationError(UnsupportedScheme{std::move(scheme)});
}

URLNormalizationError URLNormalizationError::invalid(QString input) {
    return URLNormalizationError(Invalid{std::move(input)});
}

URLNormalizationError URLNormalizationError::empty() {
    return URLNormalizationError(Empty{});
}

QString URLNormalizationError::errorDescription() const {
    return std::visit(Description{}, m_case);
}

std::optional<QString> URLNormalizationError::recoverySuggestion() const {
    return u"Use an HTTP or HTTPS address, for example http://localhost:3000."_s;
}

} // namespace corvanta
