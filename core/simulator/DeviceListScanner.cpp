// SPDX-License-Identifier: MIT
#include "simulator/DeviceListScanner.h"

#include <QHash>
#include <QSet>

#include <simdjson.h>

#include <string_view>
#include <utility>

namespace corvanta::DeviceListScanner {

using namespace Qt::Literals::StringLiterals;

namespace {

namespace dom = simdjson::dom;

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Takes one document apart. Every step answers false when the document is unusual; nothing is read after that.
class Scanner {
public:
    bool scan(const dom::element& document) {
        dom::object members;
        bool hasDevices = false;
        if (document.get(members) != simdjson::SUCCESS)
            return false;
        for (const auto& [key, value] : members) {
            if (key == "devices" && (std::exchange(hasDevices, true) || !runtimes(value)))
                return false;
        }
        return hasDevices;
    }

    [[nodiscard]] std::vector<SimulatorDevice> takeDevices() { return std::move(m_devices); }

private:
    bool runtimes(const dom::element& value) {
        dom::object members;
        if (value.get(members) != simdjson::SUCCESS)
            return false;
        QSet<QString> known;
        for (const auto& [key, records] : members) {
            const QString runtime = text(key);
            dom::array devices;
            if (known.contains(runtime) || records.get(devices) != simdjson::SUCCESS)
                return false;
            known.insert(runtime);
            const bool isIOS = runtime.contains("CoreSimulator.SimRuntime.iOS"_L1);
            for (const dom::element& record : devices) {
                if (!device(record, runtime, isIOS))
                    return false;
            }
        }
        return true;
    }

    bool device(const dom::element& record, const QString& runtime, bool isIOS) {
        dom::object members;
        if (record.get(members) != simdjson::SUCCESS)
            return false;
        std::optional<std::string_view> udid;
        std::optional<std::string_view> name;
        std::optional<std::string_view> state;
        std::optional<std::string_view> type;
        std::optional<bool> isAvailable;
        for (const auto& [key, value] : members) {
            const bool isUsual = key == "udid"                   ? take(value, udid)
                                 : key == "name"                 ? take(value, name)
                                 : key == "state"                ? take(value, state)
                                 : key == "deviceTypeIdentifier" ? take(value, type)
                                 : key == "isAvailable"          ? take(value, isAvailable)
                                                                 : true;
            if (!isUsual)
                return false;
        }
        if (!udid || !name || !state)
            return false;
        if (!isIOS || !isAvailable.value_or(true))
            return true;
        m_devices.push_back({.udid = text(*udid),
                             .name = text(*name),
                             .state = sharedText(*state),
                             .runtimeIdentifier = runtime,
                             .deviceTypeIdentifier = type ? std::optional(sharedText(*type)) : std::nullopt,
                             .isAvailable = true});
        return true;
    }

    /// False for a value of another type, and for a key that stands there twice.
    template<typename Value>
    static bool take(const dom::element& value, std::optional<Value>& taken) {
        Value read;
        if (taken || value.get(read) != simdjson::SUCCESS)
            return false;
        taken = read;
        return true;
    }

    /// One string for all records that have the same.
    [[nodiscard]] QString sharedText(std::string_view utf8) {
        const QByteArrayView bytes(utf8.data(), static_cast<qsizetype>(utf8.size()));
        if (const auto known = m_shared.constFind(bytes); known != m_shared.cend())
            return *known;
        return *m_shared.insert(bytes, text(utf8));
    }

    QHash<QByteArrayView, QString> m_shared;
    std::vector<SimulatorDevice> m_devices;
};

} // namespace

std::optional<std::vector<SimulatorDevice>> availableIOSDevices(const QByteArray& output) {
    dom::parser parser;
    dom::element document;
    Scanner scanner;
    const auto error = parser.parse(output.constData(), static_cast<std::size_t>(output.size())).get(document);
    if (error != simdjson::SUCCESS || !scanner.scan(document))
        return std::nullopt;
    return scanner.takeDevices();
}

} // namespace corvanta::DeviceListScanner
