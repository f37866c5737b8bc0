// SPDX-License-Identifier: MIT
#include "workspace/WorkspaceTransitionError.h"

namespace corvanta {

QString WorkspaceTransitionError::errorDescription() const {
    return QStringLiteral("The operation couldn’t be completed. (CorvantaCore.WorkspaceTransitionError error 0.)");
}

} // namespace corvanta
