#include "cli/TerminalOptions.h"

#include <gtest/gtest.h>

using namespace lumetra;
using Action = TerminalOptions::Action;

namespace {

TEST(TerminalOptionsTest, ParsesTheActionAndFormat) {
    for (const auto& [arguments, action, format] :
         std::initializer_list<std::tuple<QStringList, Action, OutputFormat>>{
             {{}, Action::runPanel, OutputFormat::text},
             {{"--print"}, Action::print, OutputFormat::text},
             {{"--watch", "--format", "json"}, Action::watch, OutputFormat::json},
             {{"--print", "--format=waybar"}, Action::print, OutputFormat::waybar},
             {{"--format", "i3bar"}, Action::watch, OutputFormat::i3bar}, // implies --watch
             {{"--root", "/"}, Action::watch, OutputFormat::text},        // so does --root
             {{"--print", "--help", "--bogus"}, Action::help, OutputFormat::text},
             {{"--version"}, Action::version, OutputFormat::text}}) {
        const std::string trace = arguments.join(' ').toStdString();
        const TerminalOptionsParse parsed = parseTerminalOptions(arguments);
        ASSERT_TRUE(parsed.options) << trace << ": " << parsed.error.toStdString();
        EXPECT_EQ(parsed.options->action, action) << trace;
        EXPECT_EQ(parsed.options->format, format) << trace;
    }
}

TEST(TerminalOptionsTest, TopTakesACountForJsonAndWaybar) {
    for (const auto& [arguments, action, top] :
         std::initializer_list<std::tuple<QStringList, Action, int>>{
             {{"--format", "json"}, Action::watch, 0},
             {{"--format", "json", "--top", "5"}, Action::watch, 5},
             {{"--top=3", "--format=waybar"}, Action::watch, 3}, // implies --watch, any order
             {{"--print", "--format", "json", "--top", "100"}, Action::print, 100}}) {
        const std::string trace = arguments.join(' ').toStdString();
        const TerminalOptionsParse parsed = parseTerminalOptions(arguments);
        ASSERT_TRUE(parsed.options) << trace << ": " << parsed.error.toStdString();
        EXPECT_EQ(parsed.options->action, action) << trace;
        EXPECT_EQ(parsed.options->top, top) << trace;
    }
}

TEST(TerminalOptionsTest, RejectsWithAClearMessage) {
    for (const auto& [arguments, messagePart] :
         std::initializer_list<std::pair<QStringList, const char*>>{
             {{"--bogus"}, "unknown option '--bogus'"},
             {{"--watch", "--format", "xml"}, "unknown format 'xml'"},
             {{"--watch", "--format"}, "needs a value"},
             {{"--watch", "--root"}, "needs a directory"},
             {{"--root", "/nonexistent/lumetra"}, "not a directory"},
             {{"--print", "--watch"}, "exclude each other"},
             {{"--print=yes"}, "takes no value"},
             {{"--settings", "--watch"}, "cannot be combined"},
             {{"stray"}, "unexpected argument 'stray'"},
             {{"print"}, "unexpected argument 'print' (did you mean '--print'?)"},
             {{"--watch", "json"}, "unexpected argument 'json'"},
             {{"--watch", "--top", "3"}, "--top needs --format json"},
             {{"--format", "i3bar", "--top", "3"}, "--top needs --format json"},
             {{"--format", "json", "--top"}, "'--top' needs a number"},
             {{"--format", "json", "--top", "0"}, "from 1 to 100"},
             {{"--format", "json", "--top=101"}, "from 1 to 100"},
             {{"--format", "json", "--top", "five"}, "'--top' needs a number"}}) {
        const TerminalOptionsParse parsed = parseTerminalOptions(arguments);
        EXPECT_FALSE(parsed.options) << messagePart;
        EXPECT_TRUE(parsed.error.contains(messagePart) && parsed.error.contains("lumetra --help"))
            << parsed.error.toStdString();
    }
}

} // namespace
