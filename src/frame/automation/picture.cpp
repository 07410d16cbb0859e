#include "frame/values/picture.h"

#include "frame/automation/error_info.h"

#include "orvane/automation.h"

namespace orvane {
namespace {

class PictureInterface {
public:
    explicit PictureInterface(const Picture& picture) {
        if (picture.isNothing()) raise(error::kObjectNotSet);
        void* found = nullptr;
        const HRESULT status = picture.unknown()->QueryInterface(IID_IPicture, &found);
        if (FAILED(status)) raise(error::kTypeMismatch);
        interface_ = static_cast<IPicture*>(found);
    }
    ~PictureInterface() { interface_->Release(); }
    PictureInterface(const PictureInterface&) = delete;
    PictureInterface& operator=(const PictureInterface&) = delete;
    IPicture* operator->() const { return interface_; }

private:
    IPicture* interface_;
};

}  // namespace

std::uint32_t Picture::handle() const {
    OLE_HANDLE handle = 0;
    const HRESULT status = PictureInterface(*this)->get_Handle(&handle);
    if (FAILED(status)) automation::raiseStatus(status);
    return handle;
}

Picture::Type Picture::type() const {
    SHORT type = 0;
    const HRESULT status = PictureInterface(*this)->get_Type(&type);
    if (FAILED(status)) automation::raiseStatus(status);
    return static_cast<Type>(type);
}

}  // namespace orvane
