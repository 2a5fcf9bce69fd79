#pragma once
// Numbered host services, the system registry and the command stack.

#include "zrhost_export.h"
#include "zrrxobject.h"
#include "zrstring.h"

#include <cstdint>

// Stores a reference to `service` in the numbered slot, replacing what was there.
ZRHOST_EXPORT void zr_arbitDict_regservice(int slot, ZrRxObjectPtr service);
// Empties the slot; the dictionary's reference goes.
ZRHOST_EXPORT void zr_arbitDict_clearservice(int slot);
ZRHOST_EXPORT ZrRxObjectPtr zr_arbitDict_getservice(int slot);
// The object of a slot, null when the slot is empty.
ZRHOST_EXPORT ZrRxObjectPtr zrUISvr(int slot);
// A second numbered space, apart from the dictionary above.
ZRHOST_EXPORT ZrRxObjectPtr zrrxGetService(int number);

// Objects registered by name.
class ZRHOST_EXPORT ZrRxDictionary : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrRxDictionary)
public:
    ZrRxDictionary();
    ~ZrRxDictionary() override;
    // The object under `name`, not counted for the caller; null when absent.
    ZrRxObject* at(const char* name) const;
    // Keeps a reference to `object` under `name`.
    void atPut(const char* name, ZrRxObject* object);
    bool remove(const char* name);

private:
    struct Data;
    Data* d;
};

ZRHOST_EXPORT ZrRxDictionary* zrrxSysRegistry();

// The registry name of the command stack.
#define ACRX_COMMAND_DOCK "ACRX_REGISTERED_COMMANDS"

class ZRHOST_EXPORT ZrRxResourceInstance
{
public:
    explicit ZrRxResourceInstance(void* handle = nullptr) : m_handle(handle) {}
    void* handle() const { return m_handle; }

private:
    void* m_handle;
};

using ZrRxFunctionPtr = void (*)();
class ZrEdUIContext;

class ZRHOST_EXPORT ZrEdCommandStack : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrEdCommandStack)
public:
    ZrEdCommandStack();
    ~ZrEdCommandStack() override;

    // 0 on success; a name already in the group is refused with 1.
    virtual int addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName,
                           int32_t flags, ZrRxFunctionPtr function, ZrEdUIContext* uiContext = nullptr,
                           int functionCode = -1,
                           ZrRxResourceInstance resources = ZrRxResourceInstance(nullptr),
                           void* extra = nullptr);
    // 0 on success, 1 when the group holds no such command.
    virtual int removeCmd(const wchar_t* group, const wchar_t* globalName);

    bool hasCommand(const ZrString& globalName) const;
    // The flags a command was added with, -1 when there is no such command.
    int32_t commandFlags(const ZrString& globalName) const;
    // Runs a command by its global or local name, ignoring case; false when there is none.
    bool runCommand(const ZrString& name);

private:
    struct Data;
    Data* d;
};
