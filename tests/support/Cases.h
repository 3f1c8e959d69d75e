#pragma once

#include "model/MetricHistory.h"

#include <cctype>
#include <functional>
#include <optional>
#include <string>

namespace lumetra::testing {

// Test names for INSTANTIATE_TEST_SUITE_P from a case's `name` (or `machine`) member,
// without the characters gtest does not allow.
inline std::string testName(std::string name) {
    std::erase_if(name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
    return name;
}
inline constexpr auto byName = [](const auto& info) { return testName(info.param.name); };
inline constexpr auto byMachine = [](const auto& info) { return testName(info.param.machine); };

// The exception of type E that `action` throws, if any.
template <typename E, typename F>
std::optional<E> thrown(F&& action) {
    try {
        std::invoke(action);
    } catch (const E& error) {
        return error;
    }
    return std::nullopt;
}

// A history holding `values`, oldest first.
inline MetricHistory history(std::initializer_list<double> values) {
    MetricHistory result;
    for (double value : values)
        result.append(value);
    return result;
}

} // namespace lumetra::testing
