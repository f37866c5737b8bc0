// SPDX-License-Identifier: MIT
// How long the gazetteer takes to answer each keystroke, beside SQLite's full-text search on the same data, and what
// opening it costs. Exits with 1 when a goal is missed.
#include "places/Gazetteer.h"

#include <QFile>
#include <QString>

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <sys/utsname.h>
#include <vector>

namespace {

using namespace corvanta;
using namespace Qt::Literals::StringLiterals;

constexpr std::size_t resultLimit = 10;
constexpr double goalMilliseconds = 2;
constexpr double goalOpening = 5;
constexpr long goalMemory = 2048;
constexpr int rounds = 25;
constexpr int openings = 50;
constexpr int randomNames = 500;
constexpr unsigned seed = 2'026;

/// Counts what this thread has used, so that whatever else the machine does is not counted.
class UsedTime {
public:
    void start() { m_start = now(); }

    [[nodiscard]] double milliseconds() const { return now() - m_start; }

private:
    static double now() {
        timespec used{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
        return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
    }

    double m_start = now();
};

double quantile(std::vector<double> values, double part) {
    const auto at = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
    std::ranges::nth_element(values, values.begin() + at);
    return values[static_cast<std::size_t>(at)];
}

QString fieldOf(const QString& file, const QString& field) {
    QFile text(file);
    if (!text.open(QIODevice::ReadOnly))
        return u"0"_s;
    for (const QString& line : QString::fromUtf8(text.readAll()).split(u'\n')) {
        if (line.startsWith(field))
            return line.section(u':', 1).simplified();
    }
    return u"0"_s;
}

/// Kilobytes that are this process's alone: what stands in a file is not, since the system may drop it at any time.
long privateMemory() {
    return fieldOf(u"/proc/self/smaps_rollup"_s, u"Anonymous"_s).section(u' ', 0, 0).toLong();
}

/// SQLite's full-text search over the same names and spellings, in memory, with indices of prefixes.
class FullTextSearch {
public:
    /// By population alone, which costs it nothing: a row's number is its rank. By match, as its own ranking has it.
    enum class Order { population, match };

    explicit FullTextSearch(const QString& path) {
        check(sqlite3_open(":memory:", &m_database));
        run("CREATE VIRTUAL TABLE places USING fts5(name, others, tokenize='unicode61 remove_diacritics 2', "
            "prefix='1 2 3 4')");
        run("BEGIN");
        const GazetteerFile file(path);
        sqlite3_stmt* const insertion = prepare("INSERT INTO places(rowid, name, others) VALUES(?, ?, ?)");
        std::string name;
        std::string others;
        for (std::uint32_t place = 0; place < file.placeCount(); ++place) {
            file.readName(place, name);
            file.readAlternatives(place, others);
            sqlite3_bind_int64(insertion, 1, place + 1);
            sqlite3_bind_text(insertion, 2, name.c_str(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(insertion, 3, others.c_str(), -1, SQLITE_TRANSIENT);
            sqlite3_step(insertion);
            sqlite3_reset(insertion);
        }
        sqlite3_finalize(insertion);
        run("COMMIT");
        run("INSERT INTO places(places) VALUES('optimize')");
        m_byPopulation = prepare("SELECT rowid FROM places WHERE places MATCH ? ORDER BY rowid LIMIT 10");
        m_byMatch = prepare("SELECT rowid FROM places WHERE places MATCH ? ORDER BY rank LIMIT 10");
    }

    FullTextSearch(const FullTextSearch&) = delete;
    FullTextSearch& operator=(const FullTextSearch&) = delete;

    ~FullTextSearch() {
        sqlite3_finalize(m_byPopulation);
        sqlite3_finalize(m_byMatch);
        sqlite3_close(m_database);
    }

    [[nodiscard]] std::vector<PlaceIndex> search(const QString& text, Order order) const {
        std::string question;
        for (const QString& word : text.split(u' ', Qt::SkipEmptyParts))
            question += '"' + QString(word).remove(u'"').toStdString() + "\"* ";
        sqlite3_stmt* const statement = order == Order::population ? m_byPopulation : m_byMatch;
        sqlite3_bind_text(statement, 1, question.c_str(), -1, SQLITE_TRANSIENT);
        std::vector<PlaceIndex> places;
        while (sqlite3_step(statement) == SQLITE_ROW)
            places.push_back(static_cast<PlaceIndex>(sqlite3_column_int64(statement, 0) - 1));
        sqlite3_reset(statement);
        return places;
    }

private:
    void check(int result) const {
        if (result != SQLITE_OK) {
            std::fprintf(stderr, "SQLite: %s\n", sqlite3_errmsg(m_database));
            std::exit(70);
        }
    }

    void run(const char* statement) const { check(sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr)); }

    [[nodiscard]] sqlite3_stmt* prepare(const char* text) const {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(m_database, text, -1, &statement, nullptr));
        return statement;
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_byPopulation = nullptr;
    sqlite3_stmt* m_byMatch = nullptr;
};

/// What stands in the field after each keystroke.
std::vector<QString> keystrokes(const QString& text) {
    std::vector<QString> steps;
    for (qsizetype length = 1; length <= text.size(); ++length) {
        if (!text.at(length - 1).isSpace())
            steps.push_back(text.first(length));
    }
    return steps;
}

using Search = std::function<std::vector<PlaceIndex>(const QString&)>;

std::vector<double> timesOf(const Search& search, const std::vector<QString>& texts, int repetitions) {
    std::vector<double> times;
    UsedTime timer;
    for (int round = 0; round < repetitions; ++round) {
        for (const QString& text : texts) {
            timer.start();
            const auto found = search(text);
            times.push_back(timer.milliseconds());
        }
    }
    return times;
}

bool measureOpening(const QString& path) {
    {
        const Gazetteer warm(path);
    }
    std::vector<double> times;
    UsedTime timer;
    for (int round = 0; round < openings; ++round) {
        timer.start();
        const Gazetteer gazetteer(path);
        times.push_back(timer.milliseconds());
    }
    const long before = privateMemory();
    const Gazetteer gazetteer(path);
    const long opened = privateMemory() - before;
    for (const QString& text : keystrokes(u"san francisco"_s))
        (void)gazetteer.search(text, resultLimit);
    const long searched = privateMemory() - before;
    const double median = quantile(times, 0.5);
    const double worst = quantile(times, 0.99);
    std::printf(
        "opening: p50 %.3f ms, p99 %.3f ms (goal: below %.0f ms); private memory %ld KiB, after a search %ld KiB "
        "(goal: below %ld KiB)\n\n",
        median, worst, goalOpening, opened, searched, goalMemory);
    return worst < goalOpening && opened < goalMemory && searched < goalMemory;
}

} // namespace

int main(int argc, char** argv) {
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(CORVANTA_GAZETTEER);
    utsname system{};
    uname(&system);
    const Gazetteer gazetteer(path);
    std::printf("%u places; %s %s, %s; SQLite %s\n", gazetteer.count(), system.sysname, system.release,
                qUtf8Printable(fieldOf(u"/proc/cpuinfo"_s, u"model name"_s)), sqlite3_libversion());
    bool isGood = measureOpening(path);

    const FullTextSearch fullText(path);
    std::vector<QString> drawn;
    std::mt19937 random(seed);
    for (int count = 0; count < randomNames; ++count) {
        const auto steps = keystrokes(gazetteer.name(static_cast<PlaceIndex>(random() % gazetteer.count())));
        drawn.insert(drawn.end(), steps.begin(), steps.end());
    }

    struct Task {
        QString name;
        std::vector<QString> texts;
        int repetitions;
    };

    const std::vector<Task> tasks{{u"s"_s, {u"s"_s}, rounds * 8},
                                  {u"san francisco"_s, keystrokes(u"san francisco"_s), rounds},
                                  {u"münchen"_s, keystrokes(u"münchen"_s), rounds},
                                  {u"sao paulo"_s, keystrokes(u"sao paulo"_s), rounds},
                                  {u"500 names"_s, drawn, 1}};
    const Search ours = [&](const QString& text) { return gazetteer.search(text, resultLimit); };
    const Search byPopulation = [&](const QString& text) {
        return fullText.search(text, FullTextSearch::Order::population);
    };
    const Search byMatch = [&](const QString& text) { return fullText.search(text, FullTextSearch::Order::match); };
    std::printf("each keystroke, in milliseconds   p50      p99 | FTS5 by population p50      p99   ratio | "
                "FTS5 by match p50      p99   ratio\n");
    for (const Task& task : tasks) {
        (void)timesOf(ours, task.texts, 1);
        (void)timesOf(byPopulation, task.texts, 1);
        const auto mine = timesOf(ours, task.texts, task.repetitions);
        const auto population = timesOf(byPopulation, task.texts, task.repetitions);
        const auto match = timesOf(byMatch, task.texts, task.texts.size() > 100 ? 1 : 2);
        const double p99 = quantile(mine, 0.99);
        std::printf("%-15s %6zu times %8.4f %8.4f | %18.4f %12.4f %6.1fx | %13.4f %8.4f %6.1fx\n",
                    qUtf8Printable(task.name), mine.size(), quantile(mine, 0.5), p99, quantile(population, 0.5),
                    quantile(population, 0.99), quantile(population, 0.5) / quantile(mine, 0.5), quantile(match, 0.5),
                    quantile(match, 0.99), quantile(match, 0.5) / quantile(mine, 0.5));
        isGood = isGood && p99 < goalMilliseconds && p99 < quantile(match, 0.99);
    }
    return isGood ? 0 : 1;
}
