#include "frame/automation/automation_object.h"

#include "frame/automation/apartment.h"
#include "frame/automation/connection_points.h"
#include "frame/automation/dispatch.h"
#include "frame/automation/error_info.h"
#include "frame/automation/library_lifetime.h"
#include "frame/automation/library_type_info.h"
#include "frame/automation/parameters.h"
#include "frame/automation/table.h"

namespace orvane::automation {

/// The functions that hosts reach through the object's vtables.
struct InterfaceThunks {
    static HRESULT STDMETHODCALLTYPE QueryInterface(InterfaceHeader* self, const IID* iid,
                                                    void** object) {
        if (object == nullptr) return E_POINTER;
        *object = self->object->queryInterface(*iid);
        return *object != nullptr ? S_OK : E_NOINTERFACE;
    }
    static ULONG STDMETHODCALLTYPE AddRef(InterfaceHeader* self) { return self->object->addRef(); }
    static ULONG STDMETHODCALLTYPE Release(InterfaceHeader* self) {
        return self->object->release();
    }

    static HRESULT STDMETHODCALLTYPE GetTypeInfoCount(InterfaceHeader*, UINT* count) {
        if (count == nullptr) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    static HRESULT STDMETHODCALLTYPE GetTypeInfo(InterfaceHeader* self, UINT index, LCID,
                                                 ITypeInfo** info) {
        if (info == nullptr) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        return typeInfoOf(self->object->classTable().interfaceId, info);
    }
    static HRESULT STDMETHODCALLTYPE GetIDsOfNames(InterfaceHeader* self, const IID* reserved,
                                                   OLECHAR** names, UINT count, LCID, DISPID* ids) {
        if (reserved != nullptr && !(*reserved == GUID_NULL)) return DISP_E_UNKNOWNINTERFACE;
        return idsOfNames(self->object->classTable(), names, count, ids);
    }
    static HRESULT STDMETHODCALLTYPE Invoke(InterfaceHeader* self, DISPID id, const IID* reserved,
                                            LCID, WORD flags, DISPPARAMS* parameters,
                                            VARIANT* result, EXCEPINFO* exception,
                                            UINT* argumentError) {
        if (reserved != nullptr && !(*reserved == GUID_NULL)) return DISP_E_UNKNOWNINTERFACE;
        if (parameters == nullptr) return E_POINTER;
        if (result != nullptr) *result = VARIANT{};
        return invoke(*self->object, id, flags, *parameters, result, exception, argumentError);
    }

    static HRESULT STDMETHODCALLTYPE GetClassInfo(InterfaceHeader* self, ITypeInfo** info) {
        if (info == nullptr) return E_POINTER;
        *info = nullptr;
        return typeInfoOf(self->object->classTable().classId, info);
    }
    static HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(InterfaceHeader* self,
                                                                const IID* iid) {
        const bool own = !(*iid == IID_IUnknown) && self->object->classTable().isInterface(*iid);
        return own ? S_OK : S_FALSE;
    }
    static HRESULT STDMETHODCALLTYPE EnumConnectionPoints(InterfaceHeader* self,
                                                          IEnumConnectionPoints** points) {
        if (points == nullptr) return E_POINTER;
        return guarded([&] { *points = self->object->connectionPoints_->enumerate(); });
    }
    static HRESULT STDMETHODCALLTYPE FindConnectionPoint(InterfaceHeader* self, const IID* iid,
                                                         IConnectionPoint** point) {
        if (point == nullptr) return E_POINTER;
        *point = self->object->connectionPoints_->find(*iid);
        return *point != nullptr ? S_OK : CONNECT_E_NOCONNECTION;
    }

    template <class... Function>
    static std::vector<void (*)()> slots(Function*... functions) {
        return {reinterpret_cast<void (*)()>(functions)...};
    }

    static const std::vector<void (*)()>& classInfoTable() {
        static const auto& table = permanent<std::vector<void (*)()>>(
            [] { return slots(&QueryInterface, &AddRef, &Release, &GetClassInfo); });
        return table;
    }
    static const std::vector<void (*)()>& errorInfoTable() {
        static const auto& table = permanent<std::vector<void (*)()>>(
            [] { return slots(&QueryInterface, &AddRef, &Release, &InterfaceSupportsErrorInfo); });
        return table;
    }
    static const std::vector<void (*)()>& connectionsTable() {
        static const auto& table = permanent<std::vector<void (*)()>>([] {
            return slots(&QueryInterface, &AddRef, &Release, &EnumConnectionPoints,
                         &FindConnectionPoint);
        });
        return table;
    }
};

const std::vector<void (*)()>& dispatchSlots() {
    using T = InterfaceThunks;
    static const auto& table = permanent<std::vector<void (*)()>>([] {
        return T::slots(&T::QueryInterface, &T::AddRef, &T::Release, &T::GetTypeInfoCount,
                        &T::GetTypeInfo, &T::GetIDsOfNames, &T::Invoke);
    });
    return table;
}

AutomationObject::AutomationObject(const ClassTable& table)
    : dispatch_{table.vtable.data(), this},
      provideClassInfo_{InterfaceThunks::classInfoTable().data(), this},
      supportErrorInfo_{InterfaceThunks::errorInfoTable().data(), this},
      connections_{InterfaceThunks::connectionsTable().data(), this}, table_(table),
      apartment_(Apartment::current()) {
    if (table.events.name != nullptr) {
        connectionPoints_ = std::make_unique<ConnectionPoints>(*this, table.events);
    }
    apartment_.objectCreated();
}

AutomationObject::~AutomationObject() {
    connectionPoints_.reset();
    apartment_.objectDestroyed();
}

std::uint32_t AutomationObject::release() {
    const std::uint32_t left = --references_;
    if (left == 0) {
        // Code that runs during the end and takes a reference for a moment must not start a second
        // one.
        references_ = 1;
        delete this;
    }
    return left;
}

void* AutomationObject::queryInterface(REFIID iid) {
    InterfaceHeader* found = nullptr;
    if (table_.isInterface(iid)) found = &dispatch_;
    else if (iid == IID_IProvideClassInfo) found = &provideClassInfo_;
    else if (iid == IID_ISupportErrorInfo) found = &supportErrorInfo_;
    else if (iid == IID_IConnectionPointContainer && connectionPoints_) found = &connections_;
    if (found != nullptr) addRef();
    return found;
}

AutomationObject* AutomationObject::from(IUnknown* unknown, const ClassTable& table) {
    if (unknown == nullptr) return nullptr;
    void* answered = nullptr;
    if (FAILED(unknown->QueryInterface(table.interfaceId, &answered))) return nullptr;
    auto* header = static_cast<InterfaceHeader*>(answered);
    const bool own = header->vtable == table.vtable.data();
    AutomationObject* object = own ? header->object : nullptr;
    static_cast<IUnknown*>(answered)->Release();
    return object;
}

void AutomationObject::fire(DISPID event, std::span<Variant> arguments) {
    if (connectionPoints_) connectionPoints_->fire(event, arguments);
}

void writeInterface(IUnknown*& cell, const Object& object, REFIID iid) {
    void* fresh = nullptr;
    if (!object.isNothing() && FAILED(object.unknown()->QueryInterface(iid, &fresh))) {
        raise(error::kTypeMismatch);
    }
    if (IUnknown* former = std::exchange(cell, static_cast<IUnknown*>(fresh))) former->Release();
}

AutomationObject* libraryObject(IUnknown* unknown, const ClassTable& table) {
    AutomationObject* object = AutomationObject::from(unknown, table);
    if (object == nullptr && unknown != nullptr) raise(error::kTypeMismatch);
    return object;
}

}  // namespace orvane::automation
