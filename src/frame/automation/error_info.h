#pragma once

#include "frame/errors.h"

#include "orvane/automation.h"

namespace orvane::automation {

/// The status code of a run-time error: numbers 1 to 65535 become 0x800A0000 + number, any other
/// crosses unchanged.
HRESULT statusOf(std::int32_t errorNumber);

/// The error number of a failed status code, the way a host's runtime reads it.
std::int32_t errorNumberOf(HRESULT status);

/// Leaves `failure` as the thread's error information and answers its status code.
HRESULT reportError(const RuntimeError& failure);

/// Fills `exception` (which may be null) and answers DISP_E_EXCEPTION.
HRESULT fillException(const RuntimeError& failure, EXCEPINFO* exception);

/// Raises the run-time error of a failed call, with the thread's error information where the
/// callee left some.
[[noreturn]] void raiseStatus(HRESULT status);
/// Raises the error of a failed `Invoke`; frees what `exception` holds.
[[noreturn]] void raiseInvokeFailure(HRESULT status, EXCEPINFO& exception);

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
        return reportError(RuntimeError(error::kOutOfMemory));
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace orvane::automation
