// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>
#include <stdexcept>
#include <vector>

namespace corvanta::lab {

/// One created device, as its `device.json` tells.
struct Device {
    /// Upper-case UUID without braces; also the name of the device's folder.
    QString udid;
    QString name;
    /// Identifiers of the catalogue; a user's file may name one that the catalogue does not know.
    QString deviceType;
    QString runtime;

    bool operator==(const Device&) const = default;
};

/// Says why the device set cannot be read or changed.
class DeviceSetError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The devices kept as files: one folder for each with `device.json` in it.
///
/// Several processes may use one set: files are replaced in one step, and creation is serialised by a lock file.
class DeviceSet {
public:
    explicit DeviceSet(QString folder);

    /// The set of this user, with one device of each model for each runtime of the catalogue when it did not exist.
    /// Throws std::runtime_error, mostly a DeviceSetError.
    [[nodiscard]] static DeviceSet open();

    /// Every readable device, by runtime (oldest first), catalogue order and name. Folders whose name is no upper-case
    /// UUID, or not the one that their file tells, are passed over.
    [[nodiscard]] std::vector<Device> devices() const;

    /// The device with that identifier in any letter case.
    [[nodiscard]] std::optional<Device> deviceWithId(const QString& udid) const;

    /// Adds a device with a fresh identifier. Throws std::runtime_error, mostly a DeviceSetError.
    Device create(const QString& name, const QString& deviceType, const QString& runtime);

    /// Removes the device's folder with everything in it. Throws DeviceSetError.
    void remove(const Device& device);

    /// The folder of that device.
    [[nodiscard]] QString folderOf(const Device& device) const;

    /// When the device was last booted; absent when it never was.
    [[nodiscard]] std::optional<QDateTime> lastBooted(const Device& device) const;

    /// Remembers that the device is being booted now.
    void noteBoot(const Device& device);

    /// Creates the set's folder and the default devices that it lacks, once: a set that carries the mark of being made,
    /// or that somebody laid out by hand, is left as it is. Throws std::runtime_error, mostly a DeviceSetError.
    void createDefaultsOnFirstUse();

private:
    Device write(const QString& name, const QString& deviceType, const QString& runtime);

    QString m_folder;
};

} // namespace corvanta::lab
