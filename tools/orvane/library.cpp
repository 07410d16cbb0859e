#include "library.h"

#include "library_version.h"
#include "stream.h"
#include "system.h"
#include "utf8.h"

#include "orvane/OrvBase0301.h"

#include <algorithm>
#include <array>

namespace orvane::tool {

namespace {

/// A BMP's file header and its short header.
constexpr std::size_t kBmpHeaders = 14 + 40;

/// Runs calls of the library and turns what they raise into the tool's own error.
template <class Calls>
auto calling(Calls calls) {
    try {
        return calls();
    } catch (const host::Error& error) {
        throw LibraryError(error.number(), toUtf8(error.description));
    }
}

PictureFacts factsOf(host::Library& library, _PictureInfo& info) {
    PictureFacts facts;
    LONG number = 0;
    const auto read = [&](HRESULT status) {
        library.check(status);
        return number;
    };
    orvPictureTypeEx type = orvPteNothing;
    host::Text typeName;
    library.check(info.PictureType(&type));
    library.check(info.GetPictureTypeName(typeName.receive()));
    facts.type = type;
    facts.typeName = toUtf8(typeName.view());
    facts.width = read(info.Width(&number));
    facts.height = read(info.Height(&number));
    facts.bitsPerPixel = read(info.ImageBPP(&number));
    return facts;
}

bool isOfType(const LoadedPicture& loaded, SHORT wanted) {
    const auto object = loaded.picture.query<IPicture>(IID_IPicture);
    SHORT type = PICTYPE_NONE;
    return object && SUCCEEDED(object->get_Type(&type)) && type == wanted;
}

/// The file in a picture's stream: there it follows 8 bytes, a mark and its length. Empty when the
/// picture can't be saved.
std::vector<std::uint8_t> savedFile(const LoadedPicture& loaded) {
    constexpr std::array<std::uint8_t, 4> kMark = {'l', 't', 0, 0};
    constexpr std::size_t kHeader = 8;
    // Not SaveAsFile: under Wine it writes the file that a picture comes from or nothing.
    const auto persistent = loaded.picture.query<IPersistStream>(IID_IPersistStream);
    MemoryStream stream;
    if (!persistent || FAILED(persistent->Save(&stream, 0))) return {};
    const std::vector<std::uint8_t>& bytes = stream.bytes();
    const bool marked =
        bytes.size() > kHeader && std::equal(kMark.begin(), kMark.end(), bytes.begin());
    return marked ? std::vector(bytes.begin() + kHeader, bytes.end()) : std::vector<std::uint8_t>();
}

/// Wine announces channel masks for 32 bits and then leaves no room for them. The channels lie
/// where they always do without masks.
void repairMasks(std::vector<std::uint8_t>& bmp) {
    constexpr std::size_t kPixels = 10;
    constexpr std::size_t kDepth = 28;
    constexpr std::size_t kCompression = 30;
    if (bmp[kPixels] == kBmpHeaders && bmp[kPixels + 1] == 0 && bmp[kDepth] == 32) {
        bmp[kCompression] = 0;
    }
}

}  // namespace

std::vector<std::string> Library::commandLine() {
    return calling([&] {
        host::Pointer<_CommandLineParser> parser;
        host_.check(host_.global<_orvMain>().CommandLine(parser.receive()));
        LONG count = 0;
        host_.check(parser->get_Count(&count));
        std::vector<std::string> items;
        for (LONG index = -1; index < count; ++index) {
            host::Text item;
            host_.check(parser->get_Item(index, item.receive()));
            items.push_back(toUtf8(item.view()));
        }
        return items;
    });
}

LoadedPicture Library::loadPicture(const std::string& file) {
    const LibraryName name(file);
    return calling([&] {
        LoadedPicture loaded;
        host::Pointer<_PictureInfo> info;
        host_.check(host_.global<_orvMain>().LoadPictureEx(host::Text(name.text()), info.place(),
                                                           loaded.picture.receive()));
        if (!info) throw Failure(file + ": the library told nothing about the picture");
        loaded.facts = factsOf(host_, *info);
        return loaded;
    });
}

GzipFacts Library::uncompress(std::string_view bytes, GzipPart wanted) {
    return calling([&] { return readGzip(host_, bytes, wanted); });
}

LibraryFacts Library::describe(const std::string& classWithMembers) {
    return calling([&] {
        host::Pointer<ITypeInfo> info;
        host::Pointer<ITypeLib> library;
        UINT index = 0;
        const auto object = host_.create<_orvMain>();
        host_.check(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.receive()));
        host_.check(info->GetContainingTypeLib(library.receive(), &index));
        return describeLibrary(*library, classWithMembers);
    });
}

LibraryFacts Library::describeRegistered(const std::string& progId) {
    return calling([&] {
        host_.create<_orvMain>();  // the class that answers for the platform's calls
        const auto object = host_.createObject(toUtf16(progId).c_str());
        host::Pointer<ITypeInfo> info;
        if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.receive())) || !info) {
            throw Failure(progId + ": the object tells nothing about its class");
        }
        return describeObject(*info);
    });
}

std::string Library::version() {
    return calling([&] { return libraryVersion(host_); });
}

bool LoadedPicture::isBitmap() const {
    return isOfType(*this, PICTYPE_BITMAP);
}

bool LoadedPicture::isIcon() const {
    return isOfType(*this, PICTYPE_ICON);
}

std::vector<std::uint8_t> bmpOf(const LoadedPicture& loaded) {
    const auto picture = loaded.picture.query<IPicture>(IID_IPicture);
    if (!loaded.isBitmap()) throw Failure(loaded.facts.typeName + ": no bitmap");
    // The system's own pictures keep the file that they come from and would save that.
    picture->put_KeepOriginalFormat(0);
    picture->PictureChanged();
    std::vector<std::uint8_t> bmp = savedFile(loaded);
    if (bmp.size() <= kBmpHeaders || bmp[0] != 'B' || bmp[1] != 'M') {
        throw Failure("the picture can't be saved as a bitmap");
    }
    repairMasks(bmp);
    return bmp;
}

std::vector<std::uint8_t> iconOf(const LoadedPicture& loaded) {
    std::vector<std::uint8_t> icon;
    if (loaded.isIcon()) icon = savedFile(loaded);
    if (icon.empty()) throw Failure("the picture can't be saved as an icon");
    return icon;
}

}  // namespace orvane::tool
