#include "updates/UpdateManifest.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

UpdateManifest manifest(const char* version, const char* download, const char* notes = nullptr) {
    UpdateManifest m{QString::fromUtf8(version), QUrl(QString::fromUtf8(download)), std::nullopt};
    if (notes)
        m.releaseNotesURL = QUrl(QString::fromUtf8(notes));
    return m;
}

TEST(UpdateManifestTest, DecodesValidDocuments) {
    const std::pair<const char*, UpdateManifest> cases[] = {
        {R"({"latestVersion":"1.4.0","downloadURL":"https://lumetra.app/download",
             "releaseNotesURL":"https://lumetra.app/notes/1.4.0"})",
         manifest("1.4.0", "https://lumetra.app/download", "https://lumetra.app/notes/1.4.0")},
        {R"({"latestVersion":"1.4.0","downloadURL":"https://a.io/d"})",
         manifest("1.4.0", "https://a.io/d")},
        {R"({"latestVersion":"1.4.0","downloadURL":"https://a.io/d","releaseNotesURL":null})",
         manifest("1.4.0", "https://a.io/d")},
        // Other members are ignored, whatever their names or types.
        {R"({"minimumSystem":12,"latestVersion":"2","downloadURL":"https://a.io/d",
             "release_notes_url":5,"extra":{"nested":[1,2]}})",
         manifest("2", "https://a.io/d")},
        // A string is a string, whatever it says.
        {R"({"latestVersion":"","downloadURL":"https://a.io/d"})", manifest("", "https://a.io/d")},
        {R"({"latestVersion":"1.4\u00e9","downloadURL":"https:\/\/a.io\/d"})",
         manifest("1.4\xc3\xa9", "https://a.io/d")},
    };
    for (const auto& [json, expected] : cases) {
        const auto decoded = decodeUpdateManifest(QByteArray(json));
        ASSERT_TRUE(std::holds_alternative<UpdateManifest>(decoded)) << json;
        EXPECT_EQ(std::get<UpdateManifest>(decoded), expected) << json;
    }
}

TEST(UpdateManifestTest, RejectsEverythingElseAsADecodingError) {
    const char* const documents[] = {
        R"({"latestVersion":1.4,"downloadURL":"https://a.io/d"})",
        R"({"latestVersion":null,"downloadURL":"https://a.io/d"})",
        R"({"downloadURL":"https://a.io/d"})",
        R"({"LatestVersion":"1","downloadURL":"https://a.io/d"})", // key case matters
        R"({"latest_version":"1","download_url":"https://a.io/d"})",
        R"({"latestVersion":"1"})",
        R"({"latestVersion":"1","downloadURL":7})",
        R"({"latestVersion":"1","downloadURL":null})",
        R"({"latestVersion":"1","downloadURL":"not a url"})",
        R"({"latestVersion":"1","downloadURL":"/download"})",
        R"({"latestVersion":"1","downloadURL":"https://a.io/d","releaseNotesURL":3})",
        R"({"latestVersion":"1","downloadURL":"https://a.io/d","releaseNotesURL":""})",
        R"([{"latestVersion":"1","downloadURL":"https://a.io/d"}])",
        "null",
        R"({"latestVersion":"1","downloadURL":"https://a.io/d"} x)",
        R"({"latestVersion":"1","downloadURL":"https://a.)",
        "<html><body>404 Not Found</body></html>",
        "",
    };
    for (const char* json : documents) {
        const auto decoded = decodeUpdateManifest(QByteArray(json));
        ASSERT_TRUE(std::holds_alternative<UpdateCheckError>(decoded)) << json;
        EXPECT_EQ(std::get<UpdateCheckError>(decoded).kind, UpdateCheckError::Kind::decoding);
        EXPECT_FALSE(std::get<UpdateCheckError>(decoded).description.isEmpty()) << json;
    }
}

TEST(UpdateManifestTest, URLsMustBeAbsoluteAndStrict) {
    for (const char* text :
         {"https://lumetra.app/download?from=1.3#top", "http://127.0.0.1:8080/a", "https://[::1]/a",
          "https://a.io/a%20b", "mailto:releases@lumetra.app", "file:///tmp/lumetra.tar.gz"})
        EXPECT_TRUE(parseManifestURL(QString::fromUtf8(text))) << text;
    for (const char* text : {"", "not a url", "lumetra.app/download", "/download", "https://",
                             "https:///download", "https://a.io/a b", "https://lumetra app/",
                             "https://a.io/%zz", "https://a.io:99999999/", " https://a.io/ "})
        EXPECT_FALSE(parseManifestURL(QString::fromUtf8(text))) << text;
}

} // namespace
