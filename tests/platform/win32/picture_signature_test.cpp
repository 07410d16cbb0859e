#include "platform/win32/picture_signature.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace orvane::platform {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

PictureSignature signatureOf(std::string_view bytes) {
    return pictureSignature(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

TEST(PictureSignature, KnowsTheHostsSevenFormats) {
    EXPECT_EQ(signatureOf("BM"sv), PictureSignature::bmp);
    EXPECT_EQ(signatureOf("\xFF\xD8\xFF\xE0"sv), PictureSignature::jpeg);
    EXPECT_EQ(signatureOf("GIF89a"sv), PictureSignature::gif);
    EXPECT_EQ(signatureOf("GIF87a"sv), PictureSignature::gif);
    EXPECT_EQ(signatureOf("\xD7\xCD\xC6\x9A"sv), PictureSignature::wmf);
    EXPECT_EQ(signatureOf("\1\0\x09\0\0\3"sv), PictureSignature::wmf);
    EXPECT_EQ(signatureOf("\2\0\x09\0\0\3"sv), PictureSignature::wmf);
    EXPECT_EQ(signatureOf("\0\0\1\0\1\0"sv), PictureSignature::ico);
    EXPECT_EQ(signatureOf("\0\0\2\0\1\0"sv), PictureSignature::cur);
    const std::string emf = "\1\0\0\0"s.append(std::string(36, '\0')).append(" EMF");
    EXPECT_EQ(emf.size(), kPictureSignatureSize);
    EXPECT_EQ(signatureOf(emf), PictureSignature::emf);
}

TEST(PictureSignature, RefusesEverythingElse) {
    EXPECT_EQ(signatureOf(""sv), PictureSignature::unknown);
    EXPECT_EQ(signatureOf("B"sv), PictureSignature::unknown);
    EXPECT_EQ(signatureOf("\x89PNG\r\n\x1A\n"sv), PictureSignature::unknown);
    EXPECT_EQ(signatureOf("II*\0"sv), PictureSignature::unknown);
    EXPECT_EQ(signatureOf("8BPS"sv), PictureSignature::unknown);
    EXPECT_EQ(signatureOf("\0\0\3\0"sv), PictureSignature::unknown);
    EXPECT_EQ(signatureOf("\1\0\0\0"sv), PictureSignature::unknown);
    EXPECT_EQ(signatureOf(std::string(43, '\0').replace(0, 1, "\1")), PictureSignature::unknown);
}

}  // namespace
}  // namespace orvane::platform
