#include "application/CAppStub.h"

#include "application/host_application.h"
#include "frame/automation/describe.h"

namespace orvane {
namespace {

automation::ClassTable describe() {
    using Stub = CAppStub;
    using automation::optional;
    return automation::ClassBuilder<Stub>("CAppStub", automation::Instancing::internal, GUID{},
                                          kHostApplicationInterface)
        .propertyGet<&Stub::noText>("Path")
        .propertyGet<&Stub::noText>("EXEName")
        .propertyGet<&Stub::Title>("Title")
        .propertyPut<&Stub::putTitle>("Title", {"Value"})
        .propertyGet<&Stub::noFlag>("PrevInstance")
        .propertyGet<&Stub::noNumber>("StartMode")
        .propertyGet<&Stub::noFlag>("TaskVisible")
        .propertyPut<&Stub::ignoreFlag>("TaskVisible", {"Value"})
        .propertyGet<&Stub::noNumber>("OleServerBusyTimeout")
        .propertyPut<&Stub::ignoreNumber>("OleServerBusyTimeout", {"Value"})
        .propertyGet<&Stub::noText>("OleServerBusyMsgTitle")
        .propertyPut<&Stub::ignoreText>("OleServerBusyMsgTitle", {"Value"})
        .propertyGet<&Stub::noText>("OleServerBusyMsgText")
        .propertyPut<&Stub::ignoreText>("OleServerBusyMsgText", {"Value"})
        .propertyGet<&Stub::noFlag>("OleServerBusyRaiseError")
        .propertyPut<&Stub::ignoreFlag>("OleServerBusyRaiseError", {"Value"})
        .propertyGet<&Stub::noNumber>("OleRequestPendingTimeout")
        .propertyPut<&Stub::ignoreNumber>("OleRequestPendingTimeout", {"Value"})
        .propertyGet<&Stub::noText>("OleRequestPendingMsgTitle")
        .propertyPut<&Stub::ignoreText>("OleRequestPendingMsgTitle", {"Value"})
        .propertyGet<&Stub::noText>("OleRequestPendingMsgText")
        .propertyPut<&Stub::ignoreText>("OleRequestPendingMsgText", {"Value"})
        .propertyGet<&Stub::Major>("Major")
        .propertyGet<&Stub::Minor>("Minor")
        .propertyGet<&Stub::Revision>("Revision")
        .propertyGet<&Stub::noText>("Comments")
        .propertyGet<&Stub::noText>("CompanyName")
        .propertyGet<&Stub::noText>("FileDescription")
        .propertyGet<&Stub::noText>("LegalCopyright")
        .propertyGet<&Stub::noText>("LegalTrademarks")
        .propertyGet<&Stub::noText>("ProductName")
        .propertyGet<&Stub::noNumber>("hInstance")
        .propertyGet<&Stub::noFlag>("NonModalAllowed")
        .propertyGet<&Stub::noText>("LogPath")
        .propertyGet<&Stub::noNumber>("LogMode")
        .propertyGet<&Stub::noFlag>("UnattendedApp")
        .propertyGet<&Stub::noNumber>("ThreadID")
        .propertyGet<&Stub::noText>("HelpFile")
        .propertyPut<&Stub::ignoreText>("HelpFile", {"Value"})
        .method<&Stub::StartLogging>("StartLogging", {"LogTarget", "LogMode"})
        .method<&Stub::LogEvent>("LogEvent", {"LogBuffer", optional("EventType")})
        .propertyGet<&Stub::noFlag>("RetainedProject")
        .build();
}

}  // namespace

const automation::ClassTable& CAppStub::table() {
    static const automation::ClassTable& table = automation::classTable(describe);
    return table;
}

CAppStub::CAppStub() : AutomationObject(table()) {}

void CAppStub::Init(WStringView title, std::int16_t major, std::int16_t minor,
                    std::int16_t revision) {
    title_ = WString(title);
    major_ = major;
    minor_ = minor;
    revision_ = revision;
}

}  // namespace orvane
