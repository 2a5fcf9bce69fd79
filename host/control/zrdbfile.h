#pragma once
// Drawings on file and built in code. Private to the host library.

#include <QByteArray>
#include <QString>

class ZrDbDatabase;

// Coordinates, sizes, scales and angles beyond this lose every unit of a drawing to rounding and
// overflow once multiplied: the host does not hold them.
constexpr double kZrDbLargestValue = 1e15;

// Reads a drawing file's text into a database made without defaults; false with the place of the
// fault in `error` (line and column, or the object and field).
bool zrdbReadDrawing(ZrDbDatabase* database, const QByteArray& text, QString* error);
QByteArray zrdbWriteDrawing(const ZrDbDatabase* database);

// The sample drawing, into a database made with defaults.
void zrdbBuildSampleDrawing(ZrDbDatabase* database);
// `count` lines over `layers` layers in model space, into a database made with defaults.
void zrdbBuildGeneratedDrawing(ZrDbDatabase* database, int count, int layers);
