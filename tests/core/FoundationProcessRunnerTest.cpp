// SPDX-License-Identifier: MIT
#include "simulator/FoundationProcessRunner.h"

#include "Printing.h"
#include "TaskWaiting.h"
#include "simulator/ProcessLaunchError.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::runTask;
using testing::waitUntil;
using testing::WatchedTask;

ProcessCommand helper(const QStringList& arguments) {
    return {QStringLiteral(CORVANTA_PROCESS_HELPER), arguments};
}

ProcessResult resultOf(const QStringList& arguments) {
    return runTask(FoundationProcessRunner().run(helper(arguments)));
}

/// What a file holds; nothing when there is none.
QByteArray textOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Makes standard input a file for as long as it lives.
class InputFromFile {
public:
    explicit InputFromFile(const QString& path)
        : m_before(::dup(STDIN_FILENO)) {
        const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY);
        ::dup2(file, STDIN_FILENO);
        ::close(file);
    }

    InputFromFile(const InputFromFile&) = delete;
    InputFromFile& operator=(const InputFromFile&) = delete;

    ~InputFromFile() {
        ::dup2(m_before, STDIN_FILENO);
        ::close(m_before);
    }

private:
    int m_before;
};

TEST(FoundationProcessRunner, GivesEmptyStreamsForAChildThatWritesNothing) {
    const ProcessResult result = resultOf({u"quiet"_s});
    EXPECT_EQ(result, (ProcessResult{0, QByteArray(), QByteArray()}));
}

TEST(FoundationProcessRunner, TakesAStatusOtherThanZeroAsAResult) {
    EXPECT_EQ(resultOf({u"exit"_s, u"1"_s, u"no such device\n"_s}), (ProcessResult{1, {}, "no such device\n"}));
    EXPECT_EQ(resultOf({u"exit"_s, u"255"_s}).terminationStatus, 255);
}

TEST(FoundationProcessRunner, HandsOverEveryArgumentUnchanged) {
    const ProcessResult result = resultOf({u"echo"_s, u"a b"_s, QString(), u"$HOME"_s, u"\"q\""_s, u"é"_s, u"*"_s});
    EXPECT_EQ(result.standardOutput, "a b\n\n$HOME\n\"q\"\né\n*\n");
    EXPECT_EQ(result.standardError, "");
}

TEST(FoundationProcessRunner, KeepsTheStreamsApartAndAsRawBytes) {
    const ProcessResult result = resultOf({u"last-words"_s});
    EXPECT_EQ(result.standardOutput, "out");
    EXPECT_EQ(result.standardError, "err");
}

TEST(FoundationProcessRunner, ReportsTheNumberOfTheSignalThatEndedAChild) {
    for (const int number : {SIGKILL, SIGTERM, SIGHUP})
        EXPECT_EQ(resultOf({u"raise"_s, QString::number(number)}).terminationStatus, number);
}

TEST(FoundationProcessRunner, CollectsFiftyMegabytesOfOutput) {
    constexpr int size = 50'000'000;
    const ProcessResult result = resultOf({u"write"_s, u"stdout"_s, QString::number(size)});
    EXPECT_EQ(result.standardOutput.size(), size);
    EXPECT_EQ(result.standardError.size(), 0);
}

TEST(FoundationProcessRunner, CollectsFiftyMegabytesOfErrors) {
    constexpr int size = 50'000'000;
    const ProcessResult result = resultOf({u"write"_s, u"stderr"_s, QString::number(size)});
    EXPECT_EQ(result.standardOutput.size(), 0);
    EXPECT_EQ(result.standardError.size(), size);
}

TEST(FoundationProcessRunner, CollectsFiftyMegabytesOfBothAtOnce) {
    constexpr int size = 50'000'000;
    const ProcessResult result = resultOf({u"write"_s, u"both"_s, QString::number(size)});
    EXPECT_EQ(result.standardOutput, QByteArray(size, 'x'));
    EXPECT_EQ(result.standardError, QByteArray(size, 'x'));
}

TEST(FoundationProcessRunner, InheritsTheEnvironmentAndTheWorkingDirectory) {
    qputenv("CORVANTA_TEST_VALUE", "inherited");
    EXPECT_EQ(resultOf({u"environment"_s, u"CORVANTA_TEST_VALUE"_s}).standardOutput, "inherited");
    qunsetenv("CORVANTA_TEST_VALUE");
    EXPECT_EQ(resultOf({u"directory"_s}).standardOutput, QFile::encodeName(QDir::current().canonicalPath()));
}

TEST(FoundationProcessRunner, InheritsStandardInput) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"input"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("from the parent");
    file.close();
    const InputFromFile input(file.fileName());
    EXPECT_EQ(resultOf({u"cat"_s}).standardOutput, "from the parent");
}

/// The launch error of a command; nothing when it runs.
std::optional<ProcessLaunchError> launchError(const QString& path) {
    try {
        (void)runTask(FoundationProcessRunner().run({path, {}}));
        return std::nullopt;
    } catch (const ProcessLaunchError& error) {
        return error;
    }
}

TEST(FoundationProcessRunner, FailsForAPathThatDoesNotExist) {
    const auto error = launchError(u"/no/such/program"_s);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->executablePath(), u"/no/such/program");
    EXPECT_TRUE(error->errorDescription().contains(u"No such file or directory")) << error->what();
    EXPECT_EQ(error->recoverySuggestion(), std::nullopt);
}

TEST(FoundationProcessRunner, FailsForAFileThatIsNotExecutable) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"text"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const auto error = launchError(file.fileName());
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->errorDescription().contains(u"Permission denied")) << error->what();
}

TEST(FoundationProcessRunner, FailsForAFolder) {
    EXPECT_TRUE(launchError(QDir::tempPath()));
}

TEST(FoundationProcessRunner, NeverSearchesForAProgram) {
    EXPECT_TRUE(launchError(u"sh"_s));
}

TEST(FoundationProcessRunner, LeavesTheCallerRunningMeanwhile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"go"_s);
    FoundationProcessRunner runner;
    const WatchedTask<ProcessResult> stubborn(runner.run(helper({u"stubborn"_s, path})));
    const WatchedTask<ProcessResult> quiet(runner.run(helper({u"quiet"_s})));
    ASSERT_TRUE(waitUntil([&quiet] { return quiet.isDone(); }));
    EXPECT_FALSE(stubborn.isDone());
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    ASSERT_TRUE(waitUntil([&stubborn] { return stubborn.isDone(); }));
    EXPECT_EQ(stubborn.result(), (ProcessResult{0, "ready\n", {}}));
}

TEST(FoundationProcessRunner, RunsManyChildrenAtATime) {
    std::vector<WatchedTask<ProcessResult>> tasks;
    FoundationProcessRunner runner;
    for (int status = 0; status < 20; ++status)
        tasks.emplace_back(runner.run(helper({u"exit"_s, QString::number(status), u"x"_s})));
    for (int status = 0; status < 20; ++status) {
        const auto& task = tasks[static_cast<std::size_t>(status)];
        ASSERT_TRUE(waitUntil([&task] { return task.isDone(); }));
        EXPECT_EQ(task.result(), (ProcessResult{status, {}, "x"}));
    }
}

TEST(FoundationProcessRunner, LetsTheChildOfADroppedTaskRunToItsEnd) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"go"_s);
    const QString last = folder.filePath(u"last"_s);
    {
        FoundationProcessRunner runner;
        const QCoro::Task<ProcessResult> dropped = runner.run(helper({u"stubborn"_s, path, last}));
        const QCoro::Task<ProcessResult> failing = runner.run({u"/no/such/program"_s, {}});
    }
    (void)resultOf({u"quiet"_s});
    EXPECT_FALSE(QFile::exists(last));
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    EXPECT_TRUE(waitUntil([&last] { return textOf(last) == "done"; }));
    // Later children end after it, and nothing is left that could fall over.
    for (int turn = 0; turn < 5; ++turn)
        EXPECT_EQ(resultOf({u"quiet"_s}).terminationStatus, 0);
}

TEST(FoundationProcessRunner, EndsWithTheChildWhileAGrandchildKeepsBothStreams) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"go"_s);
    const QString last = folder.filePath(u"last"_s);
    EXPECT_EQ(resultOf({u"leave-child"_s, path, last}), (ProcessResult{3, "out", "err"}));
    EXPECT_FALSE(QFile::exists(last));
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    ASSERT_TRUE(waitUntil([&last] { return textOf(last).size() > 0; }));
    // It would have waited in vain, had the run waited for the streams to end.
    EXPECT_EQ(textOf(last), "released");
}

} // namespace
} // namespace corvanta
