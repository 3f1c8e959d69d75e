#include "model/XdgConfigHome.h"

#include <gtest/gtest.h>

namespace lumetra {
namespace {

// The XDG base directory rules: XDG_CONFIG_HOME, else $HOME/.config, else the home the
// password database names; relative paths count as unset.
TEST(XdgConfigHomeTest, FollowsTheBaseDirectoryRules) {
    struct Case {
        const char* xdgConfigHome;
        const char* home;
        const char* accountHome;
        const char* expected;
    };
    for (const Case& c : {Case{"/c", "/home/u", "/home/a", "/c"}, Case{"/c/", "", "", "/c"},
                          Case{"", "/home/u", "/home/a", "/home/u/.config"},
                          Case{"relative/config", "/home/u", "", "/home/u/.config"},
                          Case{"", "", "/home/a", "/home/a/.config"},
                          Case{"", "relative/home", "/home/a", "/home/a/.config"},
                          Case{"", "/", "", "/.config"}, // not "//.config"
                          Case{"", "", "", ""}, Case{"relative", "relative", "relative", ""}}) {
        EXPECT_EQ(xdgConfigHome(c.xdgConfigHome, c.home, c.accountHome), QString(c.expected))
            << c.xdgConfigHome << " | " << c.home << " | " << c.accountHome;
    }
}

} // namespace
} // namespace lumetra
