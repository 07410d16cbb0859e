#include "network/IHTTPRequestCallback.h"

#include "frame/automation/describe.h"

namespace orvane {

const automation::ClassTable& IHTTPRequestCallback::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<IHTTPRequestCallback>(
                   "IHTTPRequestCallback", automation::Instancing::internal,
                   {0xAC456F07, 0x1C87, 0x4F9D, {0xBA, 0x7A, 0x99, 0x9E, 0xF2, 0x4A, 0xAD, 0x6D}},
                   {0x381C57B0, 0x8A7D, 0x4D7B, {0x9E, 0xF1, 0xFC, 0xF0, 0x69, 0x98, 0x9A, 0x0B}})
            .method<&IHTTPRequestCallback::BlockReceived>(
                "BlockReceived", {"Block", "RemoveBlock", "ReceivedBytes", "TotalBytes", "Cancel"})
            .method<&IHTTPRequestCallback::BlockSent>(
                "BlockSent", {"Block", "SentBytes", "TotalBytes", "Cancel"})
            .build();
    });
    return table;
}

IHTTPRequestCallback::IHTTPRequestCallback() : AutomationObject(table()) {}

void IHTTPRequestCallback::BlockReceived(WStringView, bool&, std::int32_t, std::int32_t, bool&) {}

void IHTTPRequestCallback::BlockSent(WStringView, std::int32_t, std::int32_t, bool&) {}

}  // namespace orvane
