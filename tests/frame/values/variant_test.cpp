#include "frame/values/variant.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::raisedBy;

TEST(Variant, HasTheTagOfItsContent) {
    EXPECT_EQ(Variant().type(), VarType::Empty);
    EXPECT_EQ(Variant::null().type(), VarType::Null);
    EXPECT_EQ(Variant(std::int16_t{1}).type(), VarType::Integer);
    EXPECT_EQ(Variant(1).type(), VarType::Long);
    EXPECT_EQ(Variant(1.5F).type(), VarType::Single);
    EXPECT_EQ(Variant(1.5).type(), VarType::Double);
    EXPECT_EQ(Variant(Currency{1}).type(), VarType::Currency);
    EXPECT_EQ(Variant(Date{1}).type(), VarType::Date);
    EXPECT_EQ(Variant(u"").type(), VarType::String);
    EXPECT_EQ(Variant(Object()).type(), VarType::Object);
    EXPECT_EQ(Variant(ErrorValue{5}).type(), VarType::Error);
    EXPECT_EQ(Variant(true).type(), VarType::Boolean);
    EXPECT_EQ(Variant(std::uint8_t{1}).type(), VarType::Byte);
    EXPECT_EQ(static_cast<int>(Variant(Array<std::int32_t>(0, 1)).type()), 0x2003);
    EXPECT_EQ(static_cast<int>(Variant(Array<Variant>(0, 1)).type()), 0x200C);
}

TEST(Variant, LeftOutArgumentIsMissing) {
    EXPECT_TRUE(Variant::missing().isMissing());
    EXPECT_EQ(static_cast<std::uint32_t>(Variant::missing().as<ErrorValue>()->code), 0x80020004U);
    EXPECT_FALSE(Variant().isMissing());
    EXPECT_FALSE(Variant::null().isMissing());
    EXPECT_FALSE(Variant(ErrorValue{5}).isMissing());
}

TEST(Variant, ReferenceStandsForItsVariable) {
    Variant variable(5);
    Variant reference = Variant::reference(variable);
    EXPECT_TRUE(reference.isReference());
    EXPECT_EQ(reference.type(), VarType::Long);
    Variant(reference).assign(Variant(u"new"));
    EXPECT_EQ(*variable.as<WString>(), u"new");
    EXPECT_EQ(reference.type(), VarType::String);
    variable = Variant::missing();
    EXPECT_TRUE(reference.isMissing());
}

TEST(Variant, CopiesItsArray) {
    Variant first(Array<std::int32_t>(1, 3));
    Variant second = first;
    second.asArray<std::int32_t>()->at(2) = 7;
    EXPECT_EQ(first.asArray<std::int32_t>()->at(2), 0);
    EXPECT_EQ(first.asArray<std::int16_t>(), nullptr);
}

TEST(Array, HasBoundsOfItsOwn) {
    Array<std::int32_t> array(-5, 5);
    EXPECT_EQ(array.lowerBound(), -5);
    EXPECT_EQ(array.upperBound(), 5);
    array.at(-5) = 1;
    array.at(5) = 2;
    EXPECT_EQ(array.elements().front(), 1);
    EXPECT_EQ(array.elements().back(), 2);
}

TEST(Array, IndexOutsideTheBoundsRaises9) {
    Array<WString> array(1, 2);
    EXPECT_EQ(raisedBy([&] { array.at(0); }), 9);
    EXPECT_EQ(raisedBy([&] { array.at(3); }), 9);
    EXPECT_EQ(raisedBy([&] { array.element(INT32_MIN); }), 9);
}

TEST(Array, UpperBoundBelowTheLowerOneRaises9) {
    EXPECT_EQ(raisedBy([] { Array<Variant>(1, 0); }), 9);
}

TEST(Array, BoundsOfAnUnallocatedArrayRaise9) {
    const Array<std::int32_t> array;
    EXPECT_EQ(raisedBy([&] { array.lowerBound(); }), 9);
    EXPECT_EQ(raisedBy([&] { array.upperBound(); }), 9);
    EXPECT_EQ(raisedBy([&] { array.at(0); }), 9);
}

TEST(Array, TooBigForMemoryRaises7) {
    EXPECT_EQ(raisedBy([] { Array<Variant>::withBounds({{0, 0xFFFFFFFF}, {0, 0xFFFFFFFF}}); }), 7);
}

TEST(Array, WritingAnElementConvertsIt) {
    Array<std::int32_t> array(0, 2);
    array.setElement(0, Variant(u" 12 "));
    array.setElement(1, Variant(2.5));
    EXPECT_EQ(array.at(0), 12);
    EXPECT_EQ(array.at(1), 2);
    EXPECT_EQ(raisedBy([&] { array.setElement(2, Variant(u"x")); }), 13);
    EXPECT_EQ(raisedBy([&] { array.setElement(2, Variant(3e9)); }), 6);
    EXPECT_EQ(array.at(2), 0);
}

TEST(Array, BorrowedMemoryIsWorkedOnInPlace) {
    std::int32_t memory[] = {1, 2, 3};
    auto array = Array<std::int32_t>::borrow(memory, {Bound{0, 3}});
    array.at(1) = 9;
    EXPECT_EQ(memory[1], 9);
    Array<std::int32_t> copy = array;
    copy.at(1) = 4;
    EXPECT_EQ(memory[1], 9);
    EXPECT_FALSE(copy.isBorrowed());
}

}  // namespace
}  // namespace orvane
