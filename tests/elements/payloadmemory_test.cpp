#include <configtools/payloads.h>
#include <support/allocations.h>
#include <support/foreign_payload.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <new>
#include <thread>
#include <vector>

// Where the memory of payloads comes from. Under a sanitizer none is kept, so nothing is told there of how much.

namespace VrexZynConfigTools {
namespace {

using support::AllocationCount;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool IS_KEPT = false;
#else
constexpr bool IS_KEPT = true;
#endif

template <typename ActT>
std::uint64_t AllocationsOf(ActT act)
{
    const std::uint64_t before = AllocationCount();
    act();
    return AllocationCount() - before;
}

TEST(PayloadMemory, of_a_freed_number_serves_the_next_one)
{
    delete new CUint8Payload(1);
    const std::uint64_t expected = IS_KEPT ? 0 : 2;
    EXPECT_EQ(AllocationsOf([] {
        delete new CUint64Payload(~std::uint64_t{ 0 });   // of another size, on the same shelf
        delete new (std::nothrow) CInt16Payload(-1);
    }),
        expected);
}

TEST(PayloadMemory, of_a_freed_tree_serves_an_enumerator)
{
    delete new CComplexPayload(PAYLOAD_COMPLEX);
    EXPECT_EQ(AllocationsOf([] { delete new CEnumPayload("short", 1); }), IS_KEPT ? 0U : 1U);
}

TEST(PayloadMemory, made_without_exceptions_serves_a_larger_class_too)
{
    delete new (std::nothrow) CUint8Payload(1);
    const std::unique_ptr<CUint64Payload> number(new CUint64Payload(~std::uint64_t{ 0 }));
    EXPECT_EQ(number->GetValue(), ~std::uint64_t{ 0 });
}

/// Larger than any payload of the library.
class LargeNumber : public CUint8Payload
{
public:
    using CUint8Payload::CUint8Payload;
    std::uint8_t mMore[100] = {};
};

TEST(PayloadMemory, of_another_size_is_never_kept)
{
    delete new LargeNumber(1);
    EXPECT_EQ(AllocationsOf([] { delete new LargeNumber(1); }), 1U);
    EXPECT_EQ(AllocationsOf([] { delete new support::ForeignPayload(""); }), 1U);
}

class alignas(256) AlignedNumber : public CUint8Payload
{
public:
    using CUint8Payload::CUint8Payload;
};

TEST(PayloadMemory, of_an_aligned_class_is_aligned)
{
    for (int count = 0; count < 8; ++count) {
        const std::unique_ptr<IPayload> thrown(new AlignedNumber(1));
        const std::unique_ptr<IPayload> untold(new (std::nothrow) AlignedNumber(1));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(thrown.get()) % 256, 0U);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(untold.get()) % 256, 0U);
    }
}

TEST(PayloadMemory, may_be_given_by_the_caller)
{
    alignas(CUint16Payload) unsigned char place[sizeof(CUint16Payload)];
    auto * const payload = new (place) CUint16Payload(7);
    EXPECT_EQ(payload->GetValue(), 7);
    payload->~CUint16Payload();
}

TEST(PayloadMemory, that_runs_out_is_told_as_ever)
{
    support::FailAllocationsAfter(0);
    EXPECT_THROW(new CUint8Payload(1), std::bad_alloc);
    EXPECT_EQ(new (std::nothrow) CUint8Payload(1), nullptr);
    support::LetAllocationsPass();
}

TEST(PayloadMemory, is_kept_up_to_a_limit)
{
    constexpr std::size_t MANY = 5000;
    std::vector<std::unique_ptr<IPayload>> payloads(MANY);
    const auto fill = [&payloads] {
        for (auto & payload : payloads)
            payload = std::make_unique<CUint32Payload>(1);
    };
    fill();
    payloads.clear();
    payloads.resize(MANY);
    EXPECT_GT(AllocationsOf(fill), MANY / 2);
}

TEST(PayloadMemory, moves_from_thread_to_thread)
{
    std::vector<std::unique_ptr<IPayload>> payloads;
    std::thread([&payloads] {
        for (std::uint32_t value = 0; value < 3000; ++value)
            payloads.push_back(std::make_unique<CUint32Payload>(value));
    }).join();
    for (std::uint32_t value = 0; value < 3000; ++value)
        EXPECT_EQ(dynamic_cast<CUint32Payload &>(*payloads[value]).GetValue(), value);
    payloads.clear();   // here, and the next ones are made of it and freed over there
    for (int count = 0; count < 2000; ++count)
        payloads.push_back(std::make_unique<CEnumPayload>("name", count));
    std::thread([&payloads] { payloads.clear(); }).join();
}

/// Frees a payload when its thread has ended its service: the last to go, because it was made first.
struct LateFree
{
    ~LateFree() { mPayload.reset(); }
    std::unique_ptr<IPayload> mPayload;
};

TEST(PayloadMemory, is_freed_until_the_end_of_a_thread)
{
    std::thread([] {
        static thread_local LateFree late;
        late.mPayload = std::make_unique<CUint8Payload>(1);
        delete new CUint8Payload(2);
    }).join();
}

}   // namespace
}   // namespace VrexZynConfigTools
