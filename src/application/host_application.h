#pragma once

#include "frame/values/object.h"
#include "frame/values/wstring.h"

#include "orvane/automation.h"

#include <cstdint>

namespace orvane {

/// The host application interface: a dual interface of the hosts' runtime, which their application
/// objects implement. Its slots stand in this order behind the seven of IDispatch.
struct IHostApplication : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Path(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_EXEName(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Title(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Title(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_PrevInstance(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_StartMode(LONG* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_TaskVisible(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_TaskVisible(VARIANT_BOOL value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OleServerBusyTimeout(LONG* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OleServerBusyTimeout(LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OleServerBusyMsgTitle(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OleServerBusyMsgTitle(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OleServerBusyMsgText(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OleServerBusyMsgText(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OleServerBusyRaiseError(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OleServerBusyRaiseError(VARIANT_BOOL value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OleRequestPendingTimeout(LONG* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OleRequestPendingTimeout(LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OleRequestPendingMsgTitle(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OleRequestPendingMsgTitle(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OleRequestPendingMsgText(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OleRequestPendingMsgText(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Major(SHORT* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Minor(SHORT* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Revision(SHORT* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Comments(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CompanyName(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_FileDescription(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LegalCopyright(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LegalTrademarks(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ProductName(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_hInstance(LONG* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_NonModalAllowed(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LogPath(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LogMode(LONG* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_UnattendedApp(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ThreadID(LONG* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_HelpFile(BSTR* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_HelpFile(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE StartLogging(BSTR logTarget, LONG logMode) = 0;
    virtual HRESULT STDMETHODCALLTYPE LogEvent(BSTR logBuffer, VARIANT eventType) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_RetainedProject(VARIANT_BOOL* result) = 0;
};

inline constexpr IID kHostApplicationInterface = {
    0x33AD4F79, 0x6699, 0x11CF, {0xB7, 0x0C, 0x00, 0xAA, 0x00, 0x60, 0xD3, 0x93}};

/// An application object that is read through the host application interface, not by name.
class HostApplication {
public:
    /// Raises 91 for Nothing and 13 for an object without the interface.
    explicit HostApplication(const Object& object);
    ~HostApplication() { application_->Release(); }
    HostApplication(const HostApplication&) = delete;
    HostApplication& operator=(const HostApplication&) = delete;

    /// The properties; what the object raises comes through unchanged.
    WString Title() const;
    std::int16_t Major() const;
    std::int16_t Minor() const;
    std::int16_t Revision() const;

private:
    IHostApplication* application_;
};

}  // namespace orvane
