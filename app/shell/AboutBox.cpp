// SPDX-License-Identifier: MIT
#include "shell/AboutBox.h"

#include "shell/AppIdentity.h"

#include <QMessageBox>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString dataCredits() {
    return u"Places: data of GeoNames (geonames.org), licensed under CC BY 4.0, selected and rearranged.\n\n"
           "Map: Made with Natural Earth (naturalearthdata.com).\n\n"
           "Map tiles and places found on the network: © OpenStreetMap contributors, ODbL 1.0 "
           "(openstreetmap.org/copyright)."_s;
}

void openAboutBox(QWidget& window) {
    auto* box = window.findChild<QMessageBox*>(u"aboutBox"_s, Qt::FindDirectChildrenOnly);
    if (box == nullptr) {
        box = new QMessageBox(&window);
        box->setObjectName(u"aboutBox"_s);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setWindowTitle(u"About Corvanta"_s);
        box->setWindowModality(Qt::NonModal);
        box->setIconPixmap(window.windowIcon().pixmap(48));
        box->setTextFormat(Qt::PlainText);
        box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        box->setText(AppIdentity::versionLine());
        box->setInformativeText(u"Web testing workspace for iOS Simulator\n\n"_s + dataCredits());
        box->setStandardButtons(QMessageBox::Ok);
        // On a Mac a message box shows no title of its own, so that those who hear it need its name.
        box->setAccessibleName(u"About Corvanta"_s);
    }
    box->show();
    box->raise();
    box->activateWindow();
}

} // namespace corvanta
