#pragma once
// Drawings in DXF, the exchange format of other CAD programs. Private to the control library.

#include <QByteArray>
#include <QString>

class ZrDbDatabase;

// Reads DXF text into a database made with defaults; false with the line of the fault in `error`.
// Objects the host cannot hold are left out and counted in `notice` (empty when all were read).
bool zrdbReadDxf(ZrDbDatabase* database, const QByteArray& text, QString* error, QString* notice);
