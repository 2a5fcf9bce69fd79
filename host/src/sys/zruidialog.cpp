#include "zruidialog.h"

#include <QHash>
#include <QVariant>

ZR_RX_DEFINE_MEMBERS(ZrUiDialogBase, ZrRxObject)
ZR_RX_DEFINE_MEMBERS(ZrUiModalDialogBase, ZrUiDialogBase)
ZR_RX_DEFINE_MEMBERS(ZrUiModelessDialogBase, ZrUiDialogBase)
ZR_RX_DEFINE_MEMBERS(ZrUiDialogInvoker, ZrRxObject)
ZR_RX_DEFINE_MEMBERS(ZrUiHelper, ZrRxObject)
ZR_RX_DEFINE_MEMBERS(ZrUiService, ZrRxObject)

struct CXuDictionary::Data
{
    QHash<QByteArray, QVariant> values;

    template <class T>
    bool read(const char* name, T& value, QVariant::Type type) const
    {
        auto it = values.constFind(QByteArray(name));
        if (it == values.constEnd() || it->type() != type)
            return false;
        value = it->value<T>();
        return true;
    }
};

CXuDictionary::CXuDictionary() : d(new Data) {}
CXuDictionary::~CXuDictionary() { delete d; }

bool CXuDictionary::has(const char* name) const { return d->values.contains(QByteArray(name)); }
bool CXuDictionary::getInt(const char* name, int& value) const { return d->read(name, value, QVariant::Int); }
bool CXuDictionary::getBool(const char* name, bool& value) const { return d->read(name, value, QVariant::Bool); }
bool CXuDictionary::getDouble(const char* name, double& value) const
{
    return d->read(name, value, QVariant::Double);
}

bool CXuDictionary::getString(const char* name, ZrString& value) const
{
    QString text;
    if (!d->read(name, text, QVariant::String))
        return false;
    value = ZrString(text);
    return true;
}

bool CXuDictionary::getPtr(const char* name, void*& value) const
{
    qulonglong address = 0;
    if (!d->read(name, address, QVariant::ULongLong))
        return false;
    value = reinterpret_cast<void*>(static_cast<uintptr_t>(address));
    return true;
}

void CXuDictionary::setInt(const char* name, int value) { d->values.insert(QByteArray(name), value); }
void CXuDictionary::setBool(const char* name, bool value) { d->values.insert(QByteArray(name), value); }
void CXuDictionary::setDouble(const char* name, double value) { d->values.insert(QByteArray(name), value); }
void CXuDictionary::setString(const char* name, const ZrString& value)
{
    d->values.insert(QByteArray(name), value.toQString());
}
void CXuDictionary::setPtr(const char* name, void* value)
{
    d->values.insert(QByteArray(name), QVariant::fromValue(qulonglong(reinterpret_cast<uintptr_t>(value))));
}
bool CXuDictionary::remove(const char* name) { return d->values.remove(QByteArray(name)) > 0; }

struct ZrUiHelper::Data
{
    CXuDictionary dictionary;
    std::function<bool(ZrJsonPtr)> func;
};

ZrUiHelper::ZrUiHelper() : d(new Data) {}
ZrUiHelper::~ZrUiHelper() { delete d; }
CXuDictionary* ZrUiHelper::getDictionary() const { return &d->dictionary; }
std::function<bool(ZrJsonPtr)> ZrUiHelper::getFunc() const { return d->func; }
void ZrUiHelper::setFunc(std::function<bool(ZrJsonPtr)> func) { d->func = std::move(func); }
bool ZrUiHelper::onNotify(ZrJsonPtr param) { return d->func ? d->func(param) : false; }
