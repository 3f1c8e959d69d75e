#include "model/LogOnce.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

// A run of failures opens the gate once; a recovery re-arms it; recoveries alone do nothing.
TEST(LogOnceTest, OpensOncePerRunOfFailures) {
    LogOnce gate;
    const std::pair<bool, bool> steps[] = {// failed?, expect the gate open
                                           {true, true},   {true, false},  {true, false},
                                           {false, false}, {false, false}, {true, true},
                                           {false, false}, {true, true}};
    for (const auto& [failed, open] : steps) {
        if (failed)
            EXPECT_EQ(gate.failed(), open);
        else
            gate.recovered();
    }
}

} // namespace
