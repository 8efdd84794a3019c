// The numbers by which contexts recognise a chip's set of subsystems.

#include <configtools/framework/coreclasses/stamp.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

using namespace VrexZynConfigTools;

namespace {

constexpr std::size_t COUNT = 200'000;
constexpr int THREADS = 2;

std::vector<std::uint64_t> Draw(std::atomic<int> & ready)
{
    std::vector<std::uint64_t> stamps(COUNT);
    ++ready;
    while (ready < THREADS)
        std::this_thread::yield();   // both begin at once
    for (std::uint64_t & stamp : stamps)
        stamp = NewStamp();
    return stamps;
}

TEST(NewStamp, gives_no_number_twice_whichever_threads_ask)
{
    std::atomic<int> ready = 0;
    std::vector<std::uint64_t> there;
    std::thread thread([&] { there = Draw(ready); });
    std::vector<std::uint64_t> all = Draw(ready);
    thread.join();
    all.insert(all.end(), there.begin(), there.end());
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
    EXPECT_NE(all.front(), 0U);
}

}   // namespace
