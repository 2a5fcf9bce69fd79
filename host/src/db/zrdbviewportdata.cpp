#include "zrdbviewportdata.h"

#include "zrdbdatabasedata.h"
#include "zrdbinternal.h"

ZR_RX_DEFINE_MEMBERS(ZrDbAbstractViewportData, ZrRxObject)

namespace {

// A viewport of a document's view. It keeps showing the space it showed when it was current.
class ZrDbViewViewport : public ZrDbAbstractViewportData
{
public:
    ZrDbViewViewport(ZrDbDatabase* database, bool paper) : m_database(database), m_paper(paper) {}

    bool hasPreviousUcs() const override { return !zrdbData(m_database.get()).ucsHistory[m_paper ? 1 : 0].empty(); }
    int restorePreviousUcs() override { return zrdbData(m_database.get()).restorePreviousUcs(m_paper); }

private:
    ZrDbDatabasePtr m_database;
    bool m_paper;
};

} // namespace

ZrRxObjectPtr zrdbActiveViewport(ZrDbDatabase* database)
{
    if (!database)
        return nullptr;
    // The paper viewport shows paper space; the model tile and a model viewport entered into show the model.
    const int64_t paperViewport = zrdbData(database).paperViewportOf(database->currentLayoutId().handle());
    const bool paper = !database->tilemode() && database->currentViewportId().handle() == paperViewport;
    return ZrRxObjectPtr(new ZrRxObjectImpl<ZrDbViewViewport>(database, paper), kZrAttach);
}
