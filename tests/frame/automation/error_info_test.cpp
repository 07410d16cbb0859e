#include "frame/automation/error_info.h"

#include "frame/automation/abi.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace orvane::automation {
namespace {

using test::raisedBy;

std::uint32_t bits(HRESULT status) {
    return static_cast<std::uint32_t>(status);
}

TEST(ErrorInfo, NumbersUpTo65535CrossInTheControlFacility) {
    EXPECT_EQ(bits(statusOf(1)), 0x800A0001U);
    EXPECT_EQ(bits(statusOf(481)), 0x800A01E1U);
    EXPECT_EQ(bits(statusOf(65535)), 0x800AFFFFU);
    EXPECT_EQ(bits(statusOf(static_cast<std::int32_t>(0x80040045))), 0x80040045U);
    EXPECT_EQ(bits(statusOf(65536)), 65536U);
}

TEST(ErrorInfo, KnownStatusCodesComeInAsTheRuntimesNumbers) {
    EXPECT_EQ(errorNumberOf(DISP_E_TYPEMISMATCH), 13);
    EXPECT_EQ(errorNumberOf(DISP_E_OVERFLOW), 6);
    EXPECT_EQ(errorNumberOf(DISP_E_BADINDEX), 9);
    EXPECT_EQ(errorNumberOf(DISP_E_DIVBYZERO), 11);
    EXPECT_EQ(errorNumberOf(E_OUTOFMEMORY), 7);
    EXPECT_EQ(errorNumberOf(DISP_E_UNKNOWNNAME), 438);
    EXPECT_EQ(errorNumberOf(DISP_E_MEMBERNOTFOUND), 438);
    EXPECT_EQ(errorNumberOf(DISP_E_PARAMNOTOPTIONAL), 449);
    EXPECT_EQ(errorNumberOf(statusOf(53)), 53);
    EXPECT_EQ(errorNumberOf(E_FAIL), static_cast<std::int32_t>(E_FAIL));
}

TEST(ErrorInfo, EveryNumberComesBackFromItsStatus) {
    for (std::int32_t number = 1; number <= 65535; number += 17) {
        EXPECT_EQ(errorNumberOf(statusOf(number)), number);
    }
}

TEST(ErrorInfo, AReportedErrorIsRaisedWithItsTexts) {
    RuntimeError failure(53, u"gone");
    failure.source = u"somebody";
    failure.helpFile = u"a.hlp";
    failure.helpContext = 3;
    const HRESULT status = reportError(failure);
    try {
        raiseStatus(status);
    } catch (const RuntimeError& raised) {
        EXPECT_EQ(raised.number, 53);
        EXPECT_EQ(raised.description, u"gone");
        EXPECT_EQ(raised.source, u"somebody");
        EXPECT_EQ(raised.helpFile, u"a.hlp");
        EXPECT_EQ(raised.helpContext, 3);
        return;
    }
    FAIL() << "nothing was raised";
}

TEST(ErrorInfo, AStatusWithoutInformationHasTheStandardText) {
    SetErrorInfo(0, nullptr);
    try {
        raiseStatus(DISP_E_BADINDEX);
    } catch (const RuntimeError& raised) {
        EXPECT_EQ(raised.number, 9);
        EXPECT_EQ(raised.description, u"Subscript out of range");
        return;
    }
    FAIL() << "nothing was raised";
}

HRESULT STDMETHODCALLTYPE fillIn(EXCEPINFO* exception) {
    exception->bstrDescription = newBstr(u"filled in late");
    exception->scode = statusOf(380);
    return S_OK;
}

TEST(ErrorInfo, ADeferredExceptionIsFilledIn) {
    ExceptionRecord exception;
    exception.info.pfnDeferredFillIn = fillIn;
    try {
        raiseInvokeFailure(DISP_E_EXCEPTION, exception);
    } catch (const RuntimeError& raised) {
        EXPECT_EQ(raised.number, 380);
        EXPECT_EQ(raised.description, u"filled in late");
        return;
    }
    FAIL() << "nothing was raised";
}

TEST(ErrorInfo, AnExceptionWithACodeInsteadOfAStatusGivesTheCode) {
    ExceptionRecord exception;
    exception.info.wCode = 1001;
    try {
        raiseInvokeFailure(DISP_E_EXCEPTION, exception);
    } catch (const RuntimeError& raised) {
        EXPECT_EQ(raised.number, 1001);
        return;
    }
    FAIL() << "nothing was raised";
}

TEST(ErrorInfo, AnExceptionWithoutANumberIsAnErrorAllTheSame) {
    ExceptionRecord exception;
    EXPECT_EQ(raisedBy([&] { raiseInvokeFailure(DISP_E_EXCEPTION, exception); }),
              static_cast<std::int32_t>(DISP_E_EXCEPTION));
}

// The leak checker tells whether the texts are freed.
TEST(ErrorInfo, TextsBesideAnotherStatusAreFreedAndNotTold) {
    ExceptionRecord exception;
    exception.info.bstrDescription = newBstr(u"not asked for");
    exception.info.bstrSource = newBstr(u"somebody");
    try {
        raiseInvokeFailure(DISP_E_BADINDEX, exception);
    } catch (const RuntimeError& raised) {
        EXPECT_EQ(raised.number, 9);
        EXPECT_EQ(raised.description, u"Subscript out of range");
        return;
    }
    FAIL() << "nothing was raised";
}

TEST(ErrorInfo, AFailureNeverCrossesAsASuccess) {
    EXPECT_EQ(reportError(RuntimeError(0)), E_FAIL);
    EXPECT_EQ(reportError(RuntimeError(70000)), E_FAIL);
    EXPECT_EQ(bits(reportError(RuntimeError(65535))), 0x800AFFFFU);
    EXPECT_EQ(bits(reportOutOfMemory()), 0x800A0007U);
    EXCEPINFO exception{};
    EXPECT_EQ(fillException(RuntimeError(0), &exception), DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, E_FAIL);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SetErrorInfo(0, nullptr);
}

TEST(ErrorInfo, NothingThrownPassesTheGuard) {
    EXPECT_EQ(guarded([] {}), S_OK);
    EXPECT_EQ(bits(guarded([] { raise(error::kOverflow); })), 0x800A0006U);
    EXPECT_EQ(bits(guarded([] { throw std::bad_alloc(); })), 0x800A0007U);
    EXPECT_EQ(guarded([] { throw std::logic_error("other"); }), E_UNEXPECTED);
    SetErrorInfo(0, nullptr);
}

}  // namespace
}  // namespace orvane::automation
