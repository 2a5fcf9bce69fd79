// The line type choice of service 19: a simple dialog of the host's own listing the drawing's line
// types and those of the definitions the host ships; one of the latter is loaded when chosen.

#include "zrlinetypeservice.h"

#include "zrdbdatabase.h"
#include "zrdbsymtb.h"
#include "zrdbundo.h"
#include "zrdocument.h"
#include "zrjson.h"
#include "zrlinetypedefs.h"
#include "zrreactor.h"
#include "zrarbitdict.h"
#include "zrui.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

ZR_RX_DEFINE_MEMBERS(ZrEdLinetypeService, ZrRxObject)

namespace {

constexpr int kDefinitionRole = Qt::UserRole;
constexpr int kRecordRole = Qt::UserRole + 1;

struct Entry
{
    ZrString name;
    ZrString comments;
    ZrDbObjectId record;
    // Where the entry stands in the shipped definitions when it is not in the drawing yet.
    int definition = -1;
};

std::vector<Entry> drawingEntries(ZrDbDatabase* database)
{
    std::vector<Entry> entries;
    ZrDbLinetypeTable* table = nullptr;
    if (!database || database->getLinetypeTable(table, ZrDb::kForRead) != Zr::eOk)
        return entries;
    for (const int64_t handle : table->recordHandles()) {
        ZrDbObjectPointer<ZrDbLinetypeTableRecord> record(ZrDbObjectId(handle), ZrDb::kForRead);
        if (record && !record->isDependent())
            entries.push_back({record->name(), record->comments(), record->objectId(), -1});
    }
    table->close();
    return entries;
}

class ZrHostLinetypeService : public ZrEdLinetypeService
{
public:
    int chooseLinetype(ZrDbDatabase* database, ZrJsonPtr param, int, int, QWidget* parent) override
    {
        std::vector<ZrLinetypeDefinition> definitions;
        QString error;
        const bool read = zrdbReadLinetypeFile(zrdbShippedLinetypeFile(), definitions, error);

        std::vector<Entry> entries = drawingEntries(database);
        for (int i = 0; i < static_cast<int>(definitions.size()); ++i) {
            const ZrLinetypeDefinition& definition = definitions[static_cast<size_t>(i)];
            const bool loaded = std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) {
                return entry.name.compareNoCase(definition.name) == 0;
            });
            if (!loaded)
                entries.push_back({definition.name, definition.comments, ZrDbObjectId(), i});
        }

        QDialog dialog(parent);
        dialog.setObjectName(QStringLiteral("linetypeChoiceDialog"));
        dialog.setWindowTitle(QStringLiteral("选择线型"));
        auto* layout = new QVBoxLayout(&dialog);
        auto* list = new QTreeWidget(&dialog);
        list->setObjectName(QStringLiteral("linetypeList"));
        list->setRootIsDecorated(false);
        list->setHeaderLabels({QStringLiteral("线型"), QStringLiteral("说明"), QStringLiteral("来源")});
        const QString current = param ? param->GetVarSW("curSelName").toQString() : QString();
        for (const Entry& entry : entries) {
            auto* item = new QTreeWidgetItem(list, {entry.name.toQString(), entry.comments.toQString(),
                                                    entry.definition < 0 ? QStringLiteral("图纸")
                                                                         : QStringLiteral("zrhost.lin")});
            item->setData(0, kDefinitionRole, entry.definition);
            item->setData(0, kRecordRole, QVariant::fromValue<qlonglong>(entry.record.handle()));
            if (entry.name.toQString().compare(current, Qt::CaseInsensitive) == 0 && !list->currentItem())
                list->setCurrentItem(item);
        }
        list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        layout->addWidget(list);
        if (!read) {
            auto* note = new QLabel(QStringLiteral("无法读取线型定义：%1").arg(error), &dialog);
            note->setObjectName(QStringLiteral("linetypeFileError"));
            note->setWordWrap(true);
            layout->addWidget(note);
        }
        auto* buttons = new QDialogButtonBox(&dialog);
        QPushButton* ok = buttons->addButton(QStringLiteral("确定"), QDialogButtonBox::AcceptRole);
        ok->setObjectName(QStringLiteral("okButton"));
        buttons->addButton(QStringLiteral("取消"), QDialogButtonBox::RejectRole)->setObjectName(QStringLiteral("cancelButton"));
        layout->addWidget(buttons);
        QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
        QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
        QObject::connect(list, &QTreeWidget::itemDoubleClicked, &dialog, &QDialog::accept);
        dialog.resize(520, 420);

        if (dialog.exec() != QDialog::Accepted || !list->currentItem() || !param)
            return 2;
        const QTreeWidgetItem* chosen = list->currentItem();
        ZrDbObjectId record(chosen->data(0, kRecordRole).toLongLong());
        const int definition = chosen->data(0, kDefinitionRole).toInt();
        if (definition >= 0) {
            zrdbBeginUndoStep(database, ZrString(L"加载线型"));
            record = zrdbLoadLinetype(database, definitions[static_cast<size_t>(definition)]);
            zrdbEndUndoStep(database);
            if (record.isNull())
                return 2;
        }
        param->SetDataSW("ltypeName", ZrString(chosen->text(0)));
        param->SetDataL("ltypeId", record.handle());
        return 1;
    }
};

} // namespace

ZrRxObjectPtr zrHostNewLinetypeService()
{
    return ZrRxObjectPtr(new ZrRxObjectImpl<ZrHostLinetypeService>(), kZrAttach);
}

void zrHostLinetypeCommand()
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    ZrDbDatabase* database = document ? document->database() : nullptr;
    auto* service = ZrEdLinetypeService::cast(zr_arbitDict_getservice(19).get());
    if (!database || !service)
        return;
    ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
    {
        ZrDbObjectPointer<ZrDbLinetypeTableRecord> current(database->celtype(), ZrDb::kForRead);
        if (current)
            param->SetDataSW("curSelName", current->name());
    }
    if (service->chooseLinetype(database, param, 0, 0, static_cast<QWidget*>(zruiMainWindow())) == 1)
        database->setCeltype(ZrDbObjectId(param->GetVarL("ltypeId")));
}
