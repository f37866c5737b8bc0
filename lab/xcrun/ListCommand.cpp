// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "ListOptions.h"
#include "ListOutput.h"
#include "Session.h"

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

int listCommand(const QStringList& arguments) {
    const ListOptions options = ListOptions::parse(arguments);
    if (!options.problem.isEmpty()) {
        throw usage(u"list"_s, options.problem);
    }
    Session session;
    const QStringList running = session.running();
    std::vector<ListedDevice> devices;
    for (const Device& device : session.set.devices()) {
        devices.push_back({.device = device,
                           .state = running.contains(device.udid) ? session.state(device) : u"Shutdown"_s,
                           .folder = session.set.folderOf(device),
                           .lastBooted = session.set.lastBooted(device)});
    }
    print(QString::fromUtf8(listOutput(options, devices, session.system)));
    return 0;
}

} // namespace corvanta::lab
