/// The place of a virtual operation in its class's table, which is a binary contract with plug-ins built separately.
///
///     EXPECT_EQ(SlotOf(&IPayload::Type), 0);
///     EXPECT_EQ(SlotOf<void(const std::string &)>(&IConfigContext::SetTag), 2);   // one of several of that name
///
/// A destructor takes two slots and has no address: it shows as a gap between its neighbours. Where it is the last,
/// a class derived for the test tells its place by the slot of an operation of its own (`SlotAfter`).

#ifndef TESTS_SUPPORT_SLOTS_H
#define TESTS_SUPPORT_SLOTS_H

#include <cstddef>
#include <cstring>

namespace VrexZynConfigTools::support {

/// The index in the table of virtual operations, from 0, as g++ and clang++ lay it out; -1 if `operation` is not
/// virtual.
template <typename FunctionT, typename ClassT>
int SlotOf(FunctionT ClassT::*operation)
{
    struct Representation
    {
        std::ptrdiff_t mPointer;
        std::ptrdiff_t mAdjustment;
    };
    static_assert(sizeof operation == sizeof(Representation), "not the pointer to member that is known here");
    Representation representation;
    std::memcpy(&representation, &operation, sizeof operation);

#if defined(__aarch64__) || defined(__arm__)
    const bool isVirtual = (representation.mAdjustment & 1) != 0;
    const std::ptrdiff_t offset = representation.mPointer;
#else
    const bool isVirtual = (representation.mPointer & 1) != 0;
    const std::ptrdiff_t offset = representation.mPointer - 1;
#endif
    return isVirtual ? static_cast<int>(offset / static_cast<std::ptrdiff_t>(sizeof(void *))) : -1;
}

/// The number of slots of `InterfaceT`, a class with a single base chain: the slot that the first new virtual
/// operation of a derived class gets.
template <typename InterfaceT>
int SlotAfter()
{
    struct Derived : InterfaceT
    {
        virtual void FirstOfItsOwn() = 0;
    };
    return SlotOf(&Derived::FirstOfItsOwn);
}

}   // namespace VrexZynConfigTools::support

#endif
