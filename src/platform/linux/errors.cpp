#include "platform/linux/errors.h"

#include <cerrno>

namespace orvane::platform {

namespace {

// Plain data: nothing runs for it at a thread's end, so the library can be unloaded at any time.
constinit thread_local std::uint32_t threadLastError = kErrorSuccess;

struct Pair {
    int number;
    std::uint32_t error;
};

constexpr Pair kPairs[] = {
    {0, kErrorSuccess},
    {ENOENT, kErrorFileNotFound},
    {ENOTDIR, kErrorPathNotFound},
    {EACCES, kErrorAccessDenied},
    {EPERM, kErrorAccessDenied},
    {EISDIR, kErrorAccessDenied},
    {EROFS, kErrorWriteProtect},
    {EEXIST, kErrorFileExists},
    {EMFILE, kErrorTooManyOpenFiles},
    {ENFILE, kErrorTooManyOpenFiles},
    {EBADF, kErrorInvalidHandle},
    {ENOMEM, kErrorNotEnoughMemory},
    {EBUSY, kErrorSharingViolation},
    {ETXTBSY, kErrorSharingViolation},
    {EINVAL, kErrorInvalidParameter},
    {EFAULT, kErrorInvalidParameter},
    {ENOSPC, kErrorDiskFull},
    {EDQUOT, kErrorDiskFull},
    {EFBIG, kErrorFileTooLarge},
    {ENAMETOOLONG, kErrorFilenameExcedRange},
    {ELOOP, kErrorCantResolveFilename},
    {ENOTEMPTY, kErrorDirNotEmpty},
    {EXDEV, kErrorNotSameDevice},
    {EPIPE, kErrorBrokenPipe},
    {ESPIPE, kErrorSeek},
    {EIO, kErrorIoDevice},
    {ENXIO, kErrorNotReady},
    {ENODEV, kErrorNotReady},
    {EMLINK, kErrorTooManyLinks},
};

}  // namespace

std::uint32_t lastError() {
    return threadLastError;
}

void setLastError(std::uint32_t error) {
    threadLastError = error;
}

std::uint32_t errorFromErrno(int number) {
    for (const Pair& pair : kPairs) {
        if (pair.number == number) {
            return pair.error;
        }
    }
    return kErrorGenFailure;
}

}  // namespace orvane::platform
