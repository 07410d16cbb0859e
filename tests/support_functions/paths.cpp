#include "platform/paths.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

#ifdef _WIN32

TEST(Paths, AreSeparatedByABackslashAndTakeASlash) {
    EXPECT_EQ(pathSeparator(), u'\\');
    EXPECT_TRUE(isPathSeparator(u'\\'));
    EXPECT_TRUE(isPathSeparator(u'/'));
    EXPECT_FALSE(isPathSeparator(u':'));
}

TEST(Paths, HaveADriveAShareOrAStrokeAsTheirRoot) {
    EXPECT_EQ(pathRootLength(u""), 0U);
    EXPECT_EQ(pathRootLength(u"a\\b"), 0U);
    EXPECT_EQ(pathRootLength(u"\\a"), 1U);
    EXPECT_EQ(pathRootLength(u"c:a"), 2U);
    EXPECT_EQ(pathRootLength(u"c:\\a"), 3U);
    EXPECT_EQ(pathRootLength(u"c:/a"), 3U);
    EXPECT_EQ(pathRootLength(u"\\\\server\\share\\a"), 15U);
    EXPECT_EQ(pathRootLength(u"\\\\server\\share"), 14U);
    EXPECT_EQ(pathRootLength(u"\\\\server"), 8U);
}

#else

TEST(Paths, AreSeparatedByASlash) {
    EXPECT_EQ(pathSeparator(), u'/');
    EXPECT_TRUE(isPathSeparator(u'/'));
    EXPECT_FALSE(isPathSeparator(u'\\'));
}

TEST(Paths, HaveASlashAsTheirRoot) {
    EXPECT_EQ(pathRootLength(u""), 0U);
    EXPECT_EQ(pathRootLength(u"a/b"), 0U);
    EXPECT_EQ(pathRootLength(u"/a"), 1U);
    EXPECT_EQ(pathRootLength(u"c:\\a"), 0U);
}

#endif

}  // namespace
}  // namespace orvane::platform
