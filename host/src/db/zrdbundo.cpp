// The undo history of a drawing: steps of object states and variable values, and marks within them.

#include "zrdbdatabase.h"

#include "zrdbdatabasedata.h"
#include "zrdbinternal.h"
#include "zrdbundo.h"

#include <exception>
#include <unordered_set>

namespace {

std::unique_ptr<ZrDbObject> cloneOf(const ZrDbObject* object)
{
    return std::unique_ptr<ZrDbObject>(static_cast<ZrDbObject*>(object->clone()));
}

} // namespace

ZrDbUndoStep* ZrDbData::startLooseStep()
{
    auto step = std::make_unique<ZrDbUndoStep>();
    step->serial = ++serials;
    ZrDbUndoStep* raw = step.get();
    undoSteps.push_back(std::move(step));
    redoSteps.clear();
    return raw;
}

void ZrDbData::recordNew(ZrDbObject* object, int64_t owner)
{
    if (quiet)
        return;
    const int64_t handle = object->objectId().handle();
    if (openStep) {
        object->m_undoStamp = recording;
        openStep->objects.push_back({handle, nullptr});
        return;
    }
    // Outside a step, what is added while its container is open for write is one step with it.
    ZrDbUndoStep* step = nullptr;
    const ZrDbObject* container = ZrDbObjects::at(owner);
    const bool containerOpen = container && container->isWriteEnabled();
    const auto found = looseWrites.find(owner);
    if (containerOpen && found != looseWrites.end())
        step = found->second;
    if (!step) {
        step = startLooseStep();
        if (containerOpen)
            looseWrites[owner] = step;
    }
    step->objects.push_back({handle, nullptr});
    looseWrites[handle] = step;
}

void ZrDbData::recordBeforeWrite(ZrDbObject* object)
{
    if (quiet)
        return;
    const int64_t handle = object->objectId().handle();
    if (openStep) {
        if (object->m_undoStamp == recording)
            return;
        object->m_undoStamp = recording;
        openStep->objects.push_back({handle, cloneOf(object)});
        return;
    }
    if (looseWrites.count(handle))
        return;
    ZrDbUndoStep* step = startLooseStep();
    step->objects.push_back({handle, cloneOf(object)});
    looseWrites[handle] = step;
}

void ZrDbData::endOfWrite(int64_t handle) { looseWrites.erase(handle); }

void ZrDbData::recordVariable(int id, const ZrDbVariableValue& before)
{
    if (quiet)
        return;
    if (openStep) {
        for (const ZrDbVariableChange& change : openStep->variables) {
            if (change.variable == id && change.recording == recording)
                return;
        }
        openStep->variables.push_back({id, before, recording});
        return;
    }
    startLooseStep()->variables.push_back({id, before, 0});
}

void ZrDbData::commit(std::unique_ptr<ZrDbUndoStep> step)
{
    if (!step || step->isEmpty())
        return;
    undoSteps.push_back(std::move(step));
    redoSteps.clear();
}

std::unique_ptr<ZrDbUndoStep> ZrDbData::apply(ZrDbUndoStep& step, size_t objectsFrom, size_t variablesFrom)
{
    auto inverse = std::make_unique<ZrDbUndoStep>();
    inverse->serial = step.serial;
    inverse->name = step.name;
    std::unordered_set<int64_t> seen;
    std::vector<ZrDbObject*> restored;
    for (size_t i = step.objects.size(); i-- > objectsFrom;) {
        ZrDbObjectChange& change = step.objects[i];
        ZrDbObject* object = ZrDbObjects::at(change.handle);
        if (!object)
            continue;
        // The state before this pass, once per object, is what reverses it.
        if (seen.insert(change.handle).second) {
            inverse->objects.push_back({change.handle, cloneOf(object)});
            restored.push_back(object);
        }
        // A step's new object goes back to not being there: erased.
        if (change.state)
            object->restoreFrom(*change.state);
        else
            object->m_flags |= ZrDbObject::kErased;
        noteRestored(object);
    }
    std::vector<int> changedVariables;
    for (size_t i = step.variables.size(); i-- > variablesFrom;) {
        const ZrDbVariableChange& change = step.variables[i];
        ZrDbVariableValue& stored = variables[static_cast<size_t>(change.variable)];
        if (std::find(changedVariables.begin(), changedVariables.end(), change.variable) == changedVariables.end()) {
            inverse->variables.push_back({change.variable, stored, 0});
            changedVariables.push_back(change.variable);
        }
        stored = change.value;
    }
    step.objects.resize(objectsFrom);
    step.variables.resize(variablesFrom);
    for (ZrDbObject* object : restored)
        postObject(object);
    for (int variable : changedVariables)
        postVariable(variable);
    // Objects still open for write record again into whatever comes next.
    looseWrites.clear();
    recording = ++serials;
    return inverse;
}

void zrdbBeginUndoStep(ZrDbDatabase* database, const ZrString& name)
{
    ZrDbData* const d = &zrdbData(database);
    if (d->stepDepth++ > 0)
        return;
    d->openStep = std::make_unique<ZrDbUndoStep>();
    d->openStep->serial = ++d->serials;
    d->openStep->name = name;
    d->recording = ++d->serials;
}

void zrdbEndUndoStep(ZrDbDatabase* database)
{
    ZrDbData* const d = &zrdbData(database);
    if (d->stepDepth == 0 || --d->stepDepth > 0)
        return;
    d->autoStep = false;
    d->commit(std::move(d->openStep));
}

bool zrdbInUndoStep(const ZrDbDatabase* database) { return zrdbData(database).stepDepth > 0; }
bool zrdbCanUndo(const ZrDbDatabase* database) { return !zrdbData(database).undoSteps.empty(); }
bool zrdbCanRedo(const ZrDbDatabase* database) { return !zrdbData(database).redoSteps.empty(); }
ZrString zrdbUndoStepName(const ZrDbDatabase* database)
{
    const ZrDbData& d = zrdbData(database);
    return d.undoSteps.empty() ? ZrString() : d.undoSteps.back()->name;
}

ZrString zrdbRedoStepName(const ZrDbDatabase* database)
{
    const ZrDbData& d = zrdbData(database);
    return d.redoSteps.empty() ? ZrString() : d.redoSteps.back()->name;
}

namespace {

// Undo and redo run between steps: a step that only waits for the event loop ends first.
bool closeWaitingStep(ZrDbDatabase* database, const ZrDbData& d)
{
    if (d.stepDepth == 0)
        return true;
    if (!d.autoStep || d.stepDepth > 1)
        return false;
    zrdbEndUndoStep(database);
    return true;
}

} // namespace

bool zrdbUndo(ZrDbDatabase* database)
{
    ZrDbData* const d = &zrdbData(database);
    if (!closeWaitingStep(database, *d) || d->undoSteps.empty())
        return false;
    std::unique_ptr<ZrDbUndoStep> step = std::move(d->undoSteps.back());
    d->undoSteps.pop_back();
    d->redoSteps.push_back(d->apply(*step, 0, 0));
    return true;
}

bool zrdbRedo(ZrDbDatabase* database)
{
    ZrDbData* const d = &zrdbData(database);
    if (!closeWaitingStep(database, *d) || d->redoSteps.empty())
        return false;
    std::unique_ptr<ZrDbUndoStep> step = std::move(d->redoSteps.back());
    d->redoSteps.pop_back();
    d->undoSteps.push_back(d->apply(*step, 0, 0));
    return true;
}

void zrdbSetUndoMark(ZrDbDatabase* database)
{
    ZrDbData* const d = &zrdbData(database);
    ZrDbUndoMark mark;
    mark.undoDepth = d->undoSteps.size();
    if (d->openStep) {
        mark.step = d->openStep->serial;
        mark.objects = d->openStep->objects.size();
        mark.variables = d->openStep->variables.size();
    }
    d->marks.push_back(mark);
    // Objects recorded before the mark are recorded again after it, so that it can be gone back to.
    d->recording = ++d->serials;
}

void zrdbRollBackToMark(ZrDbDatabase* database)
{
    ZrDbData* const d = &zrdbData(database);
    if (d->marks.empty())
        return;
    const ZrDbUndoMark mark = d->marks.back();
    const auto from = [&mark](const ZrDbUndoStep& step, size_t count) { return step.serial == mark.step ? count : 0; };
    if (d->openStep)
        d->apply(*d->openStep, from(*d->openStep, mark.objects), from(*d->openStep, mark.variables));
    // Steps that ended after the mark: a step the mark was set in goes back to the mark only.
    while (d->undoSteps.size() > mark.undoDepth) {
        ZrDbUndoStep& step = *d->undoSteps.back();
        const bool markedInIt = step.serial == mark.step;
        d->apply(step, from(step, mark.objects), from(step, mark.variables));
        if (markedInIt && !step.isEmpty())
            break;
        d->undoSteps.pop_back();
    }
}

void zrdbDropMark(ZrDbDatabase* database)
{
    ZrDbData* const d = &zrdbData(database);
    if (!d->marks.empty())
        d->marks.pop_back();
}

ZrDbCommandStep::ZrDbCommandStep(ZrDbDatabase* database, const ZrString& name)
    : m_database(database), m_exceptions(std::uncaught_exceptions())
{
    if (!m_database)
        return;
    const ZrDbData& d = zrdbData(m_database);
    m_depth = d.stepDepth;
    m_marks = d.marks.size();
    zrdbBeginUndoStep(m_database, name);
    zrdbSetUndoMark(m_database);
}

ZrDbCommandStep::~ZrDbCommandStep()
{
    if (!m_database)
        return;
    ZrDbData& d = zrdbData(m_database);
    while (d.marks.size() > m_marks + 1)
        zrdbDropMark(m_database);
    if (std::uncaught_exceptions() > m_exceptions)
        zrdbRollBackToMark(m_database);
    zrdbDropMark(m_database);
    while (d.stepDepth > m_depth)
        zrdbEndUndoStep(m_database);
}
