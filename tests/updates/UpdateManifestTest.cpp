#include "updates/UpdateManifest.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

UpdateManifest manifest(const char* version, const char* download, const char* notes = nullptr) {
    return {version, QUrl(download), notes ? std::optional(QUrl(notes)) : std::nullopt};
}

QByteArray withURL(const char* url) {
    return R"({"latestVersion":"1","downloadURL":")" + QByteArray(url) + "\"}";
}

// A JSON object whose "latestVersion" is a string and whose "downloadURL" is an absolute,
// strictly parsed URL (with a host for web schemes); "releaseNotesURL" may be absent or null.
// Key names are case-sensitive; other members are ignored. Anything else is a decoding error.
TEST(UpdateManifestTest, DecodesStrictlyOrFailsWithADecodingError) {
    std::vector<std::pair<QByteArray, UpdateManifest>> valid{
        {R"({"latestVersion":"1.4.0","downloadURL":"https://a.io/d","releaseNotesURL":"https://a.io/n"})",
         manifest("1.4.0", "https://a.io/d", "https://a.io/n")},
        {R"({"latestVersion":"2","downloadURL":"https://a.io/d","releaseNotesURL":null,
             "minimumSystem":12,"release_notes_url":5,"extra":{"nested":[1]}})",
         manifest("2", "https://a.io/d")},
        // A string is a string, whatever it says.
        {R"({"latestVersion":"","downloadURL":"https:\/\/a.io\/d"})",
         manifest("", "https://a.io/d")}};
    for (const char* url :
         {"https://lumetra.app/d?from=1.3#top", "http://127.0.0.1:8080/a", "https://[::1]/a",
          "https://a.io/a%20b", "mailto:releases@lumetra.app", "file:///tmp/lumetra.tar.gz"})
        valid.emplace_back(withURL(url), manifest("1", url));
    for (const auto& [json, expected] : valid) {
        const auto decoded = decodeUpdateManifest(json);
        ASSERT_TRUE(std::holds_alternative<UpdateManifest>(decoded)) << json.constData();
        EXPECT_EQ(std::get<UpdateManifest>(decoded), expected) << json.constData();
    }

    std::vector<QByteArray> refused{
        R"({"latestVersion":1.4,"downloadURL":"https://a.io/d"})",
        R"({"latestVersion":null,"downloadURL":"https://a.io/d"})",
        R"({"downloadURL":"https://a.io/d"})",
        R"({"LatestVersion":"1","downloadURL":"https://a.io/d"})",
        R"({"latestVersion":"1"})",
        R"({"latestVersion":"1","downloadURL":7})",
        R"({"latestVersion":"1","downloadURL":null})",
        R"({"latestVersion":"1","downloadURL":"https://a.io/d","releaseNotesURL":3})",
        R"({"latestVersion":"1","downloadURL":"https://a.io/d","releaseNotesURL":""})",
        R"([{"latestVersion":"1","downloadURL":"https://a.io/d"}])",
        R"({"latestVersion":"1","downloadURL":"https://a.io/d"} x)",
        R"({"latestVersion":"1","downloadURL":"https://a.)"};
    for (const char* url : {"", "not a url", "lumetra.app/download", "/download", "https://",
                            "https:///download", "https://a.io/a b", "https://lumetra app/",
                            "https://a.io/%zz", "https://a.io:99999999/", " https://a.io/ "})
        refused.push_back(withURL(url));
    for (const QByteArray& json : refused) {
        const auto decoded = decodeUpdateManifest(json);
        const auto* error = std::get_if<UpdateCheckError>(&decoded);
        EXPECT_TRUE(error && error->kind == UpdateCheckError::Kind::decoding) << json.constData();
    }
}

} // namespace
