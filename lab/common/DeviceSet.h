// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceSettings.h"
#include "FileLock.h"

#include <QDateTime>
#include <QString>

#include <functional>
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

/// Says that a device was deleted while something was to be done with it.
class DeviceGoneError : public DeviceSetError {
    using DeviceSetError::DeviceSetError;
};

/// The devices kept as files: one folder for each with `device.json` in it.
///
/// Several processes may use one set, and each may be ended at any moment. A device comes and goes by one renaming of
/// its folder, a file is replaced by one renaming, and every change is made under the set's lock, which the system
/// frees with its process. What an ended process left behind has a name that begins with a dot, is passed over by
/// readers and is cleared away by the next program.
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

    /// Adds a copy of the device under another name and a fresh identifier; it was never booted. The caller holds the
    /// device's turn. Throws std::runtime_error, mostly a DeviceSetError.
    Device clone(const Device& device, const QString& name);

    /// Removes the device's folder with everything in it. The caller holds the device's turn. Throws DeviceSetError.
    void remove(const Device& device);

    /// Brings the device back to how it was created: without data and settings. The caller holds the device's turn.
    /// Throws DeviceSetError.
    void erase(const Device& device);

    /// Gives the device another name. Throws DeviceSetError.
    void rename(const Device& device, const QString& name);

    /// The device's settings as they are now.
    [[nodiscard]] DeviceSettings settings(const Device& device) const;

    /// Changes the device's settings; changes of two programs at once both count. Throws DeviceSetError.
    void changeSettings(const Device& device, const std::function<void(DeviceSettings&)>& change);

    /// Waits for the turn on the device and holds it: who boots, erases, clones or removes a device has it, so these
    /// never meet. Throws DeviceGoneError when there is no such device any more.
    [[nodiscard]] FileLock takeTurn(const Device& device) const;

    /// The folder of that device.
    [[nodiscard]] QString folderOf(const Device& device) const;

    /// When the device was last booted; absent when it never was.
    [[nodiscard]] std::optional<QDateTime> lastBooted(const Device& device) const;

    /// Remembers that the device is being booted now. The caller holds the device's turn.
    void noteBoot(const Device& device);

    /// Creates the set's folder and the default devices that it lacks, once: a set that carries the mark of being made,
    /// or that somebody laid out by hand, is left as it is. Throws std::runtime_error, mostly a DeviceSetError.
    void createDefaultsOnFirstUse();

private:
    [[nodiscard]] FileLock lock() const;
    [[nodiscard]] bool hasLeftovers() const;
    void clearLeftovers();
    void discard(const QString& path);
    QString stage(const Device& device);
    void publish(const QString& staged, const Device& device);
    Device write(const QString& name, const QString& deviceType, const QString& runtime);

    QString m_folder;
};

} // namespace corvanta::lab
