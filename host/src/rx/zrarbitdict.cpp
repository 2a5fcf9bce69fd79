// The numbered services of the host and its system registry.

#include "zrarbitdict.h"

#include "zrhostservices.h"
#include "zrplotsvr.h"

#include "zrlinetypeservice.h"
#include "zrreactor.h"
#include "zrsystem.h"

#include <map>
#include <utility>

namespace {

struct Services
{
    std::map<int, ZrRxObjectPtr> slots;
    std::map<int, ZrRxObjectPtr> numbered;
    ZrRxDictionary* registry = nullptr;
};

Services& services()
{
    static Services state;
    return state;
}

} // namespace

void zr_arbitDict_regservice(int slot, ZrRxObjectPtr service) { services().slots[slot] = std::move(service); }

void zr_arbitDict_clearservice(int slot)
{
    // Take the reference out before dropping it: a destructor may look at the slots.
    auto& slots = services().slots;
    auto it = slots.find(slot);
    if (it == slots.end())
        return;
    ZrRxObjectPtr gone = std::move(it->second);
    slots.erase(it);
}

ZrRxObjectPtr zr_arbitDict_getservice(int slot)
{
    const auto& slots = services().slots;
    auto it = slots.find(slot);
    return it == slots.end() ? ZrRxObjectPtr() : it->second;
}

ZrRxObjectPtr zrUISvr(int slot) { return zr_arbitDict_getservice(slot); }

ZrRxObjectPtr zrrxGetService(int number)
{
    const auto& numbered = services().numbered;
    auto it = numbered.find(number);
    return it == numbered.end() ? ZrRxObjectPtr() : it->second;
}

ZrRxDictionary* zrrxSysRegistry() { return services().registry; }

void zrHostStartServices()
{
    zrHostStopServices();
    Services& state = services();
    state.registry = new ZrRxObjectImpl<ZrRxDictionary>();
    auto* commands = new ZrRxObjectImpl<ZrEdCommandStack>();
    state.registry->atPut(ACRX_COMMAND_DOCK, commands);
    commands->addCommand(L"ZRHOST", L"LINETYPE", L"LINETYPE", 0, zrHostLinetypeCommand);
    zrrxRelease(commands);
    state.numbered[3] = ZrRxObjectPtr(new ZrRxObjectImpl<ZrDbDatabaseService>(), kZrAttach);
    zr_arbitDict_regservice(1, ZrRxObjectPtr(new ZrRxObjectImpl<CXuSysHelpSvr>(), kZrAttach));
    CXuSystem::instance()->serviceManager()->registerService(
        ZrString(L"CXuPlotSvr"), ZrRxObjectPtr(new ZrRxObjectImpl<CXuPlotSvr>(), kZrAttach));

    zr_arbitDict_regservice(19, zrHostNewLinetypeService());
}

void zrHostStopServices()
{
    Services& state = services();
    while (!state.slots.empty())
        zr_arbitDict_clearservice(state.slots.rbegin()->first);
    state.numbered.clear();
    CXuSystem::instance()->serviceManager()->removeService(ZrString(L"CXuPlotSvr"));
    zrrxRelease(std::exchange(state.registry, nullptr));
}
