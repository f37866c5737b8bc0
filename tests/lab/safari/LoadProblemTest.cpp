// SPDX-License-Identifier: MIT
#include "LoadProblem.h"
#include "GlibPointers.h"

#include <gtest/gtest.h>
#include <webkit2/webkit2.h>

namespace corvanta::lab {

namespace {

std::optional<LoadProblem> problemOf(GQuark domain, int code, const std::string& url = "http://shop.test:8080/cart") {
    const GlibPointer<GError> error(g_error_new_literal(domain, code, "The engine's words"));
    return loadProblem(url, *error);
}

} // namespace

TEST(LoadProblem, IsNoneWhenTheLoadingWasGivenUp) {
    EXPECT_FALSE(problemOf(WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED));
    EXPECT_FALSE(problemOf(WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE));
}

TEST(LoadProblem, NamesTheServer) {
    EXPECT_EQ(problemOf(G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED),
              (LoadProblem{"Safari can’t connect to the server",
                           "Nothing answers at “shop.test:8080”. If it is a server of your own, is it running?"}));
    EXPECT_EQ(problemOf(G_RESOLVER_ERROR, G_RESOLVER_ERROR_NOT_FOUND, "https://shop.tset/"),
              (LoadProblem{"Safari can’t find the server", "There is no server with the name “shop.tset”."}));
}

TEST(LoadProblem, NamesTheFile) {
    EXPECT_EQ(problemOf(WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_FILE_DOES_NOT_EXIST, "file:///no/page.html"),
              (LoadProblem{"Safari can’t find the file", "There is no file at “file:///no/page.html”."}));
}

TEST(LoadProblem, HasTheEnginesWordsForAllElse) {
    EXPECT_EQ(problemOf(WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_FAILED)->explanation,
              "“http://shop.test:8080/cart”: The engine's words");
}

TEST(LoadProblem, SaysEverythingThatIsWrongWithACertificate) {
    const auto errors =
        static_cast<GTlsCertificateFlags>(G_TLS_CERTIFICATE_UNKNOWN_CA | G_TLS_CERTIFICATE_BAD_IDENTITY);
    EXPECT_EQ(certificateProblem("https://shop.test/", errors).explanation,
              "The certificate of “shop.test” is not valid. It was made for another server. Nobody whom this system "
              "trusts has signed it.");
}

TEST(LoadProblem, IsShownAsPlainText) {
    const std::string page = problemPage("http://x/\"><script>", {"A <b>", "C & D"});
    EXPECT_EQ(page.find("<script>"), std::string::npos);
    EXPECT_NE(page.find("A &lt;b&gt;"), std::string::npos);
    EXPECT_NE(page.find("C &amp; D"), std::string::npos);
    EXPECT_NE(page.find("href=\"http://x/&quot;&gt;&lt;script&gt;\""), std::string::npos);
}

} // namespace corvanta::lab
