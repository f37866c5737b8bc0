// SPDX-License-Identifier: MIT
#include "LoadProblem.h"

#include "GlibPointers.h"
#include "ShownText.h"

#include <webkit2/webkit2.h>

#include <array>
#include <utility>

namespace corvanta::lab {

namespace {

std::string escaped(const std::string& text) {
    const GlibPointer<char> valid(g_utf8_make_valid(text.c_str(), -1));
    const GlibPointer<char> result(g_markup_escape_text(valid.get(), -1));
    return result.get();
}

/// "host:port", or the whole address where there is no host.
std::string place(const std::string& url) {
    const GlibPointer<GUri> uri(g_uri_parse(url.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr));
    const char* const host = uri ? g_uri_get_host(uri.get()) : nullptr;
    if (!host || *host == '\0')
        return url;
    const int port = g_uri_get_port(uri.get());
    return port > 0 ? host + (':' + std::to_string(port)) : std::string(host);
}

} // namespace

std::optional<LoadProblem> loadProblem(const std::string& url, const GError& error) {
    if (g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
        g_error_matches(&error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE) ||
        g_error_matches(&error, WEBKIT_PLUGIN_ERROR, WEBKIT_PLUGIN_ERROR_WILL_HANDLE_LOAD))
        return std::nullopt;
    const std::string server = place(url);
    if (error.domain == G_RESOLVER_ERROR)
        return LoadProblem{"Safari can’t find the server", "There is no server with the name “" + server + "”."};
    if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED)) {
        return LoadProblem{"Safari can’t connect to the server",
                           "Nothing answers at “" + server + "”. If it is a server of your own, is it running?"};
    }
    if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
        return LoadProblem{"The server takes too long to answer", "“" + server + "” has not answered in time."};
    if (g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_FILE_DOES_NOT_EXIST) ||
        g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_NOT_FOUND))
        return LoadProblem{"Safari can’t find the file", "There is no file at “" + url + "”."};
    if (g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_UNKNOWN_PROTOCOL) ||
        g_error_matches(&error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_CANNOT_SHOW_URI))
        return LoadProblem{"Safari can’t open the address", "“" + url + "” is of no kind that Safari knows."};
    return LoadProblem{"Safari can’t open the page", "“" + url + "”: " + (error.message ? error.message : "")};
}

LoadProblem certificateProblem(const std::string& url, GTlsCertificateFlags errors) {
    static constexpr std::array reasons{
        std::pair{G_TLS_CERTIFICATE_EXPIRED, "It has expired."},
        std::pair{G_TLS_CERTIFICATE_NOT_ACTIVATED, "It is not valid yet."},
        std::pair{G_TLS_CERTIFICATE_BAD_IDENTITY, "It was made for another server."},
        std::pair{G_TLS_CERTIFICATE_REVOKED, "It was revoked."},
        std::pair{G_TLS_CERTIFICATE_INSECURE, "Its method is no longer considered safe."},
        std::pair{G_TLS_CERTIFICATE_UNKNOWN_CA, "Nobody whom this system trusts has signed it."},
    };
    std::string explanation = "The certificate of “" + place(url) + "” is not valid.";
    for (const auto& [flag, reason] : reasons) {
        if ((errors & flag) != 0)
            explanation += std::string(" ") + reason;
    }
    return {"This connection is not private", explanation};
}

std::string problemPage(const std::string& url, const LoadProblem& problem) {
    return R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>)" + escaped(problem.heading) +
           R"(</title>
<style>
  :root { color-scheme: light dark; }
  body { margin: 0; min-height: 100vh; display: grid; place-items: center; padding: 24px; box-sizing: border-box;
         font: 15px/1.5 system-ui, sans-serif; color: #1d1d1f; background: #f2f2f7; }
  main { width: min(480px, 100%); text-align: center; overflow-wrap: anywhere; }
  h1 { font-size: 22px; line-height: 1.3; margin: 0 0 8px; }
  p { margin: 0 0 20px; color: #6e6e73; }
  a { display: inline-block; padding: 7px 18px; border-radius: 8px; background: #0a66d8; color: #fff;
      text-decoration: none; }
  a:focus-visible { outline: 3px solid #64a8ff; outline-offset: 2px; }
  @media (prefers-color-scheme: dark) {
    body { color: #f5f5f7; background: #1c1c1e; }
    p { color: #a1a1a6; }
  }
</style>
</head>
<body>
<main>
  <h1>)" + escaped(problem.heading) +
           "</h1>\n  <p>" + escaped(shownText(problem.explanation)) + "</p>\n  <a href=\"" + escaped(url) +
           "\">Try Again</a>\n</main>\n</body>\n</html>\n";
}

} // namespace corvanta::lab
