// SPDX-License-Identifier: MIT
#include "simulator/ProcessCommand.h"

namespace corvanta {

QString ProcessCommand::displayString() const {
    return (QStringList{executablePath} + arguments).join(u' ');
}

} // namespace corvanta
