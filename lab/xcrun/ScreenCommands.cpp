// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "DeviceCatalogue.h"
#include "MovieWriter.h"
#include "Session.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace corvanta::lab {

namespace {

constexpr std::chrono::milliseconds frameTime = 66ms;

/// What both operations take before the file's name.
struct Options {
    QString mask = u"ignored"_s;
    QString file;
};

/// Takes the common options out of the words, and the file, which must be the last that is left.
Options takeOptions(QStringList& words) {
    Options options;
    options.mask = takeOption(words, u"--mask"_s, u"io"_s).value_or(options.mask);
    if (!QStringList{u"ignored"_s, u"alpha"_s, u"black"_s}.contains(options.mask)) {
        throw usage(u"io"_s, u"Invalid mask policy: "_s + options.mask);
    }
    const QString display = takeOption(words, u"--display"_s, u"io"_s).value_or(u"internal"_s);
    if (display != u"internal") {
        throw usage(u"io"_s, u"Invalid display: "_s + display);
    }
    words.removeOne(u"--"_s);
    if (words.size() != 1 || (words.first().startsWith(u'-') && words.first() != u"-")) {
        throw usage(u"io"_s, words.isEmpty() ? QString() : u"Unknown option: "_s + words.first());
    }
    const QUrl url(words.first());
    options.file = url.isLocalFile() ? url.toLocalFile() : words.first();
    return options;
}

CommandFailure cannotWrite(const QString& file, const QString& reason) {
    return failure(posixDomain, noEntry, u"The file %1 could not be written.\n%2"_s.arg(file, reason));
}

int screenshot(const QString& word, QStringList words) {
    static const QMap<QString, QString> extensions{
        {u"png"_s, u"png"_s},   {u"jpg"_s, u"jpeg"_s}, {u"jpeg"_s, u"jpeg"_s}, {u"tif"_s, u"tiff"_s},
        {u"tiff"_s, u"tiff"_s}, {u"bmp"_s, u"bmp"_s},  {u"gif"_s, u"gif"_s}};
    const auto type = takeOption(words, u"--type"_s, u"io"_s);
    const Options options = takeOptions(words);
    DeviceBus::ScreenshotOptions wanted{.mask = options.mask};
    bool isDetected = false;
    if (type) {
        if (!extensions.contains(type->toLower())) {
            throw usage(u"io"_s, u"Unsupported type: "_s + *type);
        }
        wanted.format = extensions[type->toLower()];
    } else if (const auto found = extensions.find(QFileInfo(options.file).suffix().toLower());
               found != extensions.end()) {
        wanted.format = *found;
        isDetected = true;
    }
    Session session;
    const Device device = session.runningDevice(word);
    if (isDetected) {
        printError(u"Detected file type '%1' from extension\n"_s.arg(wanted.format.toUpper()));
    }
    const QByteArray picture = session.bus().screenshot(device.udid, wanted, requestLimit);
    if (options.file == u"-") {
        std::fwrite(picture.constData(), 1, std::size_t(picture.size()), stdout);
        std::fflush(stdout);
        return 0;
    }
    QSaveFile file(options.file);
    if (!file.open(QIODevice::WriteOnly) || file.write(picture) != picture.size() || !file.commit()) {
        throw cannotWrite(options.file, file.errorString());
    }
    printError(u"Wrote screenshot to: %1\n"_s.arg(options.file));
    return 0;
}

/// The signals that end a recording, held back so that they can be waited for.
sigset_t endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

/// Waits for a signal until that moment; whether one came.
bool isEndedBefore(std::chrono::steady_clock::time_point moment, const sigset_t& signals) {
    const auto rest = std::max(moment - std::chrono::steady_clock::now(), std::chrono::steady_clock::duration(0));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(rest);
    const timespec limit{.tv_sec = seconds.count(),
                         .tv_nsec = std::chrono::duration_cast<std::chrono::nanoseconds>(rest - seconds).count()};
    return sigtimedwait(&signals, nullptr, &limit) > 0;
}

int recordVideo(const QString& word, QStringList words) {
    const QString codec = takeOption(words, u"--codec"_s, u"io"_s).value_or(u"jpeg"_s);
    if (!QStringList{u"hevc"_s, u"h264"_s, u"jpeg"_s}.contains(codec)) {
        throw usage(u"io"_s, u"Unsupported codec: "_s + codec);
    }
    const bool isForced = words.removeAll(u"--force"_s) + words.removeAll(u"-f"_s) > 0;
    const Options options = takeOptions(words);
    // Before the session has a thread for its bus: a thread that does not hold them back would be ended by them.
    const sigset_t signals = endSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    Session session;
    const Device device = session.runningDevice(word);
    const DeviceType* const type = findDeviceType(device.deviceType);
    if (!isForced && QFileInfo::exists(options.file)) {
        throw failure(posixDomain, fileExists, u"The file %1 exists; --force writes over it."_s.arg(options.file));
    }
    if (codec != u"jpeg") {
        printError(u"Note: The device lab records Motion JPEG instead of %1.\n"_s.arg(codec));
    }
    std::optional<MovieWriter> movie;
    try {
        movie.emplace(options.file, type != nullptr ? type->screen : QSize(1, 1));
    } catch (const std::runtime_error& problem) {
        throw cannotWrite(options.file, QString::fromUtf8(problem.what()));
    }
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    };
    QByteArray last;
    bool isEnded = false;
    while (!isEnded) {
        const auto begin = std::chrono::steady_clock::now();
        QByteArray picture;
        try {
            picture = session.bus().screenshot(device.udid, {.format = u"jpeg"_s, .mask = options.mask, .scale = 1},
                                               requestLimit);
        } catch (const DeviceBusError&) {
            if (movie->pictures() == 0) {
                throw;
            }
            // The device went away; what was seen is kept.
            break;
        }
        if (picture != last) {
            movie->add(picture, movie->pictures() == 0 ? 0ms : elapsed());
            if (movie->pictures() == 1) {
                printError(u"Recording started\n"_s);
            }
            last = std::move(picture);
        }
        isEnded = isEndedBefore(begin + frameTime, signals);
    }
    print(u"Recording completed. Writing to disk.\n"_s);
    movie->finish(std::max(elapsed(), frameTime));
    print(u"\nWrote video to: %1\n"_s.arg(options.file));
    return 0;
}

} // namespace

int screenCommand(const QStringList& arguments) {
    if (arguments.size() < 2) {
        throw usage(u"io"_s);
    }
    if (arguments[1] == u"screenshot") {
        return screenshot(arguments[0], arguments.sliced(2));
    }
    if (arguments[1] == u"recordVideo") {
        return recordVideo(arguments[0], arguments.sliced(2));
    }
    throw usage(u"io"_s);
}

} // namespace corvanta::lab
