// SPDX-License-Identifier: MIT
#include "workspace/URLNormalizer.h"

#include "support/Text.h"

namespace corvanta::URLNormalizer {

using namespace Qt::Literals::StringLiterals;

URL normalize(QStringView input) {
    const QString trimmed = trimmedText(input);
    if (trimmed.isEmpty())
        throw URLNormalizationError::empty();

    const auto url = URL::parse(trimmed.contains("://"_L1) ? trimmed : "http://"_L1 + trimmed);
    if (!url || !url->scheme())
        throw URLNormalizationError::invalid(trimmed);

    const QString scheme = url->scheme()->toLower();
    if (scheme != "http"_L1 && scheme != "https"_L1)
        throw URLNormalizationError::unsupportedScheme(scheme);
    if (url->host().value_or(QString()).isEmpty())
        throw URLNormalizationError::invalid(trimmed);
    return *url;
}

} // namespace corvanta::URLNormalizer
