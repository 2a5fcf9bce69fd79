// The host's menu-macro queue: strings queued as if typed at the command line, run from the event
// loop as commands.

#include "zrui.h"

#include "zrarbitdict.h"
#include "zrhostmacros.h"

#include <QCoreApplication>
#include <QTimer>

ZrHostMacros& zrHostMacros()
{
    static ZrHostMacros macros;
    return macros;
}

int zredMenuMacro(const wchar_t* macro, bool echo, bool asCommand)
{
    if (!macro)
        return 1;
    ZrHostMacros& host = zrHostMacros();
    const ZrHostMacroCall call{QString::fromWCharArray(macro), echo, asCommand};
    host.queue.enqueue(call);
    if (host.listener)
        host.listener(call);
    // Queued strings run from the event loop, after the caller has returned, as typed input would.
    if (!host.runScheduled && QCoreApplication::instance()) {
        host.runScheduled = true;
        QTimer::singleShot(0, QCoreApplication::instance(), zrHostRunQueuedMacros);
    }
    return 0;
}

namespace {

// The leading word of a command string, without the prefixes of the command line.
QString commandWord(QString text)
{
    while (text.startsWith(QLatin1String("^C")))
        text.remove(0, 2);
    text = text.trimmed();
    while (!text.isEmpty() && QStringLiteral("_.-'").contains(text.front()))
        text.remove(0, 1);
    return text.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
}

} // namespace

void zrHostRunQueuedMacros()
{
    ZrHostMacros& host = zrHostMacros();
    host.runScheduled = false;
    while (!host.queue.isEmpty()) {
        const QString word = commandWord(host.queue.dequeue().text);
        auto* commands = ZrEdCommandStack::cast(zrrxSysRegistry() ? zrrxSysRegistry()->at(ACRX_COMMAND_DOCK) : nullptr);
        const bool known = commands && !word.isEmpty() && commands->runCommand(ZrString(word));
        if (host.commandListener)
            host.commandListener(word, known);
    }
}
