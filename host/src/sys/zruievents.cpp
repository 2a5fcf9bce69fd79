// The events of the host for the user interface: waiting events, one of a kind, delivered from the
// event loop to the listeners.

#include "zruievents.h"

#include "zrdocument.h"
#include "zrsystem.h"

#include <QCoreApplication>
#include <QTimer>
#include <deque>
#include <functional>
#include <map>
#include <unordered_set>

namespace {

// What makes two waiting events the same: one of them is enough.
struct EventKey
{
    int64_t kind;
    int64_t detail;
    const void* object;
    const void* database;
    std::wstring name;
    bool selectionActive;

    explicit EventKey(const CZrGlobalUIReactorHelp& e)
        : kind(e.kind), detail(e.detail), object(e.object), database(e.database), name(e.name.std()),
          selectionActive(e.selectionActive)
    {
    }
    bool operator==(const EventKey& o) const
    {
        return kind == o.kind && detail == o.detail && object == o.object && database == o.database && name == o.name
            && selectionActive == o.selectionActive;
    }
};

struct EventKeyHash
{
    size_t operator()(const EventKey& k) const
    {
        size_t h = std::hash<int64_t>()(k.kind) ^ (std::hash<int64_t>()(k.detail) << 1);
        h ^= std::hash<const void*>()(k.object) + 0x9e3779b9 + (h << 6) + (h >> 2);
        h ^= std::hash<const void*>()(k.database) + 0x9e3779b9 + (h << 6) + (h >> 2);
        return h ^ (std::hash<std::wstring>()(k.name) << 1) ^ size_t(k.selectionActive);
    }
};

struct Listener
{
    std::function<void(const CZrGlobalUIReactorHelp&)> hear;
    std::function<void()> batchEnd;
};

struct UiEvents
{
    std::deque<CZrGlobalUIReactorHelp> waiting;
    std::unordered_set<EventKey, EventKeyHash> keys;
    std::map<int, Listener> listeners;
    int lastKey = 0;
    bool deliveryScheduled = false;
};

// Never destroyed: databases that die with the process drop their events into it.
UiEvents& uiEvents()
{
    static auto* events = new UiEvents;
    return *events;
}

// A listener may add or remove listeners; those removed on the way are not called.
template <class Call>
void callListeners(UiEvents& events, Call call)
{
    std::vector<int> keys;
    for (const auto& listener : events.listeners)
        keys.push_back(listener.first);
    for (int key : keys) {
        const auto found = events.listeners.find(key);
        if (found != events.listeners.end()) {
            const Listener listener = found->second;
            call(listener);
        }
    }
}

void deliverUiEvents()
{
    UiEvents& events = uiEvents();
    events.deliveryScheduled = false;
    if (events.waiting.empty())
        return;
    while (!events.waiting.empty()) {
        const CZrGlobalUIReactorHelp event = events.waiting.front();
        events.waiting.pop_front();
        events.keys.erase(EventKey(event));
        callListeners(events, [&event](const Listener& listener) { listener.hear(event); });
    }
    callListeners(events, [](const Listener& listener) {
        if (listener.batchEnd)
            listener.batchEnd();
    });
}

} // namespace

void zrHostPostUiEvent(const CZrGlobalUIReactorHelp& event)
{
    UiEvents& events = uiEvents();
    if (!events.keys.insert(EventKey(event)).second)
        return;
    events.waiting.push_back(event);
    if (!events.deliveryScheduled && QCoreApplication::instance()) {
        events.deliveryScheduled = true;
        QTimer::singleShot(0, QCoreApplication::instance(), deliverUiEvents);
    }
}

int zrHostAddUiEventListener(std::function<void(const CZrGlobalUIReactorHelp&)> listener,
                             std::function<void()> batchEnd)
{
    UiEvents& events = uiEvents();
    events.listeners.emplace(++events.lastKey, Listener{std::move(listener), std::move(batchEnd)});
    return events.lastKey;
}

void zrHostRemoveUiEventListener(int key) { uiEvents().listeners.erase(key); }

void zrHostFlushUiEvents() { deliverUiEvents(); }

void zrHostDropUiEventsOf(const ZrDbDatabase* database)
{
    UiEvents& events = uiEvents();
    for (auto it = events.waiting.begin(); it != events.waiting.end();) {
        if (it->database == database) {
            events.keys.erase(EventKey(*it));
            it = events.waiting.erase(it);
        } else {
            ++it;
        }
    }
}

bool zrHostSelectionActive()
{
    CXuDocContext* context = CXuSystem::instance()->docContext();
    return context && context->hasSelection();
}

// Service 14 is the host's user-interface layer's; the host only names its class.
ZR_RX_DEFINE_MEMBERS(ZrUiReactorService, ZrRxObject)
