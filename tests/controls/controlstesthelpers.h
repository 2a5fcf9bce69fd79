#pragma once
// Shared set-up of the control suites: the shared host with the reactor installed, and small
// drawings built through the host's database interfaces.

#include "qt_common_ui.h"
#include "zrglobaluireactor.h"
#include "zrhostreactor.h"

#include "colortesthelpers.h"
#include "drawingtesthelpers.h"
#include "zrtesthost.h"

#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrdrawingcontrol.h"
#include "zrsystem.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QTest>
#include <vector>

namespace ControlsTest {

using namespace DrawingTest;

// The shared host with an empty drawing open and the reactor in slot 14, as the host's user-interface
// layer installs it once the module is loaded.
class Host : public ZrTest::Host
{
public:
    Host() : ZrTest::Host(withEmptyDrawing()) { ZrHostReactor::install(); }
    ~Host() override { ZrHostReactor::uninstall(); }

private:
    static Options withEmptyDrawing()
    {
        Options options;
        options.emptyDrawing = true;
        return options;
    }
};

inline ZrDbDatabase* db() { return curDatabase(); }
inline CXuDocContext* context() { return CXuSystem::instance()->docContext(); }

inline ZrDbObjectId addLine(ZrDbObjectId layer = ZrDbObjectId())
{
    return addEntity(new ZrDbLine(ZrGePoint3d(0, 0, 0), ZrGePoint3d(10, 0, 0)), layer);
}

// Reads one value of an entity that is closed again at once.
template <class Entity, class Read>
auto readEntity(ZrDbObjectId id, Read read) -> decltype(read(static_cast<const Entity*>(nullptr)))
{
    ZrDbObjectPointer<Entity> entity(id, ZrDb::kForRead);
    using Value = decltype(read(static_cast<const Entity*>(nullptr)));
    return entity ? read(entity.object()) : Value();
}

inline ZrDbObjectId addLineType(const QString& name, std::vector<double> dashes)
{
    auto* lineType = new ZrDbLinetypeTableRecord;
    lineType->setDashes(std::move(dashes));
    return addRecord(&ZrDbDatabase::getLinetypeTable, lineType, name);
}

using ZrTest::aci;

// Closes the undo history with a step of its own, so that a test can tell whether anything followed.
inline void markHistory()
{
    ZrHostControl::beginUndoStep(ZrString(L"mark"));
    db()->setLtscale(db()->ltscale() + 1.0);
    ZrHostControl::endUndoStep();
}

inline bool nothingSinceMark() { return ZrHostControl::undoStepName() == ZrString(L"mark") && !ZrHostControl::canRedo(); }

inline void select(const std::vector<ZrDbObjectId>& ids) { ZrHostControl::setSelection(ids); }

// Opens the list with a click and walks to the item with the arrow keys. Typing the name would not
// do twice in a row: the list's search goes on from the text typed just before.
inline void pick(QComboBox& box, const QString& text)
{
    QTest::mouseClick(&box, Qt::LeftButton);
    QTRY_VERIFY(box.view()->isVisible());
    const int row = box.findText(text);
    QVERIFY2(row >= 0, qPrintable(text));
    QTest::keyClick(box.view(), Qt::Key_Home);
    for (int i = 0; i < row; ++i)
        QTest::keyClick(box.view(), Qt::Key_Down);
    QTest::keyClick(box.view(), Qt::Key_Return);
    QTRY_VERIFY(!box.view()->isVisible());
}

inline QStringList items(const QComboBox& box)
{
    QStringList out;
    for (int i = 0; i < box.count(); ++i)
        out << box.itemText(i);
    return out;
}

} // namespace ControlsTest
