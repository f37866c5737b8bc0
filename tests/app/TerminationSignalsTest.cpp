// SPDX-License-Identifier: MIT
#include "shell/TerminationSignals.h"

#include "TaskWaiting.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// No file of this process may have a byte, while this lives.
class FileSizeLimit {
public:
    FileSizeLimit() {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit none = m_before;
        none.rlim_cur = 0;
        ::setrlimit(RLIMIT_FSIZE, &none);
    }

    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_before{};
};

TEST(TerminationSignals, AreHeardOnTheMainThread) {
    TerminationSignals terminationSignals;
    int heard = 0;
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, [&heard] { ++heard; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const int before = heard;
        std::raise(signal);
        EXPECT_EQ(heard, before);
        EXPECT_TRUE(testing::waitUntil([&] { return heard == before + 1; }));
    }
}

TEST(TerminationSignals, LetAWritingOverALimitFail) {
    const TerminationSignals terminationSignals;
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"preferences"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    qint64 written = 0;
    {
        const FileSizeLimit limit;
        written = file.write("anything");
    }
    EXPECT_EQ(written, -1);
    EXPECT_EQ(file.size(), 0);
    EXPECT_EQ(file.write("anything"), 8);
}

} // namespace

} // namespace corvanta
