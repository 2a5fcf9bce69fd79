#pragma once
// The private state of a drawing: its containers, variables, undo history and indexes. Private to
// the host library.

#include "zrdbdatabase.h"
#include "zrdbundo.h"
#include "zrdbvariables.h"

#include <QTimer>
#include <memory>
#include <unordered_map>
#include <vector>

// One object as a step holds it: the state to put back, or null for an object the step made.
struct ZrDbObjectChange
{
    int64_t handle = 0;
    std::unique_ptr<ZrDbObject> state;
};

struct ZrDbVariableChange
{
    int variable = 0;
    ZrDbVariableValue value;
    // The recording it was taken in, so that a variable is recorded once per recording.
    uint32_t recording = 0;
};

struct ZrDbUndoStep
{
    uint32_t serial = 0;
    ZrString name;
    std::vector<ZrDbObjectChange> objects;
    std::vector<ZrDbVariableChange> variables;

    bool isEmpty() const { return objects.empty() && variables.empty(); }
};

// Where the changes since a mark begin.
struct ZrDbUndoMark
{
    size_t undoDepth = 0;
    uint32_t step = 0;
    size_t objects = 0;
    size_t variables = 0;
};

// One coordinate system of a space, as the UCS history keeps it.
struct ZrDbUcsState
{
    int64_t name = 0;
    ZrGePoint3d origin;
    ZrGePoint3d xAxis;
    ZrGePoint3d yAxis;

    bool operator==(const ZrDbUcsState& other) const
    {
        return name == other.name && origin.isEqualTo(other.origin, 0.0) && xAxis.isEqualTo(other.xAxis, 0.0)
            && yAxis.isEqualTo(other.yAxis, 0.0);
    }
};

// The private state of a database is reached through its friend, for the host's own files.
struct ZrDbDatabaseInternal
{
    using Data = ZrDbDatabase::Data;
    static Data& data(const ZrDbDatabase* database) { return *database->d; }
};
using ZrDbData = ZrDbDatabaseInternal::Data;

struct ZrDbDatabase::Data
{
    explicit Data(ZrDbDatabase* database) : self(database) {}

    ZrDbDatabase* self;

    int64_t layerTable = 0;
    int64_t linetypeTable = 0;
    int64_t textStyleTable = 0;
    int64_t dimStyleTable = 0;
    int64_t viewTable = 0;
    int64_t ucsTable = 0;
    int64_t blockTable = 0;
    int64_t regAppTable = 0;
    int64_t namedObjects = 0;
    int64_t materials = 0;
    int64_t plotStyles = 0;
    int64_t tableStyles = 0;
    int64_t mleaderStyles = 0;
    int64_t layouts = 0;
    int64_t layerStates = 0;
    int64_t modelSpace = 0;
    int64_t paperSpace = 0;
    int64_t byLayerLinetype = 0;
    int64_t byBlockLinetype = 0;
    int64_t continuousLinetype = 0;
    int64_t byLayerMaterial = 0;

    // Every object of the drawing, for taking them down with it.
    std::vector<int64_t> owned;
    std::vector<ZrDbVariableValue> variables;
    // References by the block they show; it may hold references that point elsewhere by now,
    // which readers check.
    std::unordered_map<int64_t, std::vector<int64_t>> referencesOfBlock;
    // While above 0, nothing is recorded for undo and no event is sent: building a drawing.
    int quiet = 0;

    std::vector<std::unique_ptr<ZrDbUndoStep>> undoSteps;
    std::vector<std::unique_ptr<ZrDbUndoStep>> redoSteps;
    std::unique_ptr<ZrDbUndoStep> openStep;
    int stepDepth = 0;
    // The open step came from xudbSetUndoRecord and ends with the turn of the event loop.
    bool autoStep = false;
    std::unique_ptr<QTimer> autoStepEnd;
    uint32_t serials = 0;
    uint32_t recording = 0;
    // Writes outside any step: the step each object open for write records into.
    std::unordered_map<int64_t, ZrDbUndoStep*> looseWrites;
    std::vector<ZrDbUndoMark> marks;
    // The systems each space had before, model [0] and paper [1], latest last. Like the view, this
    // history lies outside the drawing: undo leaves it alone and files do not keep it.
    std::vector<ZrDbUcsState> ucsHistory[2];

    // Adds an object and closes it again, for building.
    int64_t addClosed(ZrDbObject* object, int64_t owner);
    // A layout under `name` that shows the block, which it marks as a layout's.
    int64_t addLayout(const ZrString& name, int tab, int64_t block);
    void indexReference(const ZrDbObject* object);
    void noteRestored(ZrDbObject* object);

    void recordNew(ZrDbObject* object, int64_t owner);
    void recordBeforeWrite(ZrDbObject* object);
    void endOfWrite(int64_t handle);
    void recordVariable(int id, const ZrDbVariableValue& before);
    ZrDbUndoStep* startLooseStep();
    void commit(std::unique_ptr<ZrDbUndoStep> step);
    // Puts the states of a step's changes from the given positions back, latest first, and
    // answers the step that would reverse that.
    std::unique_ptr<ZrDbUndoStep> apply(ZrDbUndoStep& step, size_t objectsFrom, size_t variablesFrom);

    const ZrDbVariableValue& variable(int id) const { return variables[static_cast<size_t>(id)]; }
    // Stores a value as it is: recorded for undo, told to the user interface.
    void storeVariable(int id, const ZrDbVariableValue& value);
    // Stores a value with what follows from it (the space in use follows TILEMODE, and so on).
    int changeVariable(int id, ZrDbVariableValue value);
    void postVariable(int id) const;
    void postObject(ZrDbObject* object) const;

    // Whether a handle names a live record of the kind in this drawing.
    bool isRecordOf(int64_t handle, ZrDbRecordKind kind) const;
    int64_t recordNamed(ZrDbRecordKind kind, const ZrString& name) const;
    ZrString recordName(ZrDbRecordKind kind, int64_t handle) const;
    int64_t modelLayout() const;
    int64_t firstPaperLayout() const;
    int64_t paperViewportOf(int64_t layout) const;

    ZrDbUcsState ucs(bool paper) const;
    // Makes a system current in a space; with `remember` the one it replaces goes into the history.
    void storeUcs(bool paper, const ZrDbUcsState& ucs, bool remember);
    // Goes back to the latest system of the history; Zr::eKeyNotFound when it is empty.
    int restorePreviousUcs(bool paper);
};

inline ZrDbData& zrdbData(const ZrDbDatabase* database) { return ZrDbDatabaseInternal::data(database); }

// Makes the changes of variables made while it lives one undo step, unless a step is open already.
class ZrDbVariableStep
{
public:
    ZrDbVariableStep(ZrDbDatabase* database, int variable) : m_database(database), m_own(!zrdbInUndoStep(database))
    {
        if (m_own)
            zrdbBeginUndoStep(m_database, ZrString(zrdbVariableDefinition(variable).name));
    }
    ~ZrDbVariableStep()
    {
        if (m_own)
            zrdbEndUndoStep(m_database);
    }
    ZrDbVariableStep(const ZrDbVariableStep&) = delete;
    ZrDbVariableStep& operator=(const ZrDbVariableStep&) = delete;

private:
    ZrDbDatabase* m_database;
    bool m_own;
};

// Builds without recording for undo and without events while it lives.
class ZrDbQuiet
{
public:
    explicit ZrDbQuiet(ZrDbDatabase* database) : m_data(zrdbData(database)) { ++m_data.quiet; }
    ~ZrDbQuiet() { --m_data.quiet; }
    ZrDbQuiet(const ZrDbQuiet&) = delete;
    ZrDbQuiet& operator=(const ZrDbQuiet&) = delete;

private:
    ZrDbData& m_data;
};
