// How a piece of work fails: the number or the words of its error, to compare in one line.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "platform/Error.h"

namespace kavidex::tests {

// 0 when it does not fail. No error is without words.
template <class Work>
std::int32_t NumberOf(Work work) {
    try {
        work();
    } catch (const platform::Error& error) {
        EXPECT_STRNE(error.what(), "");
        return error.Number();
    }
    return 0;
}

// Empty when it does not fail.
template <class Work>
std::string WordsOf(Work work) {
    try {
        work();
    } catch (const platform::Error& error) {
        return error.what();
    }
    return {};
}

} // namespace kavidex::tests
