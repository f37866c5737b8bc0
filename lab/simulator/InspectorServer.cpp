// SPDX-License-Identifier: MIT
#include "InspectorServer.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvanta::lab {

namespace {

sockaddr_in loopback() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

std::uint16_t chooseInspectorPort() {
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback();
    socklen_t size = sizeof address;
    if (probe < 0 || bind(probe, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        std::perror("inspector port");
        std::exit(EXIT_FAILURE);
    }
    close(probe);
    const std::uint16_t port = ntohs(address.sin_port);
    setenv("WEBKIT_INSPECTOR_SERVER", ("127.0.0.1:" + std::to_string(port)).c_str(), 1);
    // The other, browser-friendly server would be open to every page on this machine.
    unsetenv("WEBKIT_INSPECTOR_HTTP_SERVER");
    return port;
}

bool isListening(std::uint16_t port) {
    const int limit = static_cast<int>(sysconf(_SC_OPEN_MAX));
    for (int descriptor = 0; descriptor < std::min(limit, 4096); ++descriptor) {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        int listens = 0;
        socklen_t listensSize = sizeof listens;
        if (getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
            address.sin_family == AF_INET && ntohs(address.sin_port) == port &&
            getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &listensSize) == 0 && listens != 0) {
            return true;
        }
    }
    return false;
}

} // namespace corvanta::lab
