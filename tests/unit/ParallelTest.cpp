#include <atomic>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/core/Parallel.h>

namespace {

using namespace KOVA::Quorvex;

TEST(Parallel, DoesEverythingOnce) {
    for (const std::size_t count : {0U, 1U, 2U, 1000U}) {
        std::vector<std::atomic<int>> calls(count);
        ParallelFor(count, [&](std::size_t index) { ++calls[index]; });
        for (const auto& call : calls) {
            EXPECT_EQ(call, 1);
        }
    }
}

TEST(Parallel, CarriesAnExceptionToTheCaller) {
    std::atomic<int> calls = 0;
    const auto body = [&](std::size_t index) {
        ++calls;
        if (index == 3) {
            throw std::runtime_error("three");
        }
    };
    EXPECT_THROW(ParallelFor(1000000, body), std::runtime_error);
    EXPECT_LT(calls, 1000000); // what had not begun was left out
}

TEST(Parallel, MayBeNested) {
    std::atomic<int> calls = 0;
    ParallelFor(8, [&](std::size_t) { ParallelFor(8, [&](std::size_t) { ++calls; }); });
    EXPECT_EQ(calls, 64);
}

} // namespace
