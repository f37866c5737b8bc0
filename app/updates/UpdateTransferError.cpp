// SPDX-License-Identifier: MIT
#include "updates/UpdateTransferError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Description {
    QString operator()(const UpdateTransferError::Failed& error) const { return error.description; }

    QString operator()(const UpdateTransferError::TimedOut& /*error*/) const { return u"The request timed out."_s; }

    QString operator()(const UpdateTransferError::TooLarge& /*error*/) const {
        return u"The update server returned too much data."_s;
    }
};

} // namespace

QString UpdateTransferError::errorDescription() const {
    return std::visit(Description{}, m_case);
}

} // namespace corvanta
