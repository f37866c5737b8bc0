// SPDX-License-Identifier: MIT
#include "ColorScheme.h"
#include "InspectorCommands.h"
#include "InspectorSession.h"
#include "ProgramEnvironment.h"

#include <gtk/gtk.h>

#include <sys/prctl.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

struct Options {
    char* server = nullptr;
    gint64 connection = 0;
    gint64 target = 0;
    char* title = nullptr;
    gboolean readsCommands = FALSE;
    gboolean showsVersion = FALSE;
};

bool parse(int& argc, char**& argv, Options& options) {
    const GOptionEntry entries[] = {
        {"server", 0, 0, G_OPTION_ARG_STRING, &options.server, "The device's inspector server", "HOST:PORT"},
        {"connection", 0, 0, G_OPTION_ARG_INT64, &options.connection, "The page's process, as the server counts",
         "NUMBER"},
        {"target", 0, 0, G_OPTION_ARG_INT64, &options.target, "The page, as the server counts", "NUMBER"},
        {"title", 0, 0, G_OPTION_ARG_STRING, &options.title, "The page's title", "TITLE"},
        {"commands", 0, 0, G_OPTION_ARG_NONE, &options.readsCommands,
         "Take commands from standard input; leave when it ends", nullptr},
        {"version", 0, 0, G_OPTION_ARG_NONE, &options.showsVersion, "Print the version and leave", nullptr},
        {},
    };
    GOptionContext* const context = g_option_context_new("- the Web Inspector of one page of a device");
    g_option_context_add_main_entries(context, entries, nullptr);
    GError* error = nullptr;
    const bool isParsed = g_option_context_parse(context, &argc, &argv, &error) != FALSE;
    if (!isParsed) {
        std::fprintf(stderr, "SafariInspector: %s\n", error->message);
        g_error_free(error);
    }
    g_option_context_free(context);
    return isParsed;
}

} // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    Options options;
    if (!parse(argc, argv, options))
        return 2;
    if (options.showsVersion) {
        std::printf("SafariInspector %s\n", CORVANTA_VERSION);
        return 0;
    }
    if (!options.server || (!options.readsCommands && (options.connection <= 0 || options.target <= 0))) {
        std::fprintf(stderr,
                     "SafariInspector: --server with --commands, or with --connection and --target, is needed\n");
        return 2;
    }
    // Safari's end ends this process even when it hangs; the closed pipe tells it in every other case.
    if (options.readsCommands)
        prctl(PR_SET_PDEATHSIG, SIGKILL);

    corvanta::lab::setUpProgramEnvironment();
    if (!gtk_init_check(&argc, &argv)) {
        std::fprintf(stderr, "SafariInspector: no display\n");
        return 1;
    }

    corvanta::lab::setUpIcon();
    // Neither is ever let go of: the process ends from within.
    const corvanta::lab::ColorScheme colorScheme(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    corvanta::lab::InspectorSession session(options.server);
    if (options.readsCommands)
        session.readCommands();
    if (options.target > 0) {
        session.inspect({{static_cast<std::uint64_t>(options.connection), static_cast<std::uint64_t>(options.target)},
                         options.title ? options.title : ""});
    }
    gtk_main();
    return EXIT_SUCCESS;
}
