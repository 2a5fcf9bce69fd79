#include "zrhostreactor.h"

#include "zrglobaluireactor.h"

#include "zrarbitdict.h"
#include "zruievents.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace {

class ReactorService : public ZrUiReactorService
{
public:
    int addReactorControl(CZrQtControlHelp* control) override
    {
        if (!control || find(control) != m_controls.end())
            return 1;
        m_controls.push_back(Entry{control, m_nextSerial++});
        return 0;
    }

    int removeReactorControl(CZrQtControlHelp* control) override
    {
        const auto it = find(control);
        if (it == m_controls.end())
            return 1;
        m_controls.erase(it);
        return 0;
    }

    // The host hands events one by one; those of one delivery are refreshed together at its end,
    // while the objects they name still exist.
    void take(const CZrGlobalUIReactorHelp& event) { m_pending.push_back(event); }

    // Controls may register, unregister or be destroyed from inside any of the calls below, so the
    // work goes over a copy and checks each control again before it is called.
    void refresh()
    {
        std::vector<CZrGlobalUIReactorHelp> events;
        events.swap(m_pending);
        if (events.empty())
            return;
        std::vector<Entry> interested;
        for (const Entry& entry : std::vector<Entry>(m_controls)) {
            bool wants = false;
            // Every event is asked: some controls take side steps in needUpdateUI.
            for (const CZrGlobalUIReactorHelp& event : events) {
                if (!registered(entry))
                    break;
                wants = entry.control->needUpdateUI(event) || wants;
            }
            if (wants && registered(entry))
                interested.push_back(entry);
        }
        if (interested.empty())
            return;
        ZrArray<ZrGlobalUIReactorHelp::SPickFirstInfo*> records;
        for (const Entry& entry : interested) {
            ZrGlobalUIReactorHelp::SPickFirstInfo* record =
                registered(entry) ? entry.control->getPickFirstInfo() : nullptr;
            if (record) {
                record->reset();
                records.append(record);
            }
        }
        zrqthelper::getPickFirstInfos(records);
        for (const Entry& entry : interested) {
            if (registered(entry))
                entry.control->onUpdateUI();
        }
    }

private:
    // A registration: the serial tells a control that went away from a new one at the same address.
    struct Entry
    {
        CZrQtControlHelp* control;
        quint64 serial;
    };

    std::vector<Entry>::iterator find(const CZrQtControlHelp* control)
    {
        return std::find_if(m_controls.begin(), m_controls.end(),
                            [control](const Entry& entry) { return entry.control == control; });
    }

    bool registered(const Entry& entry) const
    {
        return std::any_of(m_controls.begin(), m_controls.end(),
                           [&entry](const Entry& other) { return other.serial == entry.serial; });
    }

    std::vector<Entry> m_controls;
    std::vector<CZrGlobalUIReactorHelp> m_pending;
    quint64 m_nextSerial = 1;
};

int g_listener = -1;

} // namespace

namespace ZrHostReactor {

void install()
{
    uninstall();
    ZrSmartPtr<ReactorService> service(new ZrRxObjectImpl<ReactorService>(), kZrAttach);
    zr_arbitDict_regservice(zrqthelper::kZrUiReactorServiceSlot, ZrRxObjectPtr(service.get()));
    // The listener holds the service, so that it outlives a slot emptied behind its back.
    g_listener = zrHostAddUiEventListener([service](const CZrGlobalUIReactorHelp& event) { service->take(event); },
                                          [service] { service->refresh(); });
}

void uninstall()
{
    if (g_listener >= 0)
        zrHostRemoveUiEventListener(std::exchange(g_listener, -1));
    zr_arbitDict_clearservice(zrqthelper::kZrUiReactorServiceSlot);
}

} // namespace ZrHostReactor
