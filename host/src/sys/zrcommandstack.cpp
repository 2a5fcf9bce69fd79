// The command stack: commands by name, each run as one undo step of the drawing it starts in.

#include "zrarbitdict.h"

#include "zrdbdatabase.h"
#include "zrdbundo.h"
#include "zrdocument.h"
#include "zrsystem.h"

#include <vector>

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
