#include "cli/TerminalOptions.h"

#include "support/FixtureTree.h"

#include <gtest/gtest.h>

using namespace lumetra;
using Action = TerminalOptions::Action;

namespace {

// --format and --root imply --watch; --top takes a count for json and waybar, in any order.
TEST(TerminalOptionsTest, ParsesTheActionFormatAndTop) {
    struct Case {
        QStringList arguments;
        Action action;
        OutputFormat format;
        int top = 0;
    };
    using enum OutputFormat;
    const Case cases[] = {
        {{}, Action::runPanel, text},
        {{"--print"}, Action::print, text},
        {{"--watch", "--format", "json"}, Action::watch, json},
        {{"--print", "--format=waybar"}, Action::print, waybar},
        {{"--format", "i3bar"}, Action::watch, i3bar},
        {{"--root", "/"}, Action::watch, text},
        {{"--print", "--help", "--bogus"}, Action::help, text},
        {{"--version"}, Action::version, text},
        {{"--format", "json", "--top", "5"}, Action::watch, json, 5},
        {{"--top=3", "--format=waybar"}, Action::watch, waybar, 3},
        {{"--print", "--format", "json", "--top", "100"}, Action::print, json, 100}};
    for (const Case& c : cases) {
        const std::string trace = c.arguments.join(' ').toStdString();
        const TerminalOptionsParse parsed = parseTerminalOptions(c.arguments);
        ASSERT_TRUE(parsed.options) << trace << ": " << parsed.error.toStdString();
        EXPECT_EQ(parsed.options->action, c.action) << trace;
        EXPECT_EQ(parsed.options->format, c.format) << trace;
        EXPECT_EQ(parsed.options->top, c.top) << trace;
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

// proc/stat and proc/meminfo must be readable regular files (a tree without proc/stat: the
// end-to-end test); the first one that is not is named.
TEST(TerminalOptionsTest, NamesTheKernelFileATreeLacks) {
    const lumetra::testing::ScratchTree tree;
    const QString root = QString::fromStdString(tree.root());
    tree.write("proc/stat", "cpu  1 2 3 4\n");
    EXPECT_EQ(missingKernelFile(root), root + "/proc/meminfo: No such file or directory");
    tree.makeDirectory("proc/meminfo");
    EXPECT_EQ(missingKernelFile(root), root + "/proc/meminfo: not a regular file");
}

} // namespace
