#pragma once

#include "frame/binary_file.h"
#include "pictures/DecodedImage.h"
#include "pictures/IFileFormat.h"

/// What the readers with a decoder of their own do around it.
namespace orvane {

/// Opens a file and gives what `read(file)` answers; any run-time error closes the file and counts
/// as false.
template <class Read>
bool tryReading(WStringView fileName, Read&& read) {
    bool answer = false;
    ErrorTrap trap;
    trap([&] {
        BinaryFile file(fileName, FileMode::read);
        answer = read(file);
    });
    return answer;
}

/// `IFileFormat::LoadPicture`: resets `info`, has `format` verify the file and `decode` read it,
/// and makes a picture of what was read; Nothing when one of them says no.
Picture loadDecoded(IFileFormat& format, bool (*decode)(WStringView, DecodedImage&),
                    orvPictureTypeEx type, WStringView fileName, const Ref<PictureInfo>& info);

}  // namespace orvane
