#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvane::platform {

/// The formats of the host's picture loader.
enum class PictureSignature { unknown, bmp, jpeg, gif, wmf, emf, ico, cur };

/// The bytes of a file's beginning that `pictureSignature` looks at.
inline constexpr std::size_t kPictureSignatureSize = 44;

/// Tells a picture file by its first bytes, of which there may be fewer than
/// `kPictureSignatureSize`. It answers for the signature alone: the file may still be damaged.
PictureSignature pictureSignature(std::span<const std::uint8_t> start);

}  // namespace orvane::platform
