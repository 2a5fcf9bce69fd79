#include "zrarbitdict.h"

#include "zrdbdatabase.h"
#include "zrdbundo.h"
#include "zrdocument.h"
#include "zrhostservices.h"
#include "zrreactor.h"
#include "zrsystem.h"

#include <QString>
#include <map>
#include <string>
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

ZR_RX_DEFINE_MEMBERS(ZrRxDictionary, ZrRxObject)

struct ZrRxDictionary::Data
{
    std::map<std::string, ZrRxObjectPtr> entries;
};

ZrRxDictionary::ZrRxDictionary() : d(new Data) {}
ZrRxDictionary::~ZrRxDictionary() { delete d; }

ZrRxObject* ZrRxDictionary::at(const char* name) const
{
    auto it = d->entries.find(name ? name : "");
    return it == d->entries.end() ? nullptr : it->second.get();
}

void ZrRxDictionary::atPut(const char* name, ZrRxObject* object)
{
    d->entries[name ? name : ""] = ZrRxObjectPtr(object);
}

bool ZrRxDictionary::remove(const char* name) { return d->entries.erase(name ? name : "") > 0; }

ZrRxDictionary* zrrxSysRegistry() { return services().registry; }

void zrHostStartServices()
{
    zrHostStopServices();
    Services& state = services();
    state.registry = new ZrRxObjectImpl<ZrRxDictionary>();
    auto* commands = new ZrRxObjectImpl<ZrEdCommandStack>();
    state.registry->atPut(ACRX_COMMAND_DOCK, commands);
    zrrxRelease(commands);
    state.numbered[3] = ZrRxObjectPtr(new ZrRxObjectImpl<ZrDbDatabaseService>(), kZrAttach);
}

void zrHostStopServices()
{
    Services& state = services();
    while (!state.slots.empty())
        zr_arbitDict_clearservice(state.slots.rbegin()->first);
    state.numbered.clear();
    zrrxRelease(std::exchange(state.registry, nullptr));
}

ZR_RX_DEFINE_MEMBERS(ZrEdCommandStack, ZrRxObject)

struct ZrEdCommandStack::Data
{
    struct Command
    {
        ZrString group;
        ZrString globalName;
        ZrString localName;
        int32_t flags = 0;
        ZrRxFunctionPtr function = nullptr;
    };
    std::vector<Command> commands;

    // Command names are matched regardless of case, as the command line types them.
    Command* find(const ZrString& name, bool localToo)
    {
        for (Command& cmd : commands) {
            if (cmd.globalName.compareNoCase(name) == 0 || (localToo && cmd.localName.compareNoCase(name) == 0))
                return &cmd;
        }
        return nullptr;
    }
};

ZrEdCommandStack::ZrEdCommandStack() : d(new Data) {}
ZrEdCommandStack::~ZrEdCommandStack() { delete d; }

int ZrEdCommandStack::addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName,
                                 int32_t flags, ZrRxFunctionPtr function, ZrEdUIContext*, int,
                                 ZrRxResourceInstance, void*)
{
    if (!globalName || !function || d->find(ZrString(globalName), false))
        return 1;
    d->commands.push_back({ZrString(group), ZrString(globalName), ZrString(localName ? localName : globalName),
                           flags, function});
    return 0;
}

int ZrEdCommandStack::removeCmd(const wchar_t* group, const wchar_t* globalName)
{
    const ZrString groupName(group);
    const ZrString name(globalName);
    for (auto it = d->commands.begin(); it != d->commands.end(); ++it) {
        if (it->group.compareNoCase(groupName) == 0 && it->globalName.compareNoCase(name) == 0) {
            d->commands.erase(it);
            return 0;
        }
    }
    return 1;
}

bool ZrEdCommandStack::hasCommand(const ZrString& globalName) const { return d->find(globalName, false); }

int32_t ZrEdCommandStack::commandFlags(const ZrString& globalName) const
{
    const Data::Command* cmd = d->find(globalName, false);
    return cmd ? cmd->flags : -1;
}

namespace {

// The command in progress: named and counted while it runs, however it ends.
class RunningCommand
{
public:
    RunningCommand(CXuDocContext* context, const ZrString& name)
        : m_context(context), m_outerName(context->commandObject()->commandName())
    {
        m_context->setActiveCommandCount(m_context->activeCommandCount() + 1);
        m_context->commandObject()->setCommandName(name);
    }
    ~RunningCommand()
    {
        m_context->commandObject()->setCommandName(m_outerName);
        m_context->setActiveCommandCount(m_context->activeCommandCount() - 1);
    }
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

private:
    CXuDocContext* m_context;
    const ZrString m_outerName;
};

} // namespace

bool ZrEdCommandStack::runCommand(const ZrString& name)
{
    const Data::Command* cmd = d->find(name, true);
    if (!cmd)
        return false;
    // Copy out what is needed: the command may remove itself while it runs.
    ZrRxFunctionPtr function = cmd->function;
    const ZrString globalName = cmd->globalName;
    CXuDocContext* context = CXuSystem::instance()->docContext();
    if (!context) {
        function();
        return true;
    }
    // A command is one undo step of the drawing it started in; the reference keeps that drawing
    // alive should the command open another.
    const ZrDbDatabasePtr database(curDatabase());
    const ZrDbCommandStep step(database.get(), globalName);
    const RunningCommand running(context, globalName);
    function();
    return true;
}
