// SPDX-License-Identifier: MIT
#include "DisplaySize.h"

#include <QByteArray>

#include <memory>
#include <stdexcept>

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

namespace corvanta::testing {

namespace {

using OwnedDisplay = std::unique_ptr<Display, decltype([](Display* display) { XCloseDisplay(display); })>;
using Resources = std::unique_ptr<XRRScreenResources,
                                  decltype([](XRRScreenResources* resources) { XRRFreeScreenResources(resources); })>;

constexpr unsigned pixelsPerMillimetre = 4;

RRMode modeOf(Display* display, Window root, const XRRScreenResources& resources, const QSize& size) {
    const auto width = static_cast<unsigned>(size.width());
    const auto height = static_cast<unsigned>(size.height());
    for (int index = 0; index < resources.nmode; ++index) {
        if (const XRRModeInfo& mode = resources.modes[index]; mode.width == width && mode.height == height)
            return mode.id;
    }
    QByteArray name = QByteArray::number(width) + 'x' + QByteArray::number(height);
    XRRModeInfo mode{};
    mode.width = mode.hSyncStart = mode.hSyncEnd = mode.hTotal = width;
    mode.height = mode.vSyncStart = mode.vSyncEnd = mode.vTotal = height;
    mode.dotClock = 60UL * width * height;
    mode.name = name.data();
    mode.nameLength = static_cast<unsigned>(name.size());
    const RRMode made = XRRCreateMode(display, root, &mode);
    XRRAddOutputMode(display, resources.outputs[0], made);
    return made;
}

} // namespace

void setDisplaySize(const QSize& size) {
    const OwnedDisplay display(XOpenDisplay(nullptr));
    if (!display)
        throw std::runtime_error("no display");
    const Window root = DefaultRootWindow(display.get());
    const Resources resources(XRRGetScreenResources(display.get(), root));
    if (!resources || resources->ncrtc == 0 || resources->noutput == 0)
        throw std::runtime_error("the display's size is fixed");
    // A screen must be no smaller than what is shown on it, so nothing is shown on it meanwhile.
    const RRMode mode = modeOf(display.get(), root, *resources, size);
    XGrabServer(display.get());
    XRRSetCrtcConfig(display.get(), resources.get(), resources->crtcs[0], CurrentTime, 0, 0, None, RR_Rotate_0, nullptr,
                     0);
    XRRSetScreenSize(display.get(), root, size.width(), size.height(),
                     size.width() / static_cast<int>(pixelsPerMillimetre),
                     size.height() / static_cast<int>(pixelsPerMillimetre));
    const Status status = XRRSetCrtcConfig(display.get(), resources.get(), resources->crtcs[0], CurrentTime, 0, 0, mode,
                                           RR_Rotate_0, &resources->outputs[0], 1);
    XUngrabServer(display.get());
    XSync(display.get(), False);
    if (status != RRSetConfigSuccess)
        throw std::runtime_error("the display refuses its new size");
}

} // namespace corvanta::testing
