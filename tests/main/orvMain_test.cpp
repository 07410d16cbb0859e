#include "main/orvMain.h"

#include "frame/automation/table.h"
#include "pictures/LoadPictureEx.h"
#include "support/modules.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <thread>

namespace orvane {
namespace {

using automation::libraryObject;
using test::raisedBy;

/// A member that is not carried out, called with arguments that fit.
struct Refusal {
    const char* name;
    std::function<void(orvMain&)> direct;
    std::function<void(const Object&)> late;
};

Object nothing() {
    return {};
}
Variant number(std::int32_t value) {
    return Variant(value);
}

std::vector<Refusal> refusals() {
    static const Picture none;
    return {
        {"ShowMSAboutBox", [](orvMain& main) { main.ShowMSAboutBox(nothing()); },
         [](const Object& main) { main.call(u"ShowMSAboutBox", {nothing()}); }},
        {"ShowAboutBox",
         [](orvMain& main) { main.ShowAboutBox(nothing(), nothing(), u"", none, u""); },
         [](const Object& main) {
             main.call(u"ShowAboutBox", {nothing(), nothing()});
         }},
        {"ShowAboutBox2",
         [](orvMain& main) { main.ShowAboutBox2(none, none, nothing(), u"", none, u""); },
         [](const Object& main) {
             main.call(u"ShowAboutBox2", {nothing(), nothing(), nothing()});
         }},
        {"ShowAboutBoxEx",
         [](orvMain& main) {
             main.ShowAboutBoxEx(u"", none, none, 1, 0, 0, u"", u"", u"", u"", none, u"");
         },
         [](const Object& main) { main.call(u"ShowAboutBoxEx", {u"Title"}); }},
        {"AddTextBoxInsertHook", [](orvMain& main) { main.AddTextBoxInsertHook(nothing()); },
         [](const Object& main) { main.call(u"AddTextBoxInsertHook", {nothing()}); }},
        {"RemoveTextBoxInsertHook", [](orvMain& main) { main.RemoveTextBoxInsertHook(nothing()); },
         [](const Object& main) { main.call(u"RemoveTextBoxInsertHook", {nothing()}); }},
        {"ClearTextBoxInsertHooks", [](orvMain& main) { main.ClearTextBoxInsertHooks(); },
         [](const Object& main) { main.call(u"ClearTextBoxInsertHooks"); }},
        {"ShowModalForm", [](orvMain& main) { main.ShowModalForm(nothing(), nothing()); },
         [](const Object& main) {
             main.call(u"ShowModalForm", {nothing(), nothing()});
         }},
        {"GetSelectedOptionButtonIndex",
         [](orvMain& main) { main.GetSelectedOptionButtonIndex(nothing()); },
         [](const Object& main) { main.call(u"GetSelectedOptionButtonIndex", {nothing()}); }},
        {"SetSelectedOptionButtonIndex",
         [](orvMain& main) { main.SetSelectedOptionButtonIndex(nothing(), 0); },
         [](const Object& main) {
             main.call(u"SetSelectedOptionButtonIndex", {nothing(), number(0)});
         }},
        {"PressButton", [](orvMain& main) { main.PressButton(nothing()); },
         [](const Object& main) { main.call(u"PressButton", {nothing()}); }},
        {"FixFonts", [](orvMain& main) { main.FixFonts(nothing()); },
         [](const Object& main) { main.call(u"FixFonts", {nothing()}); }},
        {"FixCBCursors", [](orvMain& main) { main.FixCBCursors(nothing()); },
         [](const Object& main) { main.call(u"FixCBCursors", {nothing()}); }},
        {"AddAutoComplete",
         [](orvMain& main) { main.AddAutoComplete(nothing(), AddAutoCompleteFlags{}); },
         [](const Object& main) { main.call(u"AddAutoComplete", {nothing()}); }},
    };
}

class Main : public testing::Test {
protected:
    Ref<orvMain> main_ = make<orvMain>();
};

TEST_F(Main, RaisesNotSupportedForEveryMemberThatIsNotCarriedOut) {
    for (const Refusal& refusal : refusals()) {
        EXPECT_EQ(raisedBy([&] { refusal.direct(*main_); }), error::kActionNotSupported)
            << refusal.name;
        EXPECT_EQ(raisedBy([&] { refusal.late(main_->asObject()); }), error::kActionNotSupported)
            << refusal.name << ", late bound";
    }
}

TEST_F(Main, CarriesOutAllOtherMembers) {
    std::set<std::string> others;
    for (const automation::Member& member : orvMain::table().members)
        others.insert(member.name);
    EXPECT_EQ(others.size(), 27U);
    for (const Refusal& refusal : refusals())
        EXPECT_EQ(others.erase(refusal.name), 1U);
    EXPECT_EQ(others, (std::set<std::string>{"CommandLine", "ArrayBSTR", "ArrayLong",
                                             "LoadPictureEx", "LoadPictureExByVar",
                                             "GetLoadPictureExFilter", "GetLoadPictureExPattern",
                                             "LoadResPictureByData", "InArray", "IsInArray",
                                             "InCollection", "IsInCollection", "JoinCollection"}));
}

TEST_F(Main, GivesTheSameCommandLineOnEveryCall) {
    const Ref<CommandLineParser> first = main_->CommandLine();
    EXPECT_EQ(main_->CommandLine(), first);
    const Variant late = main_->asObject().call(u"CommandLine");
    EXPECT_TRUE(late.as<Object>()->is(first->asObject()));
}

TEST_F(Main, SharesTheCommandLineWithTheApartmentsOtherInstances) {
    const Ref<orvMain> other = make<orvMain>();
    EXPECT_EQ(other->CommandLine(), main_->CommandLine());
}

TEST_F(Main, ShowsANewLineToAllHoldersOfTheCommandLine) {
    const Ref<CommandLineParser> held = main_->CommandLine();
    main_->CommandLine()->SetNewCommandLine(u"one two", true);
    EXPECT_EQ(held->Item(1), u"two");
}

TEST_F(Main, DropsTheCommandLineWhenAnInstanceEnds) {
    const Ref<CommandLineParser> first = main_->CommandLine();
    first->SetNewCommandLine(u"one two", true);
    make<orvMain>();
    EXPECT_NE(main_->CommandLine(), first);
    EXPECT_EQ(first->Count(), 2) << "a holder keeps its parser";
}

TEST_F(Main, GivesEachThreadACommandLineOfItsOwn) {
    const CommandLineParser* const mine = main_->CommandLine().get();
    const CommandLineParser* theirs = mine;
    std::thread([&] {
        const Ref<orvMain> other = make<orvMain>();
        theirs = other->CommandLine().get();
    }).join();
    EXPECT_NE(theirs, mine);
    EXPECT_EQ(main_->CommandLine().get(), mine);
}

TEST_F(Main, LateBoundFlagsOfTheFiltersAreOffUnlessGiven) {
    const Object late = main_->asObject();
    EXPECT_EQ(*late.call(u"GetLoadPictureExFilter").as<WString>(), GetLoadPictureExFilter({}));
    EXPECT_EQ(*late.call(u"GetLoadPictureExPattern").as<WString>(), GetLoadPictureExPattern({}));
    EXPECT_EQ(*late.call(u"GetLoadPictureExPattern", {true, false, false, true}).as<WString>(),
              GetLoadPictureExPattern({.icon = true, .cursor = false, .wmf = false, .emf = true}));
}

TEST_F(Main, PassesTheFlagsOfTheFiltersOnInTheirOrder) {
    for (int flag = 0; flag < 4; ++flag) {
        const FilterParts parts{flag == 0, flag == 1, flag == 2, flag == 3};
        EXPECT_EQ(main_->GetLoadPictureExFilter(flag == 0, flag == 1, flag == 2, flag == 3),
                  GetLoadPictureExFilter(parts));
        EXPECT_EQ(main_->GetLoadPictureExPattern(flag == 0, flag == 1, flag == 2, flag == 3),
                  GetLoadPictureExPattern(parts));
    }
}

TEST_F(Main, LoadsAnEmptyPictureForALateBoundCallWithoutArguments) {
    const Variant picture = main_->asObject().call(u"LoadPictureEx");
    EXPECT_EQ(Picture(*picture.as<Object>()).handle(), 0U);
}

TEST_F(Main, RaisesALoadersErrorLateBound) {
    const Object late = main_->asObject();
    EXPECT_EQ(raisedBy([&] { late.call(u"LoadPictureEx", {u"no such file.bmp"}); }),
              error::kFileNotFound);
    Variant info{Object()};
    EXPECT_EQ(raisedBy([&] {
                  late.call(u"LoadPictureExByVar", {u"no such file.bmp", Variant::reference(info)});
              }),
              error::kFileNotFound);
}

TEST_F(Main, RaisesInvalidPictureForALateBoundResourceThatIsNone) {
    const Array<std::uint8_t> bytes = Array<std::uint8_t>::of({'t', 'e', 'x', 't'});
    Variant data(bytes);
    EXPECT_EQ(raisedBy([&] {
                  main_->asObject().call(u"LoadResPictureByData", {Variant::reference(data)});
              }),
              error::kInvalidPicture);
}

}  // namespace
}  // namespace orvane
