#pragma once
// What a viewport answers about the view it shows. The viewport in use is had from the graphics
// manager of a document (CXuGraphicsManager::activeViewport) and queried for this class.

#include "zrhost_export.h"
#include "zrrxobject.h"

class ZRHOST_EXPORT ZrDbAbstractViewportData : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbAbstractViewportData)
public:
    // Whether the UCS history of the space the viewport shows holds a system to go back to: each
    // change of the space's UCS puts the one it replaces there.
    virtual bool hasPreviousUcs() const = 0;
    // Makes the latest system of that history current again and takes it out; Zr::eOk on success.
    virtual int restorePreviousUcs() = 0;
};
