// SPDX-License-Identifier: MIT
#include "places/SharedGazetteer.h"

#include "places/GazetteerError.h"

#include <utility>

namespace corvanta {

SharedGazetteer::SharedGazetteer(QString path)
    : m_path(std::move(path)) {}

const Gazetteer* SharedGazetteer::get() {
    if (!std::exchange(m_isOpened, true)) {
        try {
            m_gazetteer.emplace(m_path);
        } catch (const GazetteerError& error) {
            m_problem = error.errorDescription();
        }
    }
    return m_gazetteer ? &*m_gazetteer : nullptr;
}

} // namespace corvanta
