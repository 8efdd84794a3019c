#include <configtools/payloads.h>
#include <support/allocations.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <new>

// A payload belongs to whoever has its pointer, and is deleted through it, whichever of the standard ways made it.

namespace VrexZynConfigTools {
namespace {

TEST(PayloadMemory, of_a_payload_made_by_the_global_operator_is_freed_by_its_owner)
{
    CComplexPayload owner(PAYLOAD_COMPLEX);
    for (int count = 0; count < 3; ++count)
        owner.AddField(::new CUint8Payload(1));
}

TEST(PayloadMemory, of_an_allocator_is_freed_by_the_owner)
{
    CComplexPayload owner(PAYLOAD_COMPLEX);
    for (int count = 0; count < 3; ++count)
        owner.AddField(::new (std::allocator<CUint8Payload>().allocate(1)) CUint8Payload(1));
}

/// What was freed is never handed out for a larger one.
TEST(PayloadMemory, is_as_large_as_the_class)
{
    delete ::new CUint8Payload(1);
    const std::unique_ptr<CUint64Payload> number(new CUint64Payload(~std::uint64_t{ 0 }));
    const std::unique_ptr<IPayload> tree(new CComplexPayload(PAYLOAD_COMPLEX));
    EXPECT_EQ(number->GetValue(), ~std::uint64_t{ 0 });
}

class alignas(256) AlignedNumber : public CUint8Payload
{
public:
    using CUint8Payload::CUint8Payload;
};

TEST(PayloadMemory, of_an_aligned_class_is_aligned)
{
    const std::unique_ptr<IPayload> thrown(new AlignedNumber(1));
    const std::unique_ptr<IPayload> untold(new (std::nothrow) AlignedNumber(1));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(thrown.get()) % 256, 0U);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(untold.get()) % 256, 0U);
}

TEST(PayloadMemory, may_be_given_by_the_caller)
{
    alignas(CUint16Payload) unsigned char place[sizeof(CUint16Payload)];
    auto * const payload = new (place) CUint16Payload(7);
    EXPECT_EQ(payload->GetValue(), 7);
    payload->~CUint16Payload();
}

TEST(PayloadMemory, that_runs_out_is_reported_in_the_standard_ways)
{
    support::FailAllocationsAfter(0);
    EXPECT_THROW(new CUint8Payload(1), std::bad_alloc);
    EXPECT_EQ(new (std::nothrow) CUint8Payload(1), nullptr);
    support::LetAllocationsPass();
}

TEST(PayloadMemory, isnt_put_aside)
{
    const std::uint64_t before = support::AllocationCount();
    delete new CUint8Payload(1);
    delete new CUint8Payload(1);
    EXPECT_EQ(support::AllocationCount() - before, 2U);
}

}   // namespace
}   // namespace VrexZynConfigTools
