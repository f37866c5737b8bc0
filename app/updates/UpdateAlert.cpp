// SPDX-License-Identifier: MIT
#include "updates/UpdateAlert.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Identity {
    QString operator()(const UpdateAlert::Available& alert) const {
        return u"available-"_s + QString::number(alert.manifest.build);
    }

    QString operator()(const UpdateAlert::Failed& alert) const { return u"failed-"_s + alert.description; }

    QString operator()(const UpdateAlert::UpToDate& /*alert*/) const { return u"up-to-date"_s; }
};

UpdateAlertButton okButton() {
    return {.text = u"OK"_s, .role = UpdateAlertButtonRole::standard, .opens = std::nullopt};
}

struct Content {
    const QString& versionLine;

    UpdateAlertContent operator()(const UpdateAlert::Available& alert) const {
        return {
            .title = u"Corvanta "_s + alert.manifest.version + u" is available"_s,
            .message = alert.manifest.releaseNotes,
            .buttons = {{.text = u"Download Update"_s,
                         .role = UpdateAlertButtonRole::standard,
                         .opens = downloadAddress(alert.manifest)},
                        {.text = u"Not Now"_s, .role = UpdateAlertButtonRole::cancel, .opens = std::nullopt}},
        };
    }

    UpdateAlertContent operator()(const UpdateAlert::Failed& alert) const {
        return {
            .title = u"Couldn't Check for Updates"_s,
            .message = alert.description,
            .buttons = {okButton()},
        };
    }

    UpdateAlertContent operator()(const UpdateAlert::UpToDate& /*alert*/) const {
        return {
            .title = u"You're up to date"_s,
            .message = u"You have the latest version of Corvanta ("_s + versionLine + u")."_s,
            .buttons = {okButton()},
        };
    }
};

} // namespace

QString UpdateAlert::id() const {
    return std::visit(Identity{}, m_case);
}

UpdateAlertContent updateAlertContent(const UpdateAlert& alert, const QString& versionLine) {
    return std::visit(Content{versionLine}, alert.value());
}

std::optional<URL> downloadAddress(const UpdateManifest& manifest) {
    const auto scheme = manifest.downloadURL.scheme();
    if (!scheme || scheme->toLower() != u"https")
        return std::nullopt;
    return manifest.downloadURL;
}

} // namespace corvanta
