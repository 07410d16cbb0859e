#include "module/class_factory.h"

#include "frame/automation/automation_object.h"
#include "frame/automation/error_info.h"
#include "frame/automation/library_lifetime.h"
#include "frame/automation/reference.h"

#include <atomic>

namespace orvane::automation {

namespace {

constinit std::atomic<std::uint32_t> locks{0};

class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const ClassTable& table) : table_(table) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        if (iid == IID_IUnknown || iid == IID_IClassFactory) {
            AddRef();
            *object = static_cast<IClassFactory*>(this);
        } else {
            *object = newPlatformInterface(*this, iid);
        }
        return *object != nullptr ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (table_.instancing == Instancing::internal || table_.create == nullptr) {
            return CLASS_E_CLASSNOTAVAILABLE;
        }
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        const HRESULT status = guarded([&] {
            const auto created = Ref<AutomationObject>::adopt(table_.create());
            *object = created->queryInterface(iid);
        });
        return FAILED(status) || *object != nullptr ? status : E_NOINTERFACE;
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock != 0) {
            ++locks;
            return S_OK;
        }
        // One release too many must not wrap around to a library that is locked for good.
        std::uint32_t held = locks.load();
        while (held != 0 && !locks.compare_exchange_weak(held, held - 1)) {
        }
        return held != 0 ? S_OK : E_UNEXPECTED;
    }

private:
    ~ClassFactory() = default;

    const ClassTable& table_;
    std::atomic<ULONG> references_{1};
    LibraryUse use_;
};

}  // namespace

HRESULT newClassFactory(const ClassTable& table, REFIID iid, void** object) {
    auto* factory = new ClassFactory(table);
    const HRESULT status = factory->QueryInterface(iid, object);
    factory->Release();
    return status;
}

std::uint32_t serverLocks() {
    return locks;
}

}  // namespace orvane::automation
