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
             {{"--watch", "json"}, "unexpected argument 'json'"}}) {
        const TerminalOptionsParse parsed = parseTerminalOptions(arguments);
        EXPECT_FALSE(parsed.options) << messagePart;
        EXPECT_TRUE(parsed.error.contains(messagePart) && parsed.error.contains("lumetra --help"))
            << parsed.error.toStdString();
    }
}

} // namespace
