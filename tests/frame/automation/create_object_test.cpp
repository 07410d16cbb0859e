#include "sample_class.h"

#include "frame/automation/create_object.h"
#include "frame/automation/table.h"
#include "platform/ole32.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#ifdef _WIN32
#include <objbase.h>
#endif

#include <gtest/gtest.h>

namespace orvane::automation {

const LibraryTable& libraryTable() {
    static const LibraryTable table{{},     "SampleLibrary",          1,  0,
                                    u"",    {&test::Sample::table()}, {}, {1, 0, 0, 0},
                                    u"1.0", "SampleLibrary"};
    return table;
}

}  // namespace orvane::automation

namespace orvane::test {
namespace {

TEST(CreateObject, AsksThePlatformForTheNameAndThenForTheObject) {
    const Ref<Sample> made = make<Sample>();
    const ScopedTarget names(platform::ole32.CLSIDFromProgID,
                             [](const std::u16string& progId, platform::ClassIdBytes& classId) {
                                 EXPECT_EQ(progId, u"Some.Class");
                                 classId.bytes[0] = 7;
                                 return 0;
                             });
    const ScopedTarget objects(platform::ole32.CoCreateInstance,
                               [&made](const platform::ClassIdBytes& classId, IUnknown*& object) {
                                   EXPECT_EQ(classId.bytes[0], 7);
                                   object = made->asObject().detach();
                                   return 0;
                               });
    EXPECT_TRUE(createObject(u"Some.Class").is(made->asObject()));
}

TEST(CreateObject, ANameThatIsNotRegisteredRaises429) {
    const ScopedTarget names(platform::ole32.CLSIDFromProgID,
                             [](const std::u16string&, platform::ClassIdBytes&) {
                                 return platform::kClassStringUnknown;
                             });
    EXPECT_EQ(raisedBy([] { createObject(u"SampleLibrary.Sample"); }), error::kCantCreateObject);
}

TEST(CreateObject, AClassThatGivesNoObjectRaises429) {
    const ScopedTarget names(platform::ole32.CLSIDFromProgID,
                             [](const std::u16string&, platform::ClassIdBytes&) { return 0; });
    const ScopedTarget objects(platform::ole32.CoCreateInstance,
                               [](const platform::ClassIdBytes&, IUnknown*& object) {
                                   object = nullptr;
                                   return static_cast<std::int32_t>(0x80040154);
                               });
    EXPECT_EQ(raisedBy([] { createObject(u"Some.Class"); }), error::kCantCreateObject);
}

TEST(CreateObject, WithoutRegistrationTheLibrarysOwnClassesAreFoundByName) {
    const ScopedTarget names(
        platform::ole32.CLSIDFromProgID,
        [](const std::u16string&, platform::ClassIdBytes&) { return platform::kNoRegistration; });
    const int before = Sample::alive;
    {
        const Object object = createObject(u"samplelibrary.SAMPLE");
        EXPECT_TRUE(object.hasMember(u"Join"));
        EXPECT_EQ(Sample::alive, before + 1);
    }
    EXPECT_EQ(Sample::alive, before);
    EXPECT_EQ(raisedBy([] { createObject(u"SampleLibrary.Other"); }), error::kCantCreateObject);
    EXPECT_EQ(raisedBy([] { createObject(u"Sample"); }), error::kCantCreateObject);
    EXPECT_EQ(raisedBy([] { createObject(u""); }), error::kCantCreateObject);
}

#ifdef _WIN32
TEST(CreateObject, MakesARealObjectOfTheSystem) {
    ASSERT_GE(CoInitialize(nullptr), 0);
    {
        const Object dictionary = createObject(u"Scripting.Dictionary");
        dictionary.call(u"Add", {Variant(u"key"), Variant(std::int32_t{5})});
        EXPECT_EQ(*dictionary.get(u"Count").as<std::int32_t>(), 1);
        EXPECT_EQ(*dictionary.defaultValue({Variant(u"key")}).as<std::int32_t>(), 5);
    }
    EXPECT_EQ(raisedBy([] { createObject(u"No.SuchClass"); }), error::kCantCreateObject);
    CoUninitialize();
}
#else
TEST(CreateObject, ThePlatformHereHasNoRegistration) {
    const Object object = createObject(u"SampleLibrary.Sample");
    EXPECT_TRUE(object.hasMember(u"Join"));
}
#endif

}  // namespace
}  // namespace orvane::test
