#pragma once

#include "frame/automation/error_info.h"
#include "frame/automation/library_lifetime.h"

#include "orvane/automation.h"

#include <atomic>
#include <vector>

namespace orvane::automation {

/// The identity and counting that small objects of one interface share. `Interface` derives from
/// IUnknown and is answered by `iid`.
template <class Interface>
class SimpleObject : public Interface {
public:
    explicit SimpleObject(REFIID iid) : iid_(iid) {}
    SimpleObject(const SimpleObject&) = delete;
    SimpleObject& operator=(const SimpleObject&) = delete;
    virtual ~SimpleObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == iid_)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<Interface*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

private:
    const IID& iid_;
    std::atomic<ULONG> references_{1};
    LibraryUse use_;
};

/// An enumerator over a list that was taken when it was made. `Copy` gives an item a life of its
/// own in the caller's memory.
template <class Enumerator, class Item, class Store>
class ListEnumerator final : public SimpleObject<Enumerator> {
public:
    ListEnumerator(REFIID iid, std::vector<Store> items, std::size_t position = 0)
        : SimpleObject<Enumerator>(iid), iid_(iid), items_(std::move(items)), position_(position) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* out, ULONG* fetched) override {
        if (out == nullptr) return E_POINTER;
        ULONG given = 0;
        const HRESULT status = guarded([&] {
            for (; given < count && position_ < items_.size(); ++given, ++position_) {
                items_[position_].copyTo(out[given]);
            }
        });
        if (fetched != nullptr) *fetched = given;
        if (FAILED(status)) return status;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = items_.size() - position_;
        position_ += std::min<std::size_t>(left, count);
        return left >= count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        position_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Enumerator** copy) override {
        if (copy == nullptr) return E_POINTER;
        return guarded([&] { *copy = new ListEnumerator(iid_, items_, position_); });
    }

private:
    const IID& iid_;
    std::vector<Store> items_;
    std::size_t position_;
};

}  // namespace orvane::automation
