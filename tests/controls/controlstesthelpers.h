#pragma once
// Shared set-up of the control suites: a fresh substitute host with the module loaded and the
// reactor installed, and small drawings built through the host's database interfaces.

#include "qt_common_ui.h"
#include "zrglobaluireactor.h"
#include "zrhostreactor.h"

#include "drawingtesthelpers.h"

#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrsystem.h"

#include <QTemporaryDir>
#include <QTest>
#include <vector>

namespace ControlsTest {

using namespace DrawingTest;

// One host for one test function: module loaded, reactor in slot 14, an empty drawing open.
class Host
{
public:
    Host()
    {
        ZrHostControl::Options options;
        options.configDir = m_config.path();
        options.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
        ZrHostControl::initialize(options);
        zrrxEntryPoint(1);
        ZrHostReactor::install();
        ZrHostControl::openEmptyDrawing();
        ZrHostControl::setMacroListener([this](const ZrHostControl::MacroCall& call) { m_macros << call.text; });
        ZrHostControl::setCommandListener([this](const QString& command, bool) { m_commands << command; });
    }
    ~Host()
    {
        ZrHostReactor::uninstall();
        zrrxEntryPoint(2);
        ZrHostControl::shutdown();
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // Every string that reached the menu-macro queue since the host was made.
    QStringList macros() const { return m_macros; }
    // The queued strings that have run, by their command word.
    QStringList commandsRun() const { return m_commands; }

private:
    QTemporaryDir m_config;
    QStringList m_macros;
    QStringList m_commands;
};

inline ZrDbDatabase* db() { return curDatabase(); }
inline CXuDocContext* context() { return CXuSystem::instance()->docContext(); }

// Adds a named object (material, table or multileader style) to a dictionary of the current drawing.
template <class Named>
ZrDbObjectId addEntry(ZrDbObjectId dictionaryId, Named* object, const QString& name)
{
    ZrDbDictionary* dictionary = nullptr;
    ZrDbObjectId id;
    if (zrdbOpenObject(dictionary, dictionaryId, ZrDb::kForWrite) != Zr::eOk)
        return id;
    object->setName(ZrString(name));
    dictionary->setAt(ZrString(name), object, id);
    object->close();
    dictionary->close();
    return id;
}

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

inline ZrDbObjectId addDimension(ZrDbObjectId style)
{
    auto* dimension = new ZrDbAlignedDimension(ZrGePoint3d(0, 0, 0), ZrGePoint3d(10, 0, 0), ZrGePoint3d(5, 5, 0));
    dimension->setDimensionStyle(style);
    return addEntity(dimension);
}

inline ZrCmColor aci(uint16_t index)
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByACI);
    color.setColorIndex(index);
    return color;
}

// Closes the undo history with a step of its own, so that a test can tell whether anything followed.
inline void markHistory()
{
    db()->beginUndoStep(ZrString(L"mark"));
    db()->setLtscale(db()->ltscale() + 1.0);
    db()->endUndoStep();
}

inline bool nothingSinceMark() { return db()->undoStepName() == ZrString(L"mark") && !db()->canRedo(); }

inline void select(const std::vector<ZrDbObjectId>& ids) { ZrHostControl::setSelection(ids); }

} // namespace ControlsTest
