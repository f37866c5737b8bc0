// SPDX-License-Identifier: MIT
#include "SampleSite.h"

#include <glib-unix.h>
#include <libsoup/soup.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>

namespace corvanta {
namespace {

constexpr gsize largestReport = 65536;

struct Options {
    int port = 0;
    gboolean untilStdinCloses = FALSE;
    std::string root;
};

template<auto release>
struct Releaser {
    template<typename T>
    void operator()(T* handle) const {
        release(handle);
    }
};

using ServerPointer = std::unique_ptr<SoupServer, Releaser<g_object_unref>>;
using LoopPointer = std::unique_ptr<GMainLoop, Releaser<g_main_loop_unref>>;
using ErrorPointer = std::unique_ptr<GError, Releaser<g_error_free>>;

void say(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

void answer(SoupServerMessage* message, guint status, std::string_view contentType, std::string_view body) {
    soup_server_message_set_status(message, status, nullptr);
    soup_server_message_set_response(message, std::string(contentType).c_str(), SOUP_MEMORY_COPY, body.data(),
                                     body.size());
}

void receiveReport(SoupServerMessage* message) {
    const SoupMessageBody* const body = soup_server_message_get_request_body(message);
    std::string text(body->data != nullptr ? body->data : "", static_cast<std::size_t>(body->length));
    if (text.empty() || text.size() > largestReport) {
        answer(message, SOUP_STATUS_BAD_REQUEST, "text/plain", "A report is a JSON object of at most 64 KiB.\n");
        return;
    }
    // A report is one line to whoever reads this program's output; between JSON tokens a space says the same.
    std::ranges::replace_if(text, [](char character) { return character == '\n' || character == '\r'; }, ' ');
    say("report " + text);
    soup_server_message_set_status(message, SOUP_STATUS_NO_CONTENT, nullptr);
}

void handleRequest(SoupServer* /*server*/, SoupServerMessage* message, const char* path, GHashTable* /*query*/,
                   gpointer data) {
    const auto& site = *static_cast<const SampleSite*>(data);
    const std::string_view method = soup_server_message_get_method(message);
    soup_message_headers_replace(soup_server_message_get_response_headers(message), "Cache-Control", "no-store");
    if (method == "POST" && std::string_view(path) == "/report") {
        receiveReport(message);
        return;
    }
    if (method != "GET" && method != "HEAD") {
        answer(message, SOUP_STATUS_METHOD_NOT_ALLOWED, "text/plain", "Only GET, and POST to /report.\n");
        return;
    }
    if (const std::optional<SampleFile> file = site.file(path)) {
        answer(message, SOUP_STATUS_OK, file->contentType, file->bytes);
        return;
    }
    answer(message, SOUP_STATUS_NOT_FOUND, "text/plain", "There is no such page.\n");
}

gboolean quit(gpointer loop) {
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_REMOVE;
}

gboolean readStdin(gint descriptor, GIOCondition /*condition*/, gpointer loop) {
    std::array<char, 256> ignored{};
    return read(descriptor, ignored.data(), ignored.size()) > 0 ? G_SOURCE_CONTINUE : quit(loop);
}

/// Reads the command line; says what is wrong with it on standard error and answers nothing.
std::optional<Options> parse(int argc, char** argv) {
    Options options;
    char* root = nullptr;
    const std::array entries{
        GOptionEntry{"port", 'p', 0, G_OPTION_ARG_INT, &options.port, "Listen on this port; 0 takes a free one", "N"},
        GOptionEntry{"root", 'r', 0, G_OPTION_ARG_FILENAME, static_cast<void*>(&root), "Show the pages of this folder",
                     "FOLDER"},
        GOptionEntry{"until-stdin-closes", 0, 0, G_OPTION_ARG_NONE, &options.untilStdinCloses,
                     "End when standard input closes", nullptr},
        GOptionEntry{},
    };
    const std::unique_ptr<GOptionContext, Releaser<g_option_context_free>> context(
        g_option_context_new("- serve the sample pages on this machine alone"));
    g_option_context_add_main_entries(context.get(), entries.data(), nullptr);
    GError* error = nullptr;
    const bool parsed = g_option_context_parse(context.get(), &argc, &argv, &error) != FALSE;
    if (root != nullptr) {
        options.root = root;
        g_free(root);
    }
    if (!parsed) {
        const ErrorPointer owned(error);
        std::fprintf(stderr, "SampleServer: %s\n", owned->message);
        return std::nullopt;
    }
    if (argc > 1 || options.port < 0 || options.port > 65535) {
        std::fprintf(stderr, "SampleServer: %s\n", argc > 1 ? "takes no arguments" : "a port is 0 to 65535");
        return std::nullopt;
    }
    return options;
}

int serve(const Options& options) {
    const std::filesystem::path root = options.root.empty()
                                           ? std::filesystem::canonical("/proc/self/exe").parent_path() / "share/sample"
                                           : std::filesystem::path(options.root);
    SampleSite site(root);
    const ServerPointer server(soup_server_new(nullptr, nullptr));
    soup_server_add_handler(server.get(), nullptr, handleRequest, &site, nullptr);
    GError* error = nullptr;
    if (soup_server_listen_local(server.get(), static_cast<guint>(options.port), SOUP_SERVER_LISTEN_IPV4_ONLY,
                                 &error) == FALSE) {
        const ErrorPointer owned(error);
        std::fprintf(stderr, "SampleServer: %s\n", owned->message);
        return 1;
    }
    GSList* const uris = soup_server_get_uris(server.get());
    say("http://127.0.0.1:" + std::to_string(g_uri_get_port(static_cast<GUri*>(uris->data))) + "/");
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));

    const LoopPointer loop(g_main_loop_new(nullptr, FALSE));
    g_unix_signal_add(SIGTERM, quit, loop.get());
    g_unix_signal_add(SIGINT, quit, loop.get());
    if (options.untilStdinCloses != FALSE) {
        // A closed pipe reports that it is hung up whatever is asked for.
        g_unix_fd_add(STDIN_FILENO, G_IO_IN, readStdin, loop.get());
    }
    g_main_loop_run(loop.get());
    return 0;
}

} // namespace
} // namespace corvanta

int main(int argc, char** argv) {
    // The reader of the reports may leave first; the pages go on being served.
    std::signal(SIGPIPE, SIG_IGN);
    const std::optional<corvanta::Options> options = corvanta::parse(argc, argv);
    if (!options) {
        return 64;
    }
    try {
        return corvanta::serve(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "SampleServer: %s\n", error.what());
        return 1;
    }
}
