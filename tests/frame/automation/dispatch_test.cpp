#include "host.h"

#include "frame/automation/describe.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

class Dispatch : public testing::Test {
protected:
    Ref<Sample> sample_ = make<Sample>();
    IDispatch* object_ = dispatchOf(sample_);
};

TEST_F(Dispatch, FindsNamesWithoutRegardToCase) {
    EXPECT_EQ(idOf(object_, u"add"), idOf(object_, u"ADD"));
    EXPECT_NE(idOf(object_, u"Add"), DISPID_UNKNOWN);
    EXPECT_EQ(idOf(object_, u"Ad"), DISPID_UNKNOWN);
    EXPECT_EQ(idOf(object_, u"Adds"), DISPID_UNKNOWN);
    EXPECT_EQ(idOf(object_, u""), DISPID_UNKNOWN);
}

TEST_F(Dispatch, GivesParameterNamesTheirPositions) {
    OLECHAR* names[] = {const_cast<OLECHAR*>(automation::toOle(u"Defaults")),
                        const_cast<OLECHAR*>(automation::toOle(u"flag")),
                        const_cast<OLECHAR*>(automation::toOle(u"TEXT"))};
    DISPID ids[3] = {};
    EXPECT_EQ(object_->GetIDsOfNames(GUID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(ids[1], 2);
    EXPECT_EQ(ids[2], 0);
}

TEST_F(Dispatch, AnUnknownParameterNameIsUnknown) {
    OLECHAR* names[] = {const_cast<OLECHAR*>(automation::toOle(u"Defaults")),
                        const_cast<OLECHAR*>(automation::toOle(u"Nothing"))};
    DISPID ids[2] = {};
    EXPECT_EQ(object_->GetIDsOfNames(GUID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_NE(ids[0], DISPID_UNKNOWN);
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST_F(Dispatch, CallsAMethodWithPositionalArguments) {
    const auto result = call(object_, u"Add", {longArgument(40), longArgument(2)});
    EXPECT_EQ(result.status, S_OK);
    EXPECT_EQ(*result.value.as<std::int32_t>(), 42);
}

TEST_F(Dispatch, CallsAMethodWithNamedArgumentsInAnyOrder) {
    HostVariant second(Variant(u"B"));
    HostVariant first(Variant(u"A"));
    const auto result = invoke(object_, idOf(object_, u"Join"), DISPATCH_METHOD, {},
                               {{1, second.value}, {0, first.value}});
    EXPECT_EQ(*result.value.as<WString>(), u"AB");
}

TEST_F(Dispatch, MixesPositionalAndNamedArguments) {
    HostVariant text(Variant(u"x"));
    const auto result = invoke(object_, idOf(object_, u"Defaults"), DISPATCH_METHOD, {text.value},
                               {{1, longArgument(7)}});
    EXPECT_EQ(*result.value.as<WString>(), u"x7Tmissing");
}

TEST_F(Dispatch, RefusesANamedArgumentThatIsGivenTwice) {
    const auto result = invoke(object_, idOf(object_, u"Add"), DISPATCH_METHOD,
                               {longArgument(1), longArgument(2)}, {{0, longArgument(3)}});
    EXPECT_EQ(result.status, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(result.argumentError, 0U);
}

TEST_F(Dispatch, FillsDefaultsForArgumentsThatAreLeftOut) {
    EXPECT_EQ(*call(object_, u"Defaults").value.as<WString>(), u"d42Tmissing");
    EXPECT_EQ(*call(object_, u"Defaults", {missingArgument(), longArgument(1)}).value.as<WString>(),
              u"d1Tmissing");
}

TEST_F(Dispatch, AnOptionalVariantThatIsLeftOutIsMissing) {
    EXPECT_EQ(*call(object_, u"KindOf").value.as<std::int32_t>(), -1);
    EXPECT_EQ(*call(object_, u"KindOf", {missingArgument()}).value.as<std::int32_t>(), -1);
    EXPECT_EQ(*call(object_, u"KindOf", {longArgument(1)}).value.as<std::int32_t>(), 3);
}

TEST_F(Dispatch, AnArgumentWithADefaultIsNeverMissing) {
    HostVariant anything(Variant(u"x"));
    const auto result =
        call(object_, u"Defaults",
             {missingArgument(), missingArgument(), missingArgument(), anything.value});
    EXPECT_EQ(*result.value.as<WString>(), u"d42Tgiven");
}

TEST_F(Dispatch, ARequiredArgumentThatIsLeftOutIsToldByPosition) {
    const auto result = call(object_, u"Add", {longArgument(1)});
    EXPECT_EQ(result.status, DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(Dispatch, TooManyArgumentsAreRefused) {
    EXPECT_EQ(call(object_, u"Add", {longArgument(1), longArgument(2), longArgument(3)}).status,
              DISP_E_BADPARAMCOUNT);
}

TEST_F(Dispatch, ConvertsArgumentsToTheParametersType) {
    HostVariant text(Variant(u" 40 "));
    HostVariant number(Variant(1.5));
    EXPECT_EQ(*call(object_, u"Add", {text.value, number.value}).value.as<std::int32_t>(), 42);
    EXPECT_EQ(*call(object_, u"Join", {longArgument(-5)}).value.as<WString>(), u"-5+");
}

TEST_F(Dispatch, AnArgumentThatIsNoNumberIsATypeMismatchWithItsPlace) {
    HostVariant text(Variant(u"forty"));
    const auto result = call(object_, u"Add", {longArgument(1), text.value});
    EXPECT_EQ(result.status, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(result.argumentError, 0U);  // the last argument stands first
}

TEST_F(Dispatch, AnArgumentOutsideTheRangeIsAnOverflow) {
    HostVariant number(Variant(1e12));
    EXPECT_EQ(call(object_, u"Add", {longArgument(1), number.value}).status, DISP_E_OVERFLOW);
}

TEST_F(Dispatch, ReadsAPropertyWithEitherFlag) {
    sample_->setNumber(11);
    const DISPID id = idOf(object_, u"Number");
    EXPECT_EQ(*invoke(object_, id, DISPATCH_PROPERTYGET, {}).value.as<std::int32_t>(), 11);
    EXPECT_EQ(*invoke(object_, id, DISPATCH_METHOD, {}).value.as<std::int32_t>(), 11);
}

TEST_F(Dispatch, WritesAProperty) {
    const auto result = invoke(object_, idOf(object_, u"Number"), DISPATCH_PROPERTYPUT, {},
                               {{DISPID_PROPERTYPUT, longArgument(12)}});
    EXPECT_EQ(result.status, S_OK);
    EXPECT_EQ(sample_->Number(), 12);
}

TEST_F(Dispatch, WritesAPropertyWithAnIndex) {
    HostVariant text(Variant(u"uno"));
    invoke(object_, DISPID_VALUE, DISPATCH_PROPERTYPUT, {longArgument(1)},
           {{DISPID_PROPERTYPUT, text.value}});
    EXPECT_EQ(sample_->Item(Variant(std::int32_t{1})), u"uno");
}

TEST_F(Dispatch, WritesAPropertyByReference) {
    const Ref<Sample> partner = make<Sample>();
    HostVariant value(Variant(partner->asObject()));
    const auto result = invoke(object_, idOf(object_, u"Partner"), DISPATCH_PROPERTYPUTREF, {},
                               {{DISPID_PROPERTYPUT, value.value}});
    EXPECT_EQ(result.status, S_OK);
    EXPECT_TRUE(sample_->Partner().is(partner->asObject()));
}

TEST_F(Dispatch, APropertyWithoutAWriterIsNotFound) {
    EXPECT_EQ(invoke(object_, idOf(object_, u"Items"), DISPATCH_PROPERTYPUT, {},
                     {{DISPID_PROPERTYPUT, longArgument(1)}})
                  .status,
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(object_, 12345, DISPATCH_METHOD, {}).status, DISP_E_MEMBERNOTFOUND);
}

TEST_F(Dispatch, ForwardsArgumentsToTheDefaultMemberOfAResult) {
    const auto result = call(object_, u"Items", {longArgument(2)});
    EXPECT_EQ(*result.value.as<WString>(), u"two");
}

TEST_F(Dispatch, ForwardsAPropertyWriteToTheDefaultMemberOfAResult) {
    HostVariant text(Variant(u"deux"));
    const auto result = invoke(object_, idOf(object_, u"Items"), DISPATCH_PROPERTYPUT,
                               {longArgument(2)}, {{DISPID_PROPERTYPUT, text.value}});
    EXPECT_EQ(result.status, S_OK);
    EXPECT_EQ(sample_->Item(Variant(std::int32_t{2})), u"deux");
}

TEST_F(Dispatch, ArgumentsForAMethodWithoutParametersAndWithoutAnObjectAreTooMany) {
    EXPECT_EQ(call(object_, u"Words", {longArgument(2)}).status, DISP_E_BADPARAMCOUNT);
}

TEST_F(Dispatch, AMemberThatTakesNoArgumentsDoesNotRunWhenItIsGivenSome) {
    EXPECT_EQ(call(object_, u"Advance", {longArgument(2)}).status, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(sample_->Number(), 0);
}

TEST_F(Dispatch, ArgumentsWithoutAPlaceAreRefused) {
    DISPPARAMS values{nullptr, nullptr, 1, 0};
    EXPECT_EQ(object_->Invoke(idOf(object_, u"KindOf"), GUID_NULL, 0, DISPATCH_METHOD, &values,
                              nullptr, nullptr, nullptr),
              E_POINTER);
    VARIANTARG argument = longArgument(1);
    DISPPARAMS names{&argument, nullptr, 1, 1};
    EXPECT_EQ(object_->Invoke(idOf(object_, u"KindOf"), GUID_NULL, 0, DISPATCH_METHOD, &names,
                              nullptr, nullptr, nullptr),
              E_POINTER);
}

TEST_F(Dispatch, TheDefaultMemberHasIdentifierZero) {
    EXPECT_EQ(idOf(object_, u"Item"), DISPID_VALUE);
    EXPECT_EQ(
        *invoke(object_, DISPID_VALUE, DISPATCH_PROPERTYGET, {longArgument(0)}).value.as<WString>(),
        u"zero");
}

TEST_F(Dispatch, WritesBackThroughATypedReference) {
    std::int32_t number = 5;
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_I4;
    argument.plVal = reinterpret_cast<LONG*>(&number);
    EXPECT_EQ(call(object_, u"Increase", {argument}).status, S_OK);
    EXPECT_EQ(number, 6);
}

TEST_F(Dispatch, WritesBackThroughAVariantReference) {
    HostVariant variable(Variant(u"7"));
    EXPECT_EQ(call(object_, u"Increase", {byReference(variable.value)}).status, S_OK);
    EXPECT_EQ(*variable.content().as<std::int32_t>(), 8);
}

TEST_F(Dispatch, WritesBackConvertedToTheVariablesType) {
    std::int16_t number = 5;
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_I2;
    argument.piVal = &number;
    EXPECT_EQ(call(object_, u"Increase", {argument}).status, S_OK);
    EXPECT_EQ(number, 6);
}

TEST_F(Dispatch, WritesBackTextAndFreesTheFormerOne) {
    HostVariant variable(Variant(u"ready"));
    call(object_, u"Append", {byReference(variable.value)});
    EXPECT_EQ(*variable.content().as<WString>(), u"ready!");
}

TEST_F(Dispatch, ATextStaysWhenItsVariableIsWrittenDuringTheCall) {
    BSTR variable = automation::newBstr(u"as it was");
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_BSTR;
    argument.pbstrVal = &variable;
    EXPECT_EQ(*call(object_, u"Overwrite", {argument, argument}).value.as<WString>(), u"as it was");
    EXPECT_EQ(take(variable), u"overwritten");
}

TEST_F(Dispatch, AnArgumentByValueIsLeftAlone) {
    HostVariant text(Variant(u"ready"));
    EXPECT_EQ(call(object_, u"Append", {text.value}).status, S_OK);
    EXPECT_EQ(*text.content().as<WString>(), u"ready");
}

TEST_F(Dispatch, ABooleanByReferenceComesBackAsMinusOne) {
    VARIANT_BOOL flag = VARIANT_FALSE;
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_BOOL;
    argument.pboolVal = &flag;
    call(object_, u"Flip", {argument});
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_EQ(flag, -1);
}

TEST_F(Dispatch, AVariantByReferenceIsWrittenThrough) {
    HostVariant variable(Variant(std::int32_t{5}));
    call(object_, u"Replace", {byReference(variable.value)});
    EXPECT_EQ(*variable.content().as<WString>(), u"5 replaced");
}

TEST_F(Dispatch, AnUnassignedVariableGetsANewObjectByReference) {
    HostVariant variable;
    EXPECT_EQ(call(object_, u"MakeSample", {byReference(variable.value)}).status, S_OK);
    ASSERT_EQ(variable.value.vt, VT_DISPATCH);
    EXPECT_EQ(*call(variable.value.pdispVal, u"Number").value.as<std::int32_t>(), 1);
    call(object_, u"MakeSample", {byReference(variable.value)});
    EXPECT_EQ(*call(variable.value.pdispVal, u"Number").value.as<std::int32_t>(), 2);
}

TEST_F(Dispatch, AnObjectOfAnotherClassIsATypeMismatch) {
    HostVariant enumerator(call(object_, u"_NewEnum").value);
    HostVariant variable(enumerator.content());
    EXPECT_EQ(call(object_, u"MakeSample", {byReference(variable.value)}).status,
              DISP_E_TYPEMISMATCH);
}

TEST_F(Dispatch, AByReferenceArgumentKeepsWhatWasStoredBeforeAFailure) {
    std::int32_t number = 1;
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_I4;
    argument.plVal = reinterpret_cast<LONG*>(&number);
    EXPECT_EQ(call(object_, u"StoreThenFail", {argument}).status, DISP_E_EXCEPTION);
    EXPECT_EQ(number, 99);
}

TEST_F(Dispatch, AnArrayByReferenceIsWorkedOnInPlace) {
    HostVariant array(Variant(Array<std::int32_t>::of({1, 2, 3})));
    SAFEARRAY* before = array.value.parray;
    void* data = before->pvData;
    const auto result = call(object_, u"SumOf", {byReference(array.value)});
    EXPECT_EQ(*result.value.as<std::int32_t>(), 6);
    EXPECT_EQ(array.value.parray, before);
    EXPECT_EQ(before->pvData, data);
    EXPECT_EQ(before->cLocks, 0U);
    EXPECT_EQ(array.content().asArray<std::int32_t>()->at(2), -3);
}

TEST_F(Dispatch, AnArrayThatTheMemberReplacesReplacesTheCallersOne) {
    HostVariant array(Variant(Array<std::int32_t>::of({1, 2, 3})));
    call(object_, u"Resize", {byReference(array.value)});
    const Variant content = array.content();
    EXPECT_EQ(content.asArray<std::int32_t>()->lowerBound(), -1);
    EXPECT_EQ(content.asArray<std::int32_t>()->at(0), 5);
}

TEST_F(Dispatch, ACallWhoseArgumentsCannotGoBackLeavesNoResult) {
    HostVariant array(Variant(Array<std::int32_t>::of({1, 2, 3})));
    void* data = nullptr;
    SafeArrayAccessData(array.value.parray, &data);
    VARIANTARG argument = byReference(array.value);
    DISPPARAMS parameters{&argument, nullptr, 1, 0};
    // Not freed: a host doesn't look at the result of a call that failed.
    VARIANT result{};
    EXPECT_EQ(object_->Invoke(idOf(object_, u"Renew"), GUID_NULL, 0, DISPATCH_METHOD, &parameters,
                              &result, nullptr, nullptr),
              DISP_E_EXCEPTION);
    EXPECT_EQ(result.vt, VT_EMPTY);
    SafeArrayUnaccessData(array.value.parray);
}

TEST_F(Dispatch, TextsOfAnArrayComeBackChanged) {
    HostVariant array(Variant(Array<WString>::of({u"a", u"b"})));
    call(object_, u"Upper", {byReference(array.value)});
    EXPECT_EQ(array.content().asArray<WString>()->at(1), u"B");
}

TEST_F(Dispatch, AnArrayOfVariantsIsConvertedElementByElement) {
    HostVariant array(Variant(Array<Variant>::of({Variant(u"4"), Variant(2.5)})));
    EXPECT_EQ(*call(object_, u"SumOf", {byReference(array.value)}).value.as<std::int32_t>(), 6);
}

TEST_F(Dispatch, AnUnallocatedArrayArrivesUnallocated) {
    VARIANT array{};
    array.vt = VT_ARRAY | VT_I4;
    EXPECT_EQ(*call(object_, u"SumOf", {array}).value.as<std::int32_t>(), 0);
}

TEST_F(Dispatch, ANumberWhereAnArrayBelongsIsATypeMismatch) {
    EXPECT_EQ(call(object_, u"SumOf", {longArgument(1)}).status, DISP_E_TYPEMISMATCH);
}

TEST_F(Dispatch, AVariableArgumentMemberTakesAnyNumberInOrder) {
    HostVariant variable(Variant(u"x"));
    EXPECT_EQ(*call(object_, u"CountArguments").value.as<std::int32_t>(), 0);
    EXPECT_EQ(*call(object_, u"CountArguments",
                    {longArgument(1), missingArgument(), byReference(variable.value)})
                   .value.as<std::int32_t>(),
              3);
    EXPECT_EQ(*variable.content().as<WString>(), u"seen");
    const std::vector<VARIANTARG> many(1000, longArgument(1));
    EXPECT_EQ(*call(object_, u"CountArguments", many).value.as<std::int32_t>(), 1000);
}

TEST_F(Dispatch, ResultsOfEveryTypeComeBackWithTheirTag) {
    HostVariant number(Variant(std::int16_t{6}));
    EXPECT_EQ(call(object_, u"NextInteger", {number.value}).value.type(), VarType::Integer);
    EXPECT_EQ(call(object_, u"Not", {number.value}).value.type(), VarType::Boolean);
    EXPECT_EQ(call(object_, u"Byte", {number.value}).value.type(), VarType::Byte);
    EXPECT_EQ(call(object_, u"Half", {number.value}).value.type(), VarType::Single);
    EXPECT_EQ(call(object_, u"Twice", {number.value}).value.type(), VarType::Double);
    EXPECT_EQ(call(object_, u"Cent", {number.value}).value.as<Currency>()->scaled, 60100);
    EXPECT_EQ(call(object_, u"Tomorrow", {number.value}).value.as<Date>()->days, 7.0);
    EXPECT_EQ(*call(object_, u"Darker", {longArgument(3)}).value.as<std::int32_t>(), -7);
    EXPECT_EQ(call(object_, u"Words").value.asArray<WString>()->at(1), u"beta");
    EXPECT_EQ(call(object_, u"Nobody").value.type(), VarType::Object);
    EXPECT_TRUE(call(object_, u"Nobody").value.as<Object>()->isNothing());
    EXPECT_TRUE(call(object_, u"Itself").value.as<Object>()->is(sample_->asObject()));
}

TEST_F(Dispatch, EchoesEveryTag) {
    const Variant values[] = {Variant(),
                              Variant::null(),
                              Variant(true),
                              Variant(std::uint8_t{200}),
                              Variant(std::int16_t{-3}),
                              Variant(std::int32_t{70000}),
                              Variant(1.25F),
                              Variant(2.5),
                              Variant(Currency{12345}),
                              Variant(Date{45000.25}),
                              Variant(ErrorValue{-5}),
                              Variant(u"text"),
                              Variant(sample_->asObject()),
                              Variant(Array<std::uint8_t>::of({1, 2}))};
    for (const Variant& value : values) {
        HostVariant argument(value);
        const auto result = call(object_, u"Echo", {argument.value});
        EXPECT_EQ(result.status, S_OK);
        EXPECT_EQ(result.value.type(), value.type());
    }
}

TEST_F(Dispatch, AFailureFillsTheExceptionRecord) {
    HostVariant description(Variant(u"no such thing"));
    const auto result = call(object_, u"Fail", {longArgument(53), description.value});
    EXPECT_EQ(result.status, DISP_E_EXCEPTION);
    EXPECT_EQ(static_cast<std::uint32_t>(result.scode), 0x800A0035U);
    EXPECT_EQ(result.description, u"no such thing");
    EXPECT_EQ(result.source, u"OrvBase0301");
    EXPECT_EQ(result.helpFile, u"help.chm");
    EXPECT_EQ(result.helpContext, 12U);
}

TEST_F(Dispatch, AFailureWithoutATextHasTheRuntimesOwn) {
    EXPECT_EQ(call(object_, u"Fail", {longArgument(6)}).description, u"Overflow");
}

TEST_F(Dispatch, AnErrorNumberAbove65535CrossesUnchanged) {
    const auto base = static_cast<std::int32_t>(0x80040045);
    EXPECT_EQ(call(object_, u"Fail", {longArgument(base)}).scode, base);
}

TEST_F(Dispatch, AForeignExceptionDoesNotCrossTheInterface) {
    EXPECT_EQ(call(object_, u"FailForeign").status, E_UNEXPECTED);
}

TEST_F(Dispatch, EnumeratesThroughNewEnum) {
    EXPECT_EQ(idOf(object_, u"_NewEnum"), DISPID_NEWENUM);
    const Variant enumeration = call(object_, u"_NewEnum").value;
    void* found = nullptr;
    ASSERT_EQ(enumeration.as<Object>()->unknown()->QueryInterface(IID_IEnumVARIANT, &found), S_OK);
    auto* values = static_cast<IEnumVARIANT*>(found);
    VARIANT fetched[4] = {};
    ULONG count = 0;
    EXPECT_EQ(values->Next(2, fetched, &count), S_OK);
    EXPECT_EQ(count, 2U);
    IEnumVARIANT* rest = nullptr;
    EXPECT_EQ(values->Clone(&rest), S_OK);
    EXPECT_EQ(values->Next(2, fetched + 2, &count), S_FALSE);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(*automation::fromVariant(fetched[2]).as<WString>(), u"two");
    EXPECT_EQ(values->Skip(1), S_FALSE);
    EXPECT_EQ(values->Reset(), S_OK);
    EXPECT_EQ(values->Skip(2), S_OK);
    EXPECT_EQ(rest->Skip(1), S_OK);
    for (VARIANT& each : fetched)
        VariantClear(&each);
    rest->Release();
    values->Release();
}

}  // namespace
}  // namespace orvane::test
