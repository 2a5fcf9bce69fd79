#include "zrdialogrun.h"

#include "zrarbitdict.h"
#include "zrui.h"
#include "zruidialog.h"

#include <QByteArray>

namespace ZrApp {

QStringList availableDialogs()
{
    static const char* const knownNames[] = {
        "MessageBox", "FileDialogBox", "FileNavDialogBox", "TaskDialog", "ColorDialog",
        "insertHyperlinkDialog", "fileFindDialog", "BeSettingsDialog", "FontDialog", "LineWeightDialog",
    };
    QStringList names;
    const ZrRxObjectPtr serviceObject = zrUISvr(kUiServiceSlot);
    auto* service = ZrUiService::cast(serviceObject.get());
    if (!service)
        return names;
    for (const char* name : knownNames) {
        if (service->createDialog(ZrString::fromUtf8(name), nullptr))
            names << QString::fromLatin1(name);
    }
    return names;
}

ZrJsonPtr sampleParam(const QString& name)
{
    if (name == QLatin1String("MessageBox"))
        return ElementValue::parse(
            R"({"title":"ZrQtBaseUtils","msg":"这是一个消息框示例。","flag":3,"contentFlag":1,"dlgtype":32})");
    if (name == QLatin1String("TaskDialog"))
        return ElementValue::parse(
            R"({"title":"ZrQtBaseUtils","msg":"图纸“平面图-1”已存在。","content":"请选择保存的方式。",)"
            R"("dlgtype":48,"contentFlag":15,"flag":8,"focusFlagBtnId":8,"defaultBtnId":1,)"
            R"("selBtnText":[{"id":1,"caption":"另存为新图纸","extend":"保留原图纸，以新的名称保存当前图纸。"},)"
            R"({"id":2,"caption":"覆盖现有图纸","extend":"原图纸将被当前图纸替换，此操作无法撤销。"},)"
            R"({"id":3,"caption":"不保存"}],)"
            R"("checkboxText":"保护现有图纸","checkboxChecked":true,"enableBtnId":[2]})");
    if (name == QLatin1String("ColorDialog"))
        return ElementValue::parse(R"({"method":195,"index":1,"isByLayerEnable":true,"isByBLockEnable":true})");
    return ElementValue::createObject(kZrJsonObject);
}

ZrJsonPtr runDialog(const QString& name, const ZrJsonPtr& param, QWidget* parent)
{
    const ZrRxObjectPtr helper(new ZrRxObjectImpl<ZrUiHelper>(), kZrAttach);
    return zruiShowModelDialogEx(kUiServiceSlot, ZrString(name), param, helper, parent);
}

static QByteArray toJson(const ZrJsonPtr& value)
{
    return value ? QByteArray::fromStdString(value->toJson().std()) : QByteArrayLiteral("null");
}

QByteArray answerLine(const ZrJsonPtr& param, const ZrJsonPtr& answer)
{
    const int result = answer ? answer->GetVarI("result", -1) : -1;
    return "{\"result\": " + QByteArray::number(result) + ", \"param\": " + toJson(param)
        + ", \"answer\": " + toJson(answer) + '}';
}

} // namespace ZrApp
