// Copies that share are used from many threads at once. These tests say most when they are built
// with ThreadSanitizer.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace apitest {

/// Runs `change` on copies of `shared` in several threads and expects what each made of its own.
template <class T, class Change, class Describe>
void expectIndependentCopies(const T& shared, Change change, Describe describe) {
    const std::string before = describe(shared);
    T expected(shared);
    change(expected);
    const std::string after = describe(expected);
    ASSERT_NE(before, after);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                T copy(shared);
                const T untouched(copy);
                EXPECT_EQ(describe(copy), before);
                change(copy);
                EXPECT_EQ(describe(copy), after);
                copy = untouched;
                EXPECT_EQ(describe(copy), before);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(describe(shared), before);
}

} // namespace apitest
