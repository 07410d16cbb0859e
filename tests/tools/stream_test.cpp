#include "stream.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane::tool {
namespace {

class MemoryStreamTest : public testing::Test {
protected:
    HRESULT write(const std::string& text) {
        ULONG written = 0;
        const HRESULT status = stream.Write(text.data(), static_cast<ULONG>(text.size()), &written);
        EXPECT_EQ(written, FAILED(status) ? 0 : text.size());
        return status;
    }

    HRESULT seek(std::int64_t move, DWORD origin) {
        LARGE_INTEGER distance{};
        distance.QuadPart = move;
        ULARGE_INTEGER position{};
        position.QuadPart = 12345;
        const HRESULT status = stream.Seek(distance, origin, &position);
        reached = position.QuadPart;
        return status;
    }

    std::string text() const { return {stream.bytes().begin(), stream.bytes().end()}; }

    MemoryStream stream;
    std::uint64_t reached = 0;
};

TEST_F(MemoryStreamTest, KeepsWhatIsWritten) {
    EXPECT_EQ(write("one "), S_OK);
    EXPECT_EQ(write(""), S_OK);
    EXPECT_EQ(write("two"), S_OK);
    EXPECT_EQ(text(), "one two");
}

TEST_F(MemoryStreamTest, WritesOverWhatIsThere) {
    write("one two");
    EXPECT_EQ(seek(2, 0), S_OK);
    EXPECT_EQ(reached, 2u);
    write("XY");
    EXPECT_EQ(text(), "onXYtwo");
    EXPECT_EQ(seek(-1, 2), S_OK);
    EXPECT_EQ(reached, 6u);
    write("!?");
    EXPECT_EQ(text(), "onXYtw!?");
    EXPECT_EQ(seek(-3, 1), S_OK);
    EXPECT_EQ(reached, 5u);
}

TEST_F(MemoryStreamTest, AGapIsZeroes) {
    EXPECT_EQ(seek(2, 0), S_OK);
    write("x");
    EXPECT_EQ(text(), std::string("\0\0x", 3));
}

TEST_F(MemoryStreamTest, ReadsItBack) {
    write("abc");
    seek(1, 0);
    char place[8] = {};
    ULONG read = 0;
    EXPECT_EQ(stream.Read(place, 2, &read), S_OK);
    EXPECT_EQ(std::string(place, read), "bc");
    EXPECT_EQ(stream.Read(place, 2, &read), S_FALSE);
    EXPECT_EQ(read, 0u);
}

TEST_F(MemoryStreamTest, PlacesOutsideAreRefused) {
    write("abc");
    EXPECT_EQ(seek(-1, 0), E_INVALIDARG);
    EXPECT_EQ(seek(-4, 2), E_INVALIDARG);
    EXPECT_EQ(seek(INT64_MAX, 1), E_INVALIDARG);
    EXPECT_EQ(seek(INT64_MIN, 1), E_INVALIDARG);
    EXPECT_EQ(seek(0, 7), E_INVALIDARG);
    EXPECT_EQ(reached, 12345u);
    EXPECT_EQ(seek(INT32_MAX, 0), S_OK);
    EXPECT_EQ(write("x"), E_OUTOFMEMORY);
    EXPECT_EQ(text(), "abc");
}

TEST_F(MemoryStreamTest, ItsSizeCanBeSetAndAsked) {
    ULARGE_INTEGER size{};
    size.QuadPart = 5;
    EXPECT_EQ(stream.SetSize(size), S_OK);
    STATSTG facts{};
    EXPECT_EQ(stream.Stat(&facts, 1), S_OK);
    EXPECT_EQ(facts.cbSize.QuadPart, 5u);
    EXPECT_EQ(facts.type, 2u);
    size.QuadPart = std::uint64_t{1} << 40;
    EXPECT_EQ(stream.SetSize(size), E_OUTOFMEMORY);
}

TEST_F(MemoryStreamTest, IsAStreamAndNothingElse) {
    for (const IID& iid : {IID_IUnknown, IID_ISequentialStream, IID_IStream}) {
        void* found = nullptr;
        EXPECT_EQ(stream.QueryInterface(iid, &found), S_OK);
        EXPECT_EQ(found, static_cast<IStream*>(&stream));
        EXPECT_EQ(stream.Release(), 1u);
    }
    void* found = &stream;
    EXPECT_EQ(stream.QueryInterface(IID_IDispatch, &found), E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);
}

}  // namespace
}  // namespace orvane::tool
