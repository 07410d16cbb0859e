// Settings through the binary interface, early bound: reading and saving a value, and finding it
// among the keys of a hundred older versions. On Linux the peers are QSettings, which writes an INI
// file, and the Windows build of this program over Wine's registry, where that is built; and eight
// processes save at once.
//
//   settings [--figures]     with it, the three times alone, in nanoseconds

#include "bench.h"
#include "settings_figures.h"

#include <orvane/OrvBase0301.h>
#include <orvane/host.h>

#include <cstdlib>
#include <string>
#include <string_view>

#ifndef _WIN32
#include "settings_writers.h"
#endif

namespace {

using orvane::bench::Figures;
using orvane::bench::medianTime;
using orvane::host::Text;

constexpr int kVersions = 100;
constexpr auto kCurrentUser = static_cast<RegistryRoot_Const>(-2147483647);

void must(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "settings: %s failed\n", what);
    std::exit(1);
}

VARIANT textValue(const Text& text) {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text;
    return value;
}

VARIANT leftOut() {
    VARIANT value{};
    value.vt = VT_ERROR;
    value.scode = DISP_E_PARAMNOTFOUND;
    return value;
}

/// The settings of an application that is there for the measurement only.
class Application {
public:
    Application(orvane::host::Library& library, const char16_t* title)
        : library_(library), title_(title), settings_(library.create<_orvOrvaneSettings>()) {}
    ~Application() {
        const Text key(u"Software\\Tarn Hollow\\Orvane\\" + std::u16string(title_.view()));
        VARIANT_BOOL done = VARIANT_FALSE;
        library_.create<_orvRegistry>()->DeleteKeyRecurse(kCurrentUser, key, &done);
    }
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    void save(LONG major, LONG minor) {
        VARIANT_BOOL done = VARIANT_FALSE;
        isOther_ = !isOther_;
        settings_->SaveSetting(key_, name_, rtString, textValue(isOther_ ? other_ : value_), title_,
                               major, minor, VARIANT_TRUE, &done);
        must(done == VARIANT_TRUE, "SaveSetting");
    }
    void load(LONG major, LONG minor) {
        VARIANT_BOOL success = VARIANT_FALSE;
        VARIANT found{};
        settings_->LoadSetting(key_, name_, rtString, title_, major, minor, leftOut(), VARIANT_TRUE,
                               &success, &found);
        must(success == VARIANT_TRUE && found.vt == VT_BSTR, "LoadSetting");
        orvane::host::freeText(found.bstrVal);
    }

private:
    orvane::host::Library& library_;
    Text title_;
    Text key_{u"Window"};
    Text name_{u"Caption"};
    Text value_{u"a value of thirty-two characters"};
    Text other_{u"another one, of the same length."};
    bool isOther_ = false;
    orvane::host::Pointer<_orvOrvaneSettings> settings_;
};

Figures measured(orvane::host::Library& library) {
    Figures figures;
    Application one(library, u"Orvane bench");
    one.save(1, 0);
    figures.load = medianTime([&] { one.load(1, 0); }, 20, 200);
    figures.save = medianTime([&] { one.save(1, 0); }, 20, 200);
    Application many(library, u"Orvane bench of versions");
    for (int version = 0; version < kVersions; ++version)
        many.save(1 + version / 10, version % 10);
    figures.fallback = medianTime([&] { many.load(99, 0); }, 20, 5);
    return figures;
}

}  // namespace

int main(int count, char** arguments) {
#ifdef _WIN32
    const char* const name = "OrvaneBase0301.DLL";
#else
    const char* const name = "libOrvaneBase0301.so";
    const orvane::bench::OwnRegistry registry;
#endif
    const std::string path = orvane::bench::builtFile(arguments[0], name);
    Figures own;
    {
        orvane::host::Library library(path);
        own = measured(library);
    }
    if (count > 1 && std::string_view(arguments[1]) == "--figures") {
        std::printf("%.0f %.0f %.0f\n", own.load, own.save, own.fallback);
        return 0;
    }
    own.print();
#ifndef _WIN32
    own.compare(arguments[0]);
    orvane::bench::printWriters([&](auto&& eachSave) {
        orvane::host::Library library(path);
        Application application(library, u"Orvane bench of writers");
        eachSave([&] { application.save(1, 0); });
    });
#endif
    return 0;
}
