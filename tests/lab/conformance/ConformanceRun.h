// SPDX-License-Identifier: MIT
#pragma once

#include "Transcript.h"

#include "DeviceSet.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace corvanta {

/// A home of its own with the three devices that the transcripts speak of: {phone}, {older} and {lost}, whose runtime
/// and model are not there. {home}, {set}, {files} and {tools} are folders.
class ConformanceRun {
public:
    /// Lays the devices out. With `hasBus` the programs keep the desktop's session bus, else they have none.
    explicit ConformanceRun(bool hasBus);

    /// Runs every command of the transcript and expects what it says.
    void expect(const Transcript& transcript) const;

    [[nodiscard]] const TranscriptValues& values() const { return m_values; }

private:
    void layOut();

    QTemporaryDir m_home;
    TranscriptValues m_values;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

/// Every transcript of that file beside the tests.
[[nodiscard]] std::vector<Transcript> transcriptsOf(const char* file);

} // namespace corvanta
