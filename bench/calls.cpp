// Calls of a method with one Long argument through the binary interface, early and late bound.

#include "bench.h"

#include <orvane/OrvTestComponent.h>
#include <orvane/host.h>

#include <cstdlib>

namespace {

using orvane::bench::medianTimes;
using orvane::bench::printRatio;

constexpr int kCalls = 1000000;

/// The peer of an early-bound call: a virtual call that the compiler can't see through.
struct Plain {
    [[gnu::noinline]] virtual std::int32_t STDMETHODCALLTYPE nextShape(std::int32_t shape,
                                                                       std::int32_t* next) {
        *next = shape + 1;
        return 0;
    }
    virtual ~Plain() = default;
};

struct LateCall {
    explicit LateCall(IDispatch& dispatch) : target(dispatch) {
        const char16_t* name = u"NextShape";
        void* units = const_cast<char16_t*>(name);
        auto* text = static_cast<LPOLESTR>(units);
        if (target.GetIDsOfNames(GUID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id) != S_OK)
            std::exit(1);
        argument.vt = VT_I4;
        argument.lVal = 1;
    }

    DISPPARAMS parameters() { return {&argument, nullptr, 1, 0}; }

    IDispatch& target;
    DISPID id = 0;
    VARIANTARG argument{};
};

void earlyBound(_TestProbe& probe) {
    Plain plain;
    Plain* volatile peer = &plain;
    const auto [own, virtualCall] = medianTimes(
        [&] {
            TestShape next{};
            probe.NextShape(TestShape{}, &next);
        },
        [&] {
            std::int32_t next = 0;
            peer->nextShape(0, &next);
        },
        7, kCalls);
    printRatio("early-bound call", own, "virtual call", virtualCall);
    std::printf("    over the virtual call: %.2f ns\n", own - virtualCall);
}

void lateBound(_TestProbe& probe) {
    LateCall call(probe);
    DISPPARAMS parameters = call.parameters();
    const auto invoke = [&] {
        VARIANT result{};
        probe.Invoke(call.id, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result,
                     nullptr, nullptr);
    };
    ITypeInfo* info = nullptr;
    if (probe.GetTypeInfo(0, LOCALE_USER_DEFAULT, &info) != S_OK) std::exit(1);
    const auto throughTypeInfo = [&] {
        VARIANT result{};
        info->Invoke(&probe, call.id, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
    };
    const auto [own, typeInfo] = medianTimes(invoke, throughTypeInfo, 7, kCalls / 4);
    printRatio("late-bound call, member known", own, "ITypeInfo::Invoke", typeInfo);
    info->Release();
}

}  // namespace

int main(int, char** arguments) {
#ifdef _WIN32
    const char* const name = "OrvTestComponent.DLL";
#else
    const char* const name = "libOrvTestComponent.so";
#endif
    orvane::host::Library library(orvane::bench::builtFile(arguments[0], name));
    const auto probe = library.create<_TestProbe>();
    earlyBound(*probe);
    lateBound(*probe);
    return 0;
}
