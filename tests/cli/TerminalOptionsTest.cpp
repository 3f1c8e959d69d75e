#include "cli/TerminalOptions.h"

#include <gtest/gtest.h>

using namespace lumetra;
using Action = TerminalOptions::Action;

namespace {

struct OptionsCase {
    const char* name;
    QStringList arguments;
    Action action;
    OutputFormat format;
};

class TerminalOptionsTest : public ::testing::TestWithParam<OptionsCase> {};

TEST_P(TerminalOptionsTest, Parses) {
    const TerminalOptionsParse parsed = parseTerminalOptions(GetParam().arguments);
    ASSERT_TRUE(parsed.options) << parsed.error.toStdString();
    EXPECT_EQ(parsed.options->action, GetParam().action);
    EXPECT_EQ(parsed.options->format, GetParam().format);
}

INSTANTIATE_TEST_SUITE_P(
    Valid, TerminalOptionsTest,
    ::testing::Values(
        OptionsCase{"Nothing", {}, Action::runPanel, OutputFormat::text},
        OptionsCase{"Print", {"--print"}, Action::print, OutputFormat::text},
        OptionsCase{
            "WatchJson", {"--watch", "--format", "json"}, Action::watch, OutputFormat::json},
        OptionsCase{
            "InlineValue", {"--print", "--format=waybar"}, Action::print, OutputFormat::waybar},
        OptionsCase{
            "FormatImpliesWatch", {"--format", "i3bar"}, Action::watch, OutputFormat::i3bar},
        OptionsCase{"RootImpliesWatch", {"--root", "/"}, Action::watch, OutputFormat::text},
        OptionsCase{"HelpWins", {"--print", "--help", "--bogus"}, Action::help, OutputFormat::text},
        OptionsCase{"Version", {"--version"}, Action::version, OutputFormat::text}),
    [](const auto& info) { return std::string(info.param.name); });

struct ErrorCase {
    const char* name;
    QStringList arguments;
    const char* messagePart;
};

class TerminalOptionsErrorTest : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(TerminalOptionsErrorTest, RejectsWithAClearMessage) {
    const TerminalOptionsParse parsed = parseTerminalOptions(GetParam().arguments);
    EXPECT_FALSE(parsed.options);
    EXPECT_TRUE(parsed.error.contains(QString::fromUtf8(GetParam().messagePart)))
        << parsed.error.toStdString();
    EXPECT_TRUE(parsed.error.contains("lumetra --help"));
}

INSTANTIATE_TEST_SUITE_P(
    Invalid, TerminalOptionsErrorTest,
    ::testing::Values(
        ErrorCase{"Unknown", {"--bogus"}, "unknown option '--bogus'"},
        ErrorCase{"BadFormat", {"--watch", "--format", "xml"}, "unknown format 'xml'"},
        ErrorCase{"MissingFormat", {"--watch", "--format"}, "needs a value"},
        ErrorCase{"MissingRoot", {"--watch", "--root"}, "needs a directory"},
        ErrorCase{"RootNotADirectory", {"--root", "/nonexistent/lumetra"}, "not a directory"},
        ErrorCase{"PrintAndWatch", {"--print", "--watch"}, "exclude each other"},
        ErrorCase{"ValueOnAFlag", {"--print=yes"}, "takes no value"},
        ErrorCase{"SettingsWithWatch", {"--settings", "--watch"}, "cannot be combined"},
        ErrorCase{"PositionalArgument", {"stray"}, "unknown option 'stray'"}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
