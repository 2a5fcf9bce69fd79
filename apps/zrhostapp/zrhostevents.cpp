#include "zrhostevents.h"

#include "zrdrawingcontrol.h"

#include <utility>

struct ZrHostEvents::Data
{
    int listener = -1;
    qint64 pendingKinds = 0;
};

ZrHostEvents::ZrHostEvents(QObject* parent) : QObject(parent), d(std::make_unique<Data>())
{
    d->listener = ZrHostControl::addUiEventListener([this](const CZrGlobalUIReactorHelp& event) {
        const bool scheduled = d->pendingKinds != 0;
        d->pendingKinds |= event.kind;
        if (scheduled || d->pendingKinds == 0)
            return;
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT changed(std::exchange(d->pendingKinds, 0)); }, Qt::QueuedConnection);
    });
}

ZrHostEvents::~ZrHostEvents()
{
    ZrHostControl::removeUiEventListener(d->listener);
}
