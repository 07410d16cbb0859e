#pragma once

#include "bench.h"
#include "main/orvMain.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wconversion"
#include <FreeImage.h>
#include <magick/api.h>
#pragma GCC diagnostic pop

/// What the benchmarks of picture files share: a file on disk, from there to a picture, and peers.
namespace orvane::bench {

/// A file in a folder of its own, both gone at the end.
class BenchFile {
public:
    explicit BenchFile(const char* name) {
        if (mkdtemp(folder_.data()) == nullptr) std::exit(1);
        path_ = folder_ + "/" + name;
    }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    ~BenchFile() {
        unlink(path_.c_str());
        rmdir(folder_.c_str());
    }

    const std::string& path() const { return path_; }
    std::u16string widePath() const { return {path_.begin(), path_.end()}; }
    void write(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }

private:
    std::string folder_ = "/tmp/orvane-bench-XXXXXX";
    std::string path_;
};

inline void loadPicture(orvMain& library, const std::u16string& path) {
    Ref<PictureInfo> info;
    if (library.LoadPictureEx(path, info).isNothing()) std::exit(1);
}

inline void readWithGraphicsMagick(const char* format, const std::string& path) {
    ExceptionInfo exception;
    GetExceptionInfo(&exception);
    ImageInfo* info = CloneImageInfo(nullptr);
    std::snprintf(info->filename, sizeof info->filename, "%s:%s", format, path.c_str());
    Image* image = ReadImage(info, &exception);
    if (image == nullptr) std::exit(1);
    DestroyImage(image);
    DestroyImageInfo(info);
    DestroyExceptionInfo(&exception);
}

/// Up to a picture of 24 bits at the least, as ours is.
inline void readWithFreeImage(FREE_IMAGE_FORMAT format, const std::string& path) {
    FIBITMAP* bitmap = FreeImage_Load(format, path.c_str(), 0);
    if (bitmap == nullptr) std::exit(1);
    if (FreeImage_GetBPP(bitmap) < 24) {
        FIBITMAP* const colors = FreeImage_ConvertTo24Bits(bitmap);
        FreeImage_Unload(bitmap);
        bitmap = colors;
    }
    FreeImage_Unload(bitmap);
}

/// The peak memory in KiB of a process that does nothing but load the file: the command-line host.
inline long peakKilobytes(const std::string& host, const std::string& path) {
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execl(host.c_str(), host.c_str(), "picture", "info", path.c_str(), nullptr);
        _exit(127);
    }
    rusage usage{};
    int status = 0;
    if (wait4(child, &status, 0, &usage) != child || WEXITSTATUS(status) == 127) std::exit(1);
    return usage.ru_maxrss;
}

/// That peak against a limit in bytes, and what the limit is.
inline void printPeak(const std::string& host, const std::string& path, long limit,
                      const char* meaning) {
    const long peak = peakKilobytes(host, path);
    std::printf("    peak memory of a host that loads it: %ld MiB, %.2f of %s\n", peak / 1024,
                static_cast<double>(peak) / (static_cast<double>(limit) / 1024), meaning);
}

/// Pixels of 24 bits three times, the file, and 16 MiB for the rest.
inline void printPeakOfDecoder(const std::string& host, const std::string& path, long pixels) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    printPeak(host, path, 3 * 3 * pixels + static_cast<long>(file.tellg()) + (16L << 20),
              "three times the decoded size, the file and 16 MiB");
}

}  // namespace orvane::bench
