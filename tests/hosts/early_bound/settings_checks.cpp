#include "checks.h"

#include <random>
#include <string>

namespace orvane::tests::early_bound {
namespace {

constexpr std::int32_t kNotCarriedOut = 445;
constexpr std::int32_t kNothing = 91;
// Windows has a macro of its own for the name of this constant.
constexpr auto kCurrentUser = static_cast<RegistryRoot_Const>(-2147483647);

Text uniqueText(const char16_t* start) {
    std::u16string text(start);
    for (const char digit : std::to_string(std::random_device()()))
        text += static_cast<char16_t>(digit);
    return Text(text);
}

/// The host's application object: `Title`, `Major` and `Minor`, by name.
class Application final : public IDispatch {
public:
    Application(const Text& title, LONG major, LONG minor)
        : title_(title), major_(major), minor_(minor) {}
    virtual ~Application() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IDispatch)) return E_NOINTERFACE;
        *object = static_cast<IDispatch*>(this);
        return S_OK;
    }
    // It lives as long as the variable.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* id) override {
        const void* units = names[0];
        const std::u16string_view name(static_cast<const char16_t*>(units));
        *id = name == u"Title" ? 1 : name == u"Major" ? 2 : name == u"Minor" ? 3 : DISPID_UNKNOWN;
        return *id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        if (id == 1) {
            result->vt = VT_BSTR;
            result->bstrVal = orvane::host::newText(title_.view());
        } else {
            *result = longValue(id == 2 ? major_ : minor_);
        }
        return S_OK;
    }

private:
    Text title_;
    LONG major_;
    LONG minor_;
};

VARIANT textValue(const Text& text) {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text;
    return value;
}

/// Takes the text out of a result.
Text taken(VARIANT& value) {
    Text text;
    if (value.vt == VT_BSTR) *text.receive() = value.bstrVal;
    value = {};
    return text;
}

void checkExplicitForms(Library& library, _orvOrvaneSettings& settings, const Text& title) {
    VARIANT_BOOL done = VARIANT_FALSE;
    library.check(settings.SaveSetting(Text(u"k"), Text(u"n"), rtString, textValue(Text(u"old")),
                                       title, 1, 2, VARIANT_TRUE, &done));
    expect(done == VARIANT_TRUE, "SaveSetting");
    VARIANT value{};
    VARIANT_BOOL success = VARIANT_FALSE;
    library.check(settings.LoadSetting(Text(u"k"), Text(u"n"), rtString, title, 1, 2, leftOut(),
                                       VARIANT_TRUE, &success, &value));
    expect(taken(value) == u"old" && success == VARIANT_TRUE, "LoadSetting");
    library.check(settings.LoadSetting(Text(u"k"), Text(u"n"), rtString, title, 1, 10, leftOut(),
                                       VARIANT_TRUE, &success, &value));
    expect(taken(value) == u"old" && success == VARIANT_TRUE, "LoadSetting of an older version");
    library.check(settings.LoadSetting(Text(u"k"), Text(u"n"), rtLong, title, 1, 1, longValue(7),
                                       VARIANT_TRUE, nullptr, &value));
    expect(value.vt == VT_I4 && value.lVal == 7, "LoadSetting with a default, without Success");
    library.check(settings.SaveSetting(Text(u"k"), Text(u"n"), rtString, leftOut(), title, 1, 2,
                                       VARIANT_TRUE, &done));
    expect(done == VARIANT_FALSE, "SaveSetting of a missing value");
    Text path;
    library.check(settings.GetSettingPath(title, 1, 2, Text(u"a\\b"), path.receive()));
    expect(std::u16string_view(path.view()).ends_with(u"\\Version 1.2\\a\\b"), "GetSettingPath");
}

void checkFormsWithObject(Library& library, _orvOrvaneSettings& settings, const Text& title) {
    Application app(title, 2, 0);
    Text path;
    library.check(settings.GetSettingPath2(&app, nullptr, path.receive()));
    expect(std::u16string_view(path.view()).ends_with(u"\\Version 2.0"), "GetSettingPath2");
    VARIANT value{};
    VARIANT_BOOL success = VARIANT_FALSE;
    library.check(settings.LoadSetting2(Text(u"k"), Text(u"n"), rtString, &app, leftOut(),
                                        VARIANT_TRUE, &success, &value));
    expect(taken(value) == u"old" && success == VARIANT_TRUE, "LoadSetting2");
    VARIANT_BOOL done = VARIANT_FALSE;
    library.check(settings.SaveSetting2(Text(u"k"), Text(u"n"), rtString, textValue(Text(u"new")),
                                        &app, VARIANT_TRUE, &done));
    expect(done == VARIANT_TRUE, "SaveSetting2");
    library.check(settings.LoadSetting2(Text(u"k"), Text(u"n"), rtString, &app, leftOut(),
                                        VARIANT_TRUE, &success, &value));
    expect(taken(value) == u"new", "LoadSetting2 of the new value");
    expect(errorOf(library, settings.GetSettingPath2(nullptr, nullptr, path.receive())) == kNothing,
           "GetSettingPath2 without an object raises 91");
}

void checkLaterMembers(Library& library, _orvOrvaneSettings& settings) {
    VARIANT_BOOL done = VARIANT_FALSE;
    IFontDisp* font = nullptr;
    const auto refuses = [&](HRESULT status, const char* member) {
        expect(errorOf(library, status) == kNotCarriedOut, member);
    };
    const Text none;
    const VARIANT_BOOL user = VARIANT_TRUE;
    refuses(settings.SaveFormPlacement(nullptr, none, none, none, 0, 0, user, &done),
            "SaveFormPlacement");
    refuses(settings.LoadFormPlacement(nullptr, none, none, none, 0, 0, user, 0, 0, user, &done),
            "LoadFormPlacement");
    refuses(settings.SaveFormPlacement2(nullptr, none, none, nullptr, user, &done),
            "SaveFormPlacement2");
    refuses(settings.LoadFormPlacement2(nullptr, none, none, nullptr, user, 0, 0, user, &done),
            "LoadFormPlacement2");
    refuses(settings.SaveListViewColumns2(nullptr, none, nullptr, user, &done),
            "SaveListViewColumns2");
    refuses(settings.LoadListViewColumns2(nullptr, none, nullptr, user, &done),
            "LoadListViewColumns2");
    refuses(settings.LoadFont2(none, nullptr, nullptr, user, &font), "LoadFont2");
    refuses(settings.SaveFont2(none, nullptr, nullptr, user, &done), "SaveFont2");
    expect(font == nullptr, "a font that was not made");
}

void checkSettingsObject(Library& library) {
    const auto settings = library.create<_orvOrvaneSettings>();
    const Text title = uniqueText(u"Orvane host ");
    checkExplicitForms(library, *settings, title);
    checkFormsWithObject(library, *settings, title);
    checkLaterMembers(library, *settings);
    const auto registry = library.create<_orvRegistry>();
    const Text key(u"Software\\Tarn Hollow\\Orvane\\" + std::u16string(title.view()));
    VARIANT_BOOL done = VARIANT_FALSE;
    library.check(registry->DeleteKeyRecurse(kCurrentUser, key, &done));
    expect(done == VARIANT_TRUE, "the settings are gone again");
}

void checkAutorun(Library& library) {
    auto& autorun = library.global<_orvAutorunSupport>();
    const Text name = uniqueText(u"{Orvane host}");
    VARIANT_BOOL answer = VARIANT_FALSE;
    library.check(autorun.get_ForCurrentUserOnly(&answer));
    expect(answer == VARIANT_TRUE, "ForCurrentUserOnly of a new object");
    library.check(autorun.put_ForCurrentUserOnly(VARIANT_FALSE));
    library.check(autorun.get_ForCurrentUserOnly(&answer));
    expect(answer == VARIANT_FALSE, "ForCurrentUserOnly is kept");
    library.check(autorun.put_ForCurrentUserOnly(VARIANT_TRUE));
    library.check(autorun.AddToAutorun(name, Text(u"x"), &answer));
    expect(answer == VARIANT_TRUE, "AddToAutorun");
    library.check(autorun.IsInAutorun(name, &answer));
    expect(answer == VARIANT_TRUE, "IsInAutorun");
    Text line;
    library.check(autorun.GetAutorunString(name, line.receive()));
    expect(line == u"x", "GetAutorunString");
    library.check(autorun.DeleteFromAutorun(name, &answer));
    expect(answer == VARIANT_TRUE, "DeleteFromAutorun");
    library.check(autorun.IsInAutorun(name, &answer));
    expect(answer == VARIANT_FALSE, "IsInAutorun after the end");
    library.check(autorun.AddToAutorun(nullptr, Text(u"x"), &answer));
    expect(answer == VARIANT_FALSE, "AddToAutorun without a name");
}

}  // namespace

void checkSettings(Library& library) {
    checkSettingsObject(library);
    checkAutorun(library);
}

}  // namespace orvane::tests::early_bound
