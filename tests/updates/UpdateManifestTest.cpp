#include "updates/UpdateManifest.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

struct DecodeCase {
    const char* name;
    const char* json;
    // The expected manifest, or none when decoding must fail.
    std::optional<UpdateManifest> manifest;
};

UpdateManifest manifest(const char* version, const char* download,
                        std::optional<const char*> notes = std::nullopt) {
    UpdateManifest m{QString::fromUtf8(version), QUrl(QString::fromUtf8(download)), std::nullopt};
    if (notes)
        m.releaseNotesURL = QUrl(QString::fromUtf8(*notes));
    return m;
}

class DecodeUpdateManifestTest : public ::testing::TestWithParam<DecodeCase> {};

TEST_P(DecodeUpdateManifestTest, DecodesStrictly) {
    const auto decoded = decodeUpdateManifest(QByteArray(GetParam().json));
    if (GetParam().manifest) {
        ASSERT_TRUE(std::holds_alternative<UpdateManifest>(decoded))
            << std::get<UpdateCheckError>(decoded).description.toStdString();
        EXPECT_EQ(std::get<UpdateManifest>(decoded), *GetParam().manifest);
    } else {
        ASSERT_TRUE(std::holds_alternative<UpdateCheckError>(decoded));
        const auto& error = std::get<UpdateCheckError>(decoded);
        EXPECT_EQ(error.kind, UpdateCheckError::Kind::decoding);
        EXPECT_FALSE(error.description.isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Documents, DecodeUpdateManifestTest,
    ::testing::Values(
        DecodeCase{
            "Full",
            R"({"latestVersion":"1.4.0","downloadURL":"https://lumetra.app/download",
                       "releaseNotesURL":"https://lumetra.app/notes/1.4.0"})",
            manifest("1.4.0", "https://lumetra.app/download", "https://lumetra.app/notes/1.4.0")},
        DecodeCase{"NotesAbsent", R"({"latestVersion":"1.4.0","downloadURL":"https://a.io/d"})",
                   manifest("1.4.0", "https://a.io/d")},
        DecodeCase{"NotesNull",
                   R"({"latestVersion":"1.4.0","downloadURL":"https://a.io/d",
                       "releaseNotesURL":null})",
                   manifest("1.4.0", "https://a.io/d")},
        DecodeCase{"OtherMembersIgnored",
                   R"({"minimumSystem":12,"latestVersion":"2","downloadURL":"https://a.io/d",
                       "release_notes_url":5,"extra":{"nested":[1,2]}})",
                   manifest("2", "https://a.io/d")},
        // A string is a string, whatever it says.
        DecodeCase{"EmptyVersionString", R"({"latestVersion":"","downloadURL":"https://a.io/d"})",
                   manifest("", "https://a.io/d")},
        DecodeCase{"EscapedText",
                   R"({"latestVersion":"1.4\u00e9","downloadURL":"https:\/\/a.io\/d"})",
                   manifest("1.4\xc3\xa9", "https://a.io/d")},
        DecodeCase{"VersionIsNumber", R"({"latestVersion":1.4,"downloadURL":"https://a.io/d"})",
                   std::nullopt},
        DecodeCase{"VersionIsNull", R"({"latestVersion":null,"downloadURL":"https://a.io/d"})",
                   std::nullopt},
        DecodeCase{"VersionMissing", R"({"downloadURL":"https://a.io/d"})", std::nullopt},
        DecodeCase{"KeyCaseMatters", R"({"LatestVersion":"1","downloadURL":"https://a.io/d"})",
                   std::nullopt},
        DecodeCase{"NoSnakeCase", R"({"latest_version":"1","download_url":"https://a.io/d"})",
                   std::nullopt},
        DecodeCase{"DownloadMissing", R"({"latestVersion":"1"})", std::nullopt},
        DecodeCase{"DownloadIsNumber", R"({"latestVersion":"1","downloadURL":7})", std::nullopt},
        DecodeCase{"DownloadIsNull", R"({"latestVersion":"1","downloadURL":null})", std::nullopt},
        DecodeCase{"DownloadNotURL", R"({"latestVersion":"1","downloadURL":"not a url"})",
                   std::nullopt},
        DecodeCase{"DownloadRelative", R"({"latestVersion":"1","downloadURL":"/download"})",
                   std::nullopt},
        DecodeCase{"NotesIsNumber",
                   R"({"latestVersion":"1","downloadURL":"https://a.io/d","releaseNotesURL":3})",
                   std::nullopt},
        DecodeCase{"NotesEmpty",
                   R"({"latestVersion":"1","downloadURL":"https://a.io/d","releaseNotesURL":""})",
                   std::nullopt},
        DecodeCase{"TopLevelArray", R"([{"latestVersion":"1","downloadURL":"https://a.io/d"}])",
                   std::nullopt},
        DecodeCase{"TopLevelNull", "null", std::nullopt},
        DecodeCase{"TrailingGarbage", R"({"latestVersion":"1","downloadURL":"https://a.io/d"} x)",
                   std::nullopt},
        DecodeCase{"Truncated", R"({"latestVersion":"1","downloadURL":"https://a.)", std::nullopt},
        DecodeCase{"HtmlPage", "<html><body>404 Not Found</body></html>", std::nullopt},
        DecodeCase{"Empty", "", std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

struct URLCase {
    const char* name;
    const char* text;
    bool accepted;
};

class ManifestURLTest : public ::testing::TestWithParam<URLCase> {};

TEST_P(ManifestURLTest, AcceptsAbsoluteURLsOnly) {
    EXPECT_EQ(parseManifestURL(QString::fromUtf8(GetParam().text)).has_value(), GetParam().accepted)
        << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Strings, ManifestURLTest,
    ::testing::Values(URLCase{"Https", "https://lumetra.app/download?from=1.3#top", true},
                      URLCase{"HttpWithPort", "http://127.0.0.1:8080/a", true},
                      URLCase{"IPv6Host", "https://[::1]/a", true},
                      URLCase{"PercentEncoded", "https://a.io/a%20b", true},
                      URLCase{"OtherScheme", "mailto:releases@lumetra.app", true},
                      URLCase{"FileURL", "file:///tmp/lumetra.tar.gz", true},
                      URLCase{"Empty", "", false}, URLCase{"Words", "not a url", false},
                      URLCase{"NoScheme", "lumetra.app/download", false},
                      URLCase{"PathOnly", "/download", false},
                      URLCase{"WebWithoutHost", "https://", false},
                      URLCase{"WebEmptyHostWithPath", "https:///download", false},
                      URLCase{"SpaceInside", "https://a.io/a b", false},
                      URLCase{"SpaceInHost", "https://lumetra app/", false},
                      URLCase{"BadPercent", "https://a.io/%zz", false},
                      URLCase{"BadPort", "https://a.io:99999999/", false},
                      URLCase{"SurroundingSpace", " https://a.io/ ", false}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
