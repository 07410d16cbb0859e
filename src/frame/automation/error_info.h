#pragma once

#include "frame/errors.h"

#include "orvane/automation.h"

namespace orvane::automation {

/// The status code of a run-time error: numbers 1 to 65535 become 0x800A0000 + number, any other
/// crosses unchanged.
HRESULT statusOf(std::int32_t errorNumber);

/// The error number of a failed status code, the way a host's runtime reads it.
std::int32_t errorNumberOf(HRESULT status);

/// Leaves `failure` as the thread's error information and answers its status code; E_FAIL for a
/// number whose status would be one of success (0, and those above 65535).
HRESULT reportError(const RuntimeError& failure) noexcept;
/// The same for memory that ran out; the information is left out if there is none for it either.
HRESULT reportOutOfMemory() noexcept;

/// Fills `exception` (which may be null) and answers DISP_E_EXCEPTION. An error of number 0 crosses
/// as E_FAIL: a record without a number tells hosts of no error.
HRESULT fillException(const RuntimeError& failure, EXCEPINFO* exception);

/// Raises the run-time error of a failed call, with the thread's error information where the
/// callee left some.
[[noreturn]] void raiseStatus(HRESULT status);

/// The exception record of one `Invoke`, with the texts that the callee gives away in it.
struct ExceptionRecord {
    ExceptionRecord() = default;
    ExceptionRecord(const ExceptionRecord&) = delete;
    ExceptionRecord& operator=(const ExceptionRecord&) = delete;
    ~ExceptionRecord() { clear(); }
    /// Frees the texts.
    void clear();

    EXCEPINFO info{};
};

/// Raises the error of a failed `Invoke`: what the record tells where the status is
/// DISP_E_EXCEPTION, else the status itself.
[[noreturn]] void raiseInvokeFailure(HRESULT status, ExceptionRecord& exception);

/// Runs `body` and turns what it throws into a status code with error information. Nothing passes
/// through the binary interface as a C++ exception.
template <class Body>
HRESULT guarded(Body&& body) {
    try {
        body();
        return S_OK;
    } catch (const RuntimeError& failure) {
        return reportError(failure);
    } catch (const std::bad_alloc&) {
        return reportOutOfMemory();
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace orvane::automation
