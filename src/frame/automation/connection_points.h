#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/table.h"

#include <vector>

namespace orvane::automation {

/// The connections of an object that fires events: one connection point, for its event interface.
class ConnectionPoints {
public:
    ConnectionPoints(AutomationObject& owner, const EventTable& events);
    ~ConnectionPoints();
    ConnectionPoints(const ConnectionPoints&) = delete;
    ConnectionPoints& operator=(const ConnectionPoints&) = delete;

    /// The connection point for this interface with a new reference, or null.
    IConnectionPoint* find(REFIID iid);
    IEnumConnectionPoints* enumerate();
    /// Calls the event on every sink that is connected when it starts.
    void fire(DISPID event, std::span<Variant> arguments);

private:
    class Point;
    Point* point_;
};

}  // namespace orvane::automation
