#pragma once

#include "bench.h"
#include "main/orvMain.h"
#include "peak_memory.h"

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

/// Up to a picture as the file has it.
inline FIBITMAP* loadWithFreeImage(FREE_IMAGE_FORMAT format, const std::string& path) {
    FIBITMAP* const bitmap = FreeImage_Load(format, path.c_str(), 0);
    if (bitmap == nullptr) std::exit(1);
    return bitmap;
}

inline void readWithFreeImage(FREE_IMAGE_FORMAT format, const std::string& path) {
    FreeImage_Unload(loadWithFreeImage(format, path));
}

/// Up to a picture of 24 bits, as ours is.
inline void readColoursWithFreeImage(FREE_IMAGE_FORMAT format, const std::string& path) {
    FIBITMAP* const bitmap = loadWithFreeImage(format, path);
    FIBITMAP* const colours = FreeImage_ConvertTo24Bits(bitmap);
    FreeImage_Unload(bitmap);
    FreeImage_Unload(colours);
}

}  // namespace orvane::bench
