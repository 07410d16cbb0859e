#include "network/BuildForm.h"

#include "frame/values/conversions.h"
#include "network/HTTPFormBuilder.h"
#include "network/any_unit.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane {
namespace {

using test::raisedBy;

#define B u"--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43"
#define DISPOSITION u"Content-Disposition: form-data; name="
constexpr const char16_t* kHeader =
    u"Content-Type: multipart/form-data; boundary=EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43\r\n";
constexpr const char16_t* kTwoFields =
    B u"\r\n" DISPOSITION u"\"a\"\r\n\r\n1\r\n" B u"\r\n" DISPOSITION u"\"b\"\r\n\r\n2\r\n" B u"--";

/// The elements from a lower bound on.
Array<Variant> elements(std::int32_t lower, const std::vector<Variant>& values) {
    Array<Variant> array(lower, lower + (static_cast<std::int32_t>(values.size()) - 1));
    for (std::size_t i = 0; i < values.size(); ++i)
        array.at(lower + static_cast<std::int32_t>(i)) = values[i];
    return array;
}

WString built(const Array<Variant>& arguments) {
    WString headers;
    return BuildForm(headers, arguments);
}

TEST(BuildFormTest, TwoFieldsHaveTheseBytes) {
    EXPECT_EQ(built(elements(0, {u"a", u"1", u"b", u"2"})), kTwoFields);
}

TEST(BuildFormTest, GivesTheBytesOfTheBuilder) {
    const auto builder = make<HTTPFormBuilder>();
    builder->AddTextElement(u"a", u"1");
    builder->AddTextElement(u"b", u"2");
    EXPECT_EQ(builder->FormData(), kTwoFields);
}

TEST(BuildFormTest, CountsFromTheLowerBoundOfTheArray) {
    EXPECT_EQ(built(elements(1, {u"a", u"1", u"b", u"2"})), kTwoFields);
    EXPECT_EQ(built(elements(-7, {u"a", u"1", u"b", u"2"})), kTwoFields);
    EXPECT_EQ(built(elements(2147483644, {u"a", u"1", u"b", u"2"})), kTwoFields);
}

TEST(BuildFormTest, AnArrayWithTheUpperBoundMinusOneGivesNothing) {
    WString headers = u"X: y";
    EXPECT_EQ(BuildForm(headers, Array<Variant>::empty()), u"");
    EXPECT_EQ(BuildForm(headers, elements(-2, {u"a", u"1"})), u"")
        << "the upper bound decides, whatever the array holds";
    EXPECT_EQ(headers, u"X: y");
}

TEST(BuildFormTest, AnArrayWithoutDimensionsRaises9) {
    WString headers = u"X: y";
    EXPECT_EQ(raisedBy([&] { BuildForm(headers, Array<Variant>()); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(headers, u"X: y");
}

TEST(BuildFormTest, ThreeElementsGiveNothingAndLeaveTheHeaders) {
    WString headers = u"X: y";
    EXPECT_EQ(BuildForm(headers, elements(0, {u"a", u"1", u"b"})), u"");
    EXPECT_EQ(headers, u"X: y");
    EXPECT_EQ(BuildForm(headers, elements(0, {u"a"})), u"");
    EXPECT_EQ(headers, u"X: y");
}

TEST(BuildFormTest, EmptyHeadersBecomeTheOneLine) {
    WString headers;
    BuildForm(headers, elements(0, {u"a", u"1"}));
    EXPECT_EQ(headers, kHeader);
}

TEST(BuildFormTest, TheLineGoesBehindTheHeadersThatAreThere) {
    WString headers = u"X: y";
    BuildForm(headers, elements(0, {u"a", u"1"}));
    EXPECT_EQ(headers, WString(u"X: y\r\n") + kHeader);
    BuildForm(headers, elements(0, {u"a", u"1"}));
    EXPECT_EQ(headers, WString(u"X: y\r\n") + kHeader + kHeader) << "ended lines stay as they are";
    headers = u"X: y\n";
    BuildForm(headers, elements(0, {u"a", u"1"}));
    EXPECT_EQ(headers, WString(u"X: y\n\r\n") + kHeader) << "an LF alone ends no line";
}

TEST(BuildFormTest, AnotherArrayWithoutElementsGivesTheClosingLine) {
    WString headers;
    EXPECT_EQ(BuildForm(headers, Array<Variant>::empty(1)), B u"--");
    EXPECT_EQ(headers, kHeader);
}

TEST(BuildFormTest, ElementsAreConvertedToTexts) {
    const Array<Variant> arguments = elements(0, {7, 2.5, true, Variant(), Date{1.5}, u""});
    EXPECT_EQ(
        built(arguments),
        B u"\r\n" DISPOSITION u"\"7\"\r\n\r\n2.5\r\n" B u"\r\n" DISPOSITION u"\"True\"\r\n\r\n\r"
          u"\n" B u"\r"
          u"\n" DISPOSITION u"\"31.12.1899 12:00:00\"\r\n\r\n\r\n" B u"--");
}

TEST(BuildFormTest, NothingIsEscaped) {
    EXPECT_EQ(built(elements(0, {u"a\"\r\nX: y", u"\r\n--"})),
              B u"\r\n" DISPOSITION u"\"a\"\r\nX: y\"\r\n\r\n\r\n--\r\n" B u"--");
}

TEST(BuildFormTest, RaisesTheConversionsErrorAndLeavesTheHeaders) {
    WString headers = u"X: y";
    const auto raised = [&](const Variant& name, const Variant& value) {
        return raisedBy([&] { BuildForm(headers, elements(0, {u"a", u"1", name, value})); });
    };
    EXPECT_EQ(raised(Variant::null(), u""), error::kInvalidUseOfNull);
    EXPECT_EQ(raised(u"", Variant::null()), error::kInvalidUseOfNull);
    EXPECT_EQ(raised(u"", Variant(Object())), error::kObjectNotSet);
    EXPECT_EQ(raised(Variant(Array<Variant>::empty()), u""), error::kTypeMismatch);
    EXPECT_EQ(raised(u"", Date{1e300}), error::kOverflow);
    EXPECT_EQ(headers, u"X: y");
}

TEST(BuildFormTest, AnArrayOfSeveralDimensionsRaises9) {
    WString headers;
    const auto square = Array<Variant>::withBounds({{0, 2}, {0, 2}});
    EXPECT_EQ(raisedBy([&] { BuildForm(headers, square); }), error::kSubscriptOutOfRange);
    EXPECT_TRUE(headers.isNull());
    EXPECT_EQ(BuildForm(headers, Array<Variant>::withBounds({{0, 3}, {0, 2}})), u"")
        << "the first dimension tells that it is odd";
    EXPECT_EQ(BuildForm(headers, Array<Variant>::withBounds({{-3, 3}, {0, 2}})), u"");
}

TEST(BuildFormTest, TakesNamesAndValuesOfAMebi) {
    const std::u16string any = test::anyUnits(test::kMebi, u"\r\n-\"\0");
    const std::u16string form = built(elements(0, {WString(any), WString(any)})).units();
    EXPECT_EQ(form, B u"\r\n" DISPOSITION u"\"" + any + u"\"\r\n\r\n" + any + u"\r\n" B u"--");
}

}  // namespace
}  // namespace orvane
