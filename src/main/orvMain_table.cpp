#include "main/orvMain.h"

#include "frame/automation/describe.h"

namespace orvane {
namespace {

constexpr const char16_t* kToolTip = u"Иллис";

automation::ClassTable describe() {
    using automation::optional;
    return automation::ClassBuilder<orvMain>(
               "orvMain", automation::Instancing::global,
               {0x9BFF0E80, 0x2887, 0x4ECA, {0x8C, 0x35, 0xF1, 0xA2, 0x1B, 0x8C, 0xFD, 0x94}},
               {0x8F8BBB56, 0x3B84, 0x44E0, {0x9A, 0x8B, 0x74, 0x7D, 0xF3, 0x81, 0x3A, 0x09}})
        .alias("orvMain___v0",
               {0x396DF790, 0x3A67, 0x4A96, {0xAC, 0x16, 0xB3, 0x63, 0xFB, 0x7B, 0xD3, 0x07}})
        .alias("orvMain___v1",
               {0x4B56DB86, 0x7713, 0x4A2A, {0xAF, 0x03, 0x5A, 0x13, 0x25, 0x58, 0x92, 0x87}})
        .method<&orvMain::CommandLine>("CommandLine")
        .method<&orvMain::ArrayBSTR>("ArrayBSTR", {"Args"})
        .method<&orvMain::ArrayLong>("ArrayLong", {"Args"})
        .method<&orvMain::ShowMSAboutBox>("ShowMSAboutBox", {"MSControlObject"})
        .method<&orvMain::ShowAboutBox>("ShowAboutBox", {"Form",
                                                         "AppObject",
                                                         {"Description", u""},
                                                         optional("Picture"),
                                                         {"PictureToolTipText", kToolTip}})
        .method<&orvMain::ShowAboutBox2>("ShowAboutBox2", {"Icon",
                                                           "IconSmall",
                                                           "AppObject",
                                                           {"Description", u""},
                                                           optional("Picture"),
                                                           {"PictureToolTipText", kToolTip}})
        .method<&orvMain::ShowAboutBoxEx>("ShowAboutBoxEx",
                                          {"Title",
                                           optional("Icon"),
                                           optional("SmallIcon"),
                                           {"VerMajor", 1},
                                           {"VerMinor", 0},
                                           {"VerRevision", 0},
                                           {"Author", u"Мира Сойл"},
                                           {"AuthorEMail", u"mira.soyl@tarnhollow.example"},
                                           {"Devote", u"Посвящается Иллис"},
                                           {"Description", u""},
                                           optional("Picture"),
                                           {"PictureToolTipText", kToolTip}})
        .method<&orvMain::LoadPictureEx>("LoadPictureEx",
                                         {optional("FileName"), optional("PictureInfo")})
        .help(u"Расширенная версия. Грузит картинку и даёт сведения о ней.")
        .method<&orvMain::LoadPictureExByVar>("LoadPictureExByVar", {"FileName", "PictureInfo"})
        .help(u"Версия LoadPictureEx() для использования в скриптах.")
        .method<&orvMain::GetLoadPictureExFilter>("GetLoadPictureExFilter",
                                                  {{"IncludeIcon", false},
                                                   {"IncludeCursor", false},
                                                   {"IncludeWMF", false},
                                                   {"IncludeEMF", false}})
        .help(u"Возвращает фильтр для диалогового окна открытия/сохранения файлов. Содержит все "
              u"форматы, поддерживаемые LoadPictureEx().")
        .method<&orvMain::GetLoadPictureExPattern>("GetLoadPictureExPattern",
                                                   {{"IncludeIcon", false},
                                                    {"IncludeCursor", false},
                                                    {"IncludeWMF", false},
                                                    {"IncludeEMF", false}})
        .method<&orvMain::LoadResPictureByData>("LoadResPictureByData",
                                                {"ResourceData", optional("PictureInfo")})
        .help(u"Сохраняет картинку во временный каталог, загружает её и удаляет файл. Поддерживает "
              u"все форматы LoadPictureEx(). Передавать данные LoadResData().")
        .method<&orvMain::AddTextBoxInsertHook>("AddTextBoxInsertHook", {"TextBoxControl"})
        .method<&orvMain::RemoveTextBoxInsertHook>("RemoveTextBoxInsertHook", {"TextBoxControl"})
        .method<&orvMain::ClearTextBoxInsertHooks>("ClearTextBoxInsertHooks")
        .method<&orvMain::ShowModalForm>("ShowModalForm", {"ParentForm", "ChildForm"})
        .method<&orvMain::InArray>("InArray", {"ArrayX", "FindWhat", optional("StartAt"),
                                               optional("EndAt"), optional("IsFound")})
        .method<&orvMain::IsInArray>("IsInArray",
                                     {"ArrayX", "FindWhat", optional("StartAt"), optional("EndAt")})
        .method<&orvMain::InCollection>(
            "InCollection",
            {"Collection", "FindWhat", optional("StartAt"), optional("EndAt"), optional("IsFound")})
        .method<&orvMain::IsInCollection>(
            "IsInCollection", {"Collection", "FindWhat", optional("StartAt"), optional("EndAt")})
        .method<&orvMain::GetSelectedOptionButtonIndex>("GetSelectedOptionButtonIndex",
                                                        {"OptionButtonArray"})
        .method<&orvMain::SetSelectedOptionButtonIndex>("SetSelectedOptionButtonIndex",
                                                        {"OptionButtonArray", "Index"})
        .method<&orvMain::PressButton>("PressButton", {"Button"})
        .method<&orvMain::FixFonts>("FixFonts", {"Frm"})
        .method<&orvMain::FixCBCursors>("FixCBCursors", {"Frm"})
        .method<&orvMain::JoinCollection>("JoinCollection",
                                          {"SourceCollection", "Delimiter", {"RaiseErrors", false}})
        .method<&orvMain::AddAutoComplete>("AddAutoComplete", {"CTL", {"Flags", 0}})
        .build();
}

}  // namespace

const automation::ClassTable& orvMain::table() {
    static const automation::ClassTable& table = automation::classTable(describe);
    return table;
}

const automation::EnumTable& enumTable(AddAutoCompleteFlags) {
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{
            "AddAutoCompleteFlags",
            {{"aacFileSystem", 1},
             {"aacURLHistory", 2},
             {"aacURLMRU", 4},
             {"aacURLAll", 6},
             {"aacUseTabs", 8},
             {"aacFileSystemDirs", 32},
             {"aacAutosuggestForceOn", 0x10000000},
             {"aacAutosuggestForceOff", 0x20000000},
             {"aacAutoappendForceOn", 0x40000000},
             {"aacAutoappendForceOff",
              static_cast<std::int32_t>(AddAutoCompleteFlags::aacAutoappendForceOff)}}};
    });
    return table;
}

}  // namespace orvane
