#pragma once

#include "frame/automation/automation_object.h"

namespace orvane {

/// What a host implements to see the progress of a request, to keep received blocks out of the
/// result, and to cancel. The library's own members do nothing.
class IHTTPRequestCallback final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    IHTTPRequestCallback();

    /// After each block that came in. `block` is a byte string, compressed if the response is;
    /// `receivedBytes` counts all blocks so far, this one included; `totalBytes` is 0 where the
    /// server sent no length. `removeBlock` keeps the block out of the result, and every later one
    /// until it is False again; `cancel` ends the request.
    void BlockReceived(WStringView block, bool& removeBlock, std::int32_t receivedBytes,
                       std::int32_t totalBytes, bool& cancel);

    /// After each block that went out, with the bytes sent so far and those of the whole body.
    void BlockSent(WStringView block, std::int32_t sentBytes, std::int32_t totalBytes,
                   bool& cancel);
};

}  // namespace orvane
