#pragma once
// Running the module's dialogs as a host module would, and the line that reports the outcome.

#include "zrjson.h"

#include <QStringList>

class QByteArray;
class QWidget;

namespace ZrApp {

// The slot the module registers its UI service in.
constexpr int kUiServiceSlot = 48;

// The names the UI service answers to, in menu order; probed, so only what the module has now.
QStringList availableDialogs();

// What the reference host shows `name` with: a sample parameter object, an empty one for a dialog
// without a sample.
ZrJsonPtr sampleParam(const QString& name);

// Runs `name` modally with a fresh companion object; a null handle when the name is unknown.
ZrJsonPtr runDialog(const QString& name, const ZrJsonPtr& param, QWidget* parent);

// {"result": R, "param": P, "answer": A}: R is the answer's "result", -1 when it has none.
QByteArray answerLine(const ZrJsonPtr& param, const ZrJsonPtr& answer);

} // namespace ZrApp
