// SPDX-License-Identifier: MIT
#pragma once

#include "GazetteerBuilder.h"
#include "LinuxPlaceSearch.h"
#include "PlaceCompleter.h"
#include "TaskWaiting.h"
#include "VirtualClock.h"
#include "WebServer.h"

#include <QByteArrayList>
#include <QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvanta {

inline QByteArray feature(const QByteArray& name, const QByteArray& key, double latitude, double longitude) {
    return R"({"geometry":{"coordinates":[)" + QByteArray::number(longitude) + ',' + QByteArray::number(latitude) +
           R"(]},"properties":{"name":")" + name + R"(","country":"Somewhere","osm_key":")" + key + R"("}})";
}

inline QByteArray answer(const QByteArrayList& features) {
    return R"({"features":[)" + features.join(',') + "]}";
}

inline QByteArray gazetteerBytes() {
    return testing::GazetteerBuilder(
               {{QStringLiteral("Paris"),
                 2'138'551,
                 {48.85341, 2.3488},
                 QStringLiteral("Île-de-France"),
                 QStringLiteral("France")},
                {QStringLiteral("Parma"),
                 198'292,
                 {44.8, 10.33},
                 QStringLiteral("Emilia-Romagna"),
                 QStringLiteral("Italy")},
                {QStringLiteral("Paris"),
                 24'782,
                 {33.66, -95.55},
                 QStringLiteral("Texas"),
                 QStringLiteral("United States")},
                {QStringLiteral("Singapore"), 5'638'700, {1.28967, 103.85007}, {}, QStringLiteral("Singapore")}})
        .file();
}

inline std::shared_ptr<SharedGazetteer> gazetteerAt(const QString& path) {
    return std::make_shared<SharedGazetteer>(path);
}

/// A completer with its delegate, on a gazetteer of few places and a service on loopback.
class LinuxPlaceSearchTest : public ::testing::Test, protected PlaceCompleterDelegate {
protected:
    using Texts = std::vector<std::string>;

    ~LinuxPlaceSearchTest() override {
        completer.reset();
        clock.settle();
    }

    enum class Service { none, loopback };

    void make(Service service, const QByteArray& gazetteer = gazetteerBytes()) {
        disk.emplace(gazetteer);
        search.emplace(gazetteerAt(disk->path()),
                       service == Service::loopback ? QUrl(server.url(QStringLiteral("/api"))) : QUrl(), clock);
        completer = search->makeCompleter();
        completer->setDelegate(this);
        completer->setResultTypes(PlaceResultTypes::addressAndPointOfInterest);
    }

    void type(const QString& text) { completer->setQueryFragment(text); }

    /// What the server does with the text that will be typed next.
    void answerTo(const QString& text, testing::WebAnswer reply) {
        server.answer(QStringLiteral("/api?q=") + QString::fromLatin1(QUrl::toPercentEncoding(text)) +
                          QStringLiteral("&limit=10&lang=en"),
                      std::move(reply));
    }

    [[nodiscard]] Texts titles() const {
        Texts texts;
        for (const PlaceCompletion& completion : completer->results())
            texts.push_back(completion.title.toStdString());
        return texts;
    }

    [[nodiscard]] Texts subtitles() const {
        Texts texts;
        for (const PlaceCompletion& completion : completer->results())
            texts.push_back(completion.subtitle.toStdString());
        return texts;
    }

    [[nodiscard]] bool waitForNews(int count) {
        return testing::waitUntil([&] {
            clock.settle();
            return static_cast<int>(news.size()) >= count;
        });
    }

    /// Lets the network do whatever is under way; true when nobody waits for it any more.
    [[nodiscard]] bool waitForSilence() {
        return testing::waitUntil([this] {
            clock.settle();
            return clock.sleepers() == 0;
        });
    }

    void completerDidUpdateResults() override { news.push_back(std::to_string(completer->results().size())); }

    void completerDidFailWithError(const QString& description) override { news.push_back(description.toStdString()); }

    testing::VirtualClock clock;
    testing::WebServer server{testing::WebServer::Scheme::http};
    std::optional<testing::GazetteerOnDisk> disk;
    std::optional<LinuxPlaceSearch> search;
    std::unique_ptr<PlaceCompleter> completer;
    /// How many results there were at each update, and the failures.
    Texts news;
};

} // namespace corvanta
