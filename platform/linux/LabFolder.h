// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"

#include <QString>

namespace corvanta {

/// Where the device lab's programs and data are.
class LabFolder {
public:
    /// The lab that belongs to this application, or the one that CORVANTA_LAB_DIR names, with the data where the lab's
    /// programs have it.
    LabFolder();

    LabFolder(QString programs, QString home);

    /// Absolute path of one of the lab's programs, whether it exists or not.
    [[nodiscard]] QString program(const QString& name) const;

    /// Absolute path of a file shipped with the programs.
    [[nodiscard]] QString shared(const QString& name) const;

    /// The system that the lab plays: the user's own choice, else the shipped one; 0.0 when neither can be read.
    [[nodiscard]] OperatingSystemVersion operatingSystemVersion() const;

private:
    QString m_programs;
    QString m_home;
};

} // namespace corvanta
