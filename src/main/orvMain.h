#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/parameters.h"
#include "frame/values/picture.h"
#include "pictures/PictureInfo.h"
#include "utilities/CommandLineParser.h"

namespace orvane {

/// Flags of `orvMain.AddAutoComplete`.
enum class AddAutoCompleteFlags : std::int32_t {
    aacFileSystem = 1,
    aacURLHistory = 2,
    aacURLMRU = 4,
    aacURLAll = 6,
    aacUseTabs = 8,
    aacFileSystemDirs = 32,
    aacAutosuggestForceOn = 0x10000000,
    aacAutosuggestForceOff = 0x20000000,
    aacAutoappendForceOn = 0x40000000,
    aacAutoappendForceOff = static_cast<std::int32_t>(0x80000000),
};
const automation::EnumTable& enumTable(AddAutoCompleteFlags);

/// The global class: a front whose members are carried out where their subjects live. A member that
/// this version does not carry out raises 445.
class orvMain final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvMain();

    /// The parsed command line: one object per apartment, made on the first call.
    Ref<CommandLineParser> CommandLine();

    Array<WString> ArrayBSTR(automation::ArgumentList& args);
    Array<std::int32_t> ArrayLong(automation::ArgumentList& args);

    void ShowMSAboutBox(const Object& control);
    void ShowAboutBox(const Object& form, const Object& appObject, WStringView description,
                      const Picture& picture, WStringView pictureToolTipText);
    void ShowAboutBox2(const Picture& icon, const Picture& iconSmall, const Object& appObject,
                       WStringView description, const Picture& picture,
                       WStringView pictureToolTipText);
    void ShowAboutBoxEx(WStringView title, const Picture& icon, const Picture& smallIcon,
                        std::int32_t verMajor, std::int32_t verMinor, std::int32_t verRevision,
                        WStringView author, WStringView authorEMail, WStringView devote,
                        WStringView description, const Picture& picture,
                        WStringView pictureToolTipText);

    Picture LoadPictureEx(WStringView fileName, Ref<PictureInfo>& info);
    Variant LoadPictureExByVar(const Variant& fileName, Variant& info);
    WString GetLoadPictureExFilter(bool includeIcon, bool includeCursor, bool includeWMF,
                                   bool includeEMF);
    WString GetLoadPictureExPattern(bool includeIcon, bool includeCursor, bool includeWMF,
                                    bool includeEMF);
    Picture LoadResPictureByData(Array<std::uint8_t>& resourceData, Ref<PictureInfo>& info);

    bool AddTextBoxInsertHook(const Object& textBox);
    bool RemoveTextBoxInsertHook(const Object& textBox);
    void ClearTextBoxInsertHooks();
    void ShowModalForm(const Object& parentForm, const Object& childForm);

    std::int32_t InArray(Array<std::int32_t>& array, const Variant& findWhat,
                         const Variant& startAt, const Variant& endAt, bool& isFound);
    bool IsInArray(Array<std::int32_t>& array, const Variant& findWhat, const Variant& startAt,
                   const Variant& endAt);
    std::int32_t InCollection(Object& collection, const Variant& findWhat, const Variant& startAt,
                              const Variant& endAt, bool& isFound);
    bool IsInCollection(Object& collection, const Variant& findWhat, const Variant& startAt,
                        const Variant& endAt);

    std::int32_t GetSelectedOptionButtonIndex(const Object& optionButtonArray);
    void SetSelectedOptionButtonIndex(const Object& optionButtonArray, std::int32_t index);
    bool PressButton(const Object& button);
    void FixFonts(const Object& form);
    void FixCBCursors(const Object& form);
    WString JoinCollection(Object& collection, WStringView delimiter, bool raiseErrors);
    bool AddAutoComplete(const Object& control, AddAutoCompleteFlags flags);

protected:
    ~orvMain() override;
};

}  // namespace orvane
