#include "sample_class.h"

#include "frame/automation/table.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using automation::MemberKind;

TEST(ClassTable, PropertyPairsShareAnIdentifier) {
    const auto& table = Sample::table();
    const DISPID number = table.idOf(u"Number");
    ASSERT_NE(table.find(number, MemberKind::propertyGet), nullptr);
    ASSERT_NE(table.find(number, MemberKind::propertyPut), nullptr);
    EXPECT_EQ(table.find(number, MemberKind::propertyPutReference), nullptr);
    EXPECT_EQ(table.find(number, MemberKind::method), nullptr);
}

TEST(ClassTable, IdentifiersCountFromOneInTheOrderOfTheNames) {
    const auto& table = Sample::table();
    EXPECT_EQ(table.idOf(u"Add"), 1);
    EXPECT_EQ(table.idOf(u"NextInteger"), 2);
    EXPECT_EQ(table.idOf(u"Item"), DISPID_VALUE);
    EXPECT_EQ(table.idOf(u"_NewEnum"), DISPID_NEWENUM);
}

TEST(ClassTable, ASecondMemberOfADefaultPropertyIsTheDefaultToo) {
    const auto& table = Sample::table();
    EXPECT_NE(table.find(DISPID_VALUE, MemberKind::propertyGet), nullptr);
    EXPECT_NE(table.find(DISPID_VALUE, MemberKind::propertyPut), nullptr);
}

TEST(ClassTable, StatesTypesAndDefaultsOfParameters) {
    const auto& table = Sample::table();
    const auto* member = table.find(table.idOf(u"Defaults"), MemberKind::method);
    ASSERT_NE(member, nullptr);
    ASSERT_EQ(member->parameters.size(), 4U);
    EXPECT_EQ(member->parameters[0].type.type, VT_BSTR);
    EXPECT_STREQ(reinterpret_cast<const char*>(member->parameters[0].fallback.text),
                 reinterpret_cast<const char*>(u"d"));
    EXPECT_EQ(member->parameters[1].fallback.number, 42);
    EXPECT_EQ(member->parameters[2].type.type, VT_BOOL);
    EXPECT_EQ(member->parameters[2].fallback.number, -1);
    EXPECT_TRUE(member->parameters[3].isOptional);
    EXPECT_EQ(member->result.type, VT_BSTR);
}

TEST(ClassTable, StatesObjectsEnumerationsAndArrays) {
    const auto& table = Sample::table();
    const auto* fresh = table.find(table.idOf(u"Fresh"), MemberKind::method);
    EXPECT_EQ(&fresh->result.classTable(), &table);
    const auto* darker = table.find(table.idOf(u"Darker"), MemberKind::method);
    EXPECT_STREQ(darker->result.enumTable().name, "Shade");
    const auto* sum = table.find(table.idOf(u"SumOf"), MemberKind::method);
    EXPECT_EQ(sum->parameters[0].type.type, VT_ARRAY | VT_I4);
    EXPECT_TRUE(sum->parameters[0].type.byReference);
    const auto* count = table.find(table.idOf(u"CountArguments"), MemberKind::method);
    EXPECT_TRUE(count->isVariableArgument);
}

TEST(ClassTable, AnswersForItsAliases) {
    EXPECT_TRUE(Sample::table().isInterface(kAliasInterface));
    EXPECT_FALSE(Sample::table().isInterface(kEventInterface));
}

}  // namespace
}  // namespace orvane::test
