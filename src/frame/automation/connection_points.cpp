#include "frame/automation/connection_points.h"

#include "frame/automation/com_list.h"
#include "frame/automation/marshal.h"

#include <algorithm>

namespace orvane::automation {
namespace {

// The arguments of an event as sinks get them: last first. By-reference ones point to a place that
// each sink in turn reads and changes, typed as the event declares it, because hosts check that.
class EventArguments {
public:
    EventArguments(const Member* event, std::span<Variant> arguments)
        : originals_(arguments), places_(arguments.size()), given_(arguments.size()) {
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            VARIANT& place = places_[i].value;
            toVariant(place, arguments[i]);
            VARIANTARG& argument = given_[arguments.size() - 1 - i];
            argument = place;
            if (!arguments[i].isReference()) continue;
            const bool any = event == nullptr || event->parameters[i].type.type == VT_VARIANT;
            argument.vt =
                static_cast<VARTYPE>(VT_BYREF | (any ? VARTYPE{VT_VARIANT} : argument.vt));
            argument.byref = any ? static_cast<void*>(&place) : &place.llVal;
        }
    }
    EventArguments(const EventArguments&) = delete;
    EventArguments& operator=(const EventArguments&) = delete;

    DISPPARAMS parameters() {
        return {given_.data(), nullptr, static_cast<UINT>(given_.size()), 0};
    }
    void bringBack() {
        for (std::size_t i = 0; i < places_.size(); ++i) {
            if (originals_[i].isReference()) originals_[i].assign(fromVariant(places_[i].value));
        }
    }

private:
    std::span<Variant> originals_;
    std::vector<OwnedVariant> places_;
    std::vector<VARIANTARG> given_;
};

struct Connection {
    IDispatch* sink;
    DWORD cookie;
};

struct StoredConnection {
    Object sink;
    DWORD cookie;
    void copyTo(CONNECTDATA& out) const {
        out.pUnk = Object(sink).detach();
        out.dwCookie = cookie;
    }
};
using ConnectionEnumerator = ListEnumerator<IEnumConnections, CONNECTDATA, StoredConnection>;

struct StoredPoint {
    Object point;
    void copyTo(IConnectionPoint*& out) const {
        out = reinterpret_cast<IConnectionPoint*>(Object(point).detach());
    }
};
using PointEnumerator = ListEnumerator<IEnumConnectionPoints, IConnectionPoint*, StoredPoint>;

}  // namespace

// The point keeps its owner alive only through the sinks' own references to it: a host holds the
// point while it connects, and the owner may go first; then the point answers that it is gone.
class ConnectionPoints::Point final : public SimpleObject<IConnectionPoint> {
public:
    Point(AutomationObject& owner, const EventTable& events)
        : SimpleObject(IID_IConnectionPoint), owner_(&owner), events_(events) {}
    ~Point() override { disconnectAll(); }

    void ownerEnds() {
        owner_ = nullptr;
        disconnectAll();
    }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
        if (iid == nullptr) return E_POINTER;
        *iid = events_.interfaceId;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) override {
        if (container == nullptr) return E_POINTER;
        *container = nullptr;
        if (owner_ == nullptr) return E_UNEXPECTED;
        *container = static_cast<IConnectionPointContainer*>(
            owner_->queryInterface(IID_IConnectionPointContainer));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        if (sink == nullptr || cookie == nullptr) return E_POINTER;
        if (owner_ == nullptr) return E_UNEXPECTED;
        void* found = nullptr;
        if (FAILED(sink->QueryInterface(events_.interfaceId, &found)) &&
            FAILED(sink->QueryInterface(IID_IDispatch, &found))) {
            return CONNECT_E_CANNOTCONNECT;
        }
        const HRESULT status = guarded([&] {
            connections_.push_back({static_cast<IDispatch*>(found), nextCookie_});
        });
        if (FAILED(status)) static_cast<IDispatch*>(found)->Release();
        else *cookie = nextCookie_++;
        return status;
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        const auto found = std::ranges::find(connections_, cookie, &Connection::cookie);
        if (found == connections_.end()) return CONNECT_E_NOCONNECTION;
        IDispatch* sink = found->sink;
        connections_.erase(found);
        sink->Release();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override {
        if (connections == nullptr) return E_POINTER;
        return guarded([&] {
            std::vector<StoredConnection> stored;
            for (const Connection& each : connections_) {
                stored.push_back({Object(each.sink), each.cookie});
            }
            *connections = new ConnectionEnumerator(IID_IEnumConnections, std::move(stored));
        });
    }

    void fire(DISPID event, std::span<Variant> arguments) {
        std::vector<Object> sinks;
        for (const Connection& each : connections_)
            sinks.emplace_back(each.sink);
        const auto declared = std::ranges::find(events_.events, event, &Member::id);
        EventArguments given(declared == events_.events.end() ? nullptr : &*declared, arguments);
        for (const Object& sink : sinks) {
            DISPPARAMS parameters = given.parameters();
            ExceptionRecord exception;
            static_cast<IDispatch*>(sink.unknown())
                ->Invoke(event, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                         nullptr, &exception.info, nullptr);
        }
        given.bringBack();
    }

private:
    void disconnectAll() {
        const auto connections = std::exchange(connections_, {});
        for (const Connection& each : connections)
            each.sink->Release();
    }

    AutomationObject* owner_;
    const EventTable& events_;
    std::vector<Connection> connections_;
    DWORD nextCookie_ = 1;
};

ConnectionPoints::ConnectionPoints(AutomationObject& owner, const EventTable& events)
    : point_(new Point(owner, events)) {}

ConnectionPoints::~ConnectionPoints() {
    point_->ownerEnds();
    point_->Release();
}

IConnectionPoint* ConnectionPoints::find(REFIID iid) {
    IID own{};
    point_->GetConnectionInterface(&own);
    if (!(iid == own)) return nullptr;
    point_->AddRef();
    return point_;
}

IEnumConnectionPoints* ConnectionPoints::enumerate() {
    return new PointEnumerator(IID_IEnumConnectionPoints, {StoredPoint{Object(point_)}});
}

void ConnectionPoints::fire(DISPID event, std::span<Variant> arguments) {
    // A sink may release the owner while it handles the event.
    const Object held(point_);
    Point* const point = point_;
    point->fire(event, arguments);
}

}  // namespace orvane::automation
