#include "main/orvMain.h"

#include "frame/automation/apartment.h"
#include "pictures/LoadPictureEx.h"
#include "utilities/arrays.h"
#include "utilities/collections.h"

namespace orvane {
namespace {

constinit automation::ApartmentState<Ref<CommandLineParser>> cachedParser;

[[noreturn]] void notCarriedOut() {
    raise(error::kActionNotSupported);
}

}  // namespace

orvMain::orvMain() : AutomationObject(table()) {}

orvMain::~orvMain() {
    cachedParser.drop(apartment());
}

Ref<CommandLineParser> orvMain::CommandLine() {
    Ref<CommandLineParser>& parser = cachedParser.get();
    if (!parser) parser = make<CommandLineParser>();
    return parser;
}

Picture orvMain::LoadPictureEx(WStringView fileName, Ref<PictureInfo>& info) {
    return orvane::LoadPictureEx(fileName, info);
}

Variant orvMain::LoadPictureExByVar(const Variant& fileName, Variant& info) {
    return orvane::LoadPictureExByVar(fileName, info);
}

WString orvMain::GetLoadPictureExFilter(bool includeIcon, bool includeCursor, bool includeWMF,
                                        bool includeEMF) {
    return orvane::GetLoadPictureExFilter({includeIcon, includeCursor, includeWMF, includeEMF});
}

WString orvMain::GetLoadPictureExPattern(bool includeIcon, bool includeCursor, bool includeWMF,
                                         bool includeEMF) {
    return orvane::GetLoadPictureExPattern({includeIcon, includeCursor, includeWMF, includeEMF});
}

Picture orvMain::LoadResPictureByData(Array<std::uint8_t>& resourceData, Ref<PictureInfo>& info) {
    return orvane::LoadResPictureByData(resourceData, info);
}

Array<WString> orvMain::ArrayBSTR(automation::ArgumentList& args) {
    return orvane::ArrayBSTR(args.values);
}

Array<std::int32_t> orvMain::ArrayLong(automation::ArgumentList& args) {
    return orvane::ArrayLong(args.values);
}

void orvMain::ShowMSAboutBox(const Object&) {
    notCarriedOut();
}

void orvMain::ShowAboutBox(const Object&, const Object&, WStringView, const Picture&, WStringView) {
    notCarriedOut();
}

void orvMain::ShowAboutBox2(const Picture&, const Picture&, const Object&, WStringView,
                            const Picture&, WStringView) {
    notCarriedOut();
}

void orvMain::ShowAboutBoxEx(WStringView, const Picture&, const Picture&, std::int32_t,
                             std::int32_t, std::int32_t, WStringView, WStringView, WStringView,
                             WStringView, const Picture&, WStringView) {
    notCarriedOut();
}

bool orvMain::AddTextBoxInsertHook(const Object&) {
    notCarriedOut();
}

bool orvMain::RemoveTextBoxInsertHook(const Object&) {
    notCarriedOut();
}

void orvMain::ClearTextBoxInsertHooks() {
    notCarriedOut();
}

void orvMain::ShowModalForm(const Object&, const Object&) {
    notCarriedOut();
}

std::int32_t orvMain::InArray(Array<std::int32_t>& array, const Variant& findWhat,
                              const Variant& startAt, const Variant& endAt, bool& isFound) {
    return orvane::InArray(array, findWhat, startAt, endAt, isFound);
}

bool orvMain::IsInArray(Array<std::int32_t>& array, const Variant& findWhat, const Variant& startAt,
                        const Variant& endAt) {
    return orvane::IsInArray(array, findWhat, startAt, endAt);
}

std::int32_t orvMain::InCollection(Object& collection, const Variant& findWhat,
                                   const Variant& startAt, const Variant& endAt, bool& isFound) {
    return orvane::InCollection(collection, findWhat, startAt, endAt, isFound);
}

bool orvMain::IsInCollection(Object& collection, const Variant& findWhat, const Variant& startAt,
                             const Variant& endAt) {
    return orvane::IsInCollection(collection, findWhat, startAt, endAt);
}

std::int32_t orvMain::GetSelectedOptionButtonIndex(const Object&) {
    notCarriedOut();
}

void orvMain::SetSelectedOptionButtonIndex(const Object&, std::int32_t) {
    notCarriedOut();
}

bool orvMain::PressButton(const Object&) {
    notCarriedOut();
}

void orvMain::FixFonts(const Object&) {
    notCarriedOut();
}

void orvMain::FixCBCursors(const Object&) {
    notCarriedOut();
}

WString orvMain::JoinCollection(Object& collection, WStringView delimiter, bool raiseErrors) {
    return orvane::JoinCollection(collection, delimiter, raiseErrors);
}

bool orvMain::AddAutoComplete(const Object&, AddAutoCompleteFlags) {
    notCarriedOut();
}

}  // namespace orvane
