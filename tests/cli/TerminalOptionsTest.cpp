#include "cli/TerminalOptions.h"
#include "support/FixtureTree.h"

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

// --root names the file that makes a tree unusable; a tree with both files passes.
TEST(TerminalOptionsTest, RootMustHoldReadableStatAndMeminfo) {
    using lumetra::testing::ScratchTree;
    const struct {
        const char* name;
        std::vector<const char*> files;       // written with a line of text
        std::vector<const char*> directories; // made as directories
        const char* missing;                  // in the message, or nullptr when accepted
    } cases[] = {
        {"empty folder", {}, {}, "proc/stat: No such file or directory"},
        {"no meminfo", {"proc/stat"}, {}, "proc/meminfo: No such file or directory"},
        {"no stat", {"proc/meminfo"}, {}, "proc/stat: No such file or directory"},
        {"meminfo a folder", {"proc/stat"}, {"proc/meminfo"}, "proc/meminfo: not a regular file"},
        {"both", {"proc/stat", "proc/meminfo"}, {}, nullptr},
    };
    for (const auto& c : cases) {
        ScratchTree tree;
        for (const char* file : c.files)
            tree.write(file, "cpu  1 2 3 4\n");
        for (const char* directory : c.directories)
            tree.makeDirectory(directory);
        const QString root = QString::fromStdString(tree.root());
        const TerminalOptionsParse parsed = parseTerminalOptions({"--print", "--root", root});
        if (!c.missing) {
            EXPECT_TRUE(parsed.options) << c.name << ": " << parsed.error.toStdString();
            continue;
        }
        EXPECT_FALSE(parsed.options) << c.name;
        EXPECT_TRUE(parsed.error.contains(root + "/" + c.missing)) << parsed.error.toStdString();
    }
}

} // namespace
