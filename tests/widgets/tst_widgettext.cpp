// Fitting widget texts into their space, and the small helpers around them.

#include "zrtestmain.h"

#include "ZrQtUtilsFunc.h"

#include "zrhostcontrol.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>
#include <QtMath>

namespace {

void startHost(const QString& language)
{
    ZrHostControl::Options options;
    options.language = language;
    options.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
    ZrHostControl::initialize(options);
}

// The width a text needs, rounded up: elision measures in fractions of a pixel.
int advance(const QWidget& widget, const QString& text)
{
    return qCeil(QFontMetricsF(widget.font()).horizontalAdvance(text));
}

} // namespace

class TestWidgetText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startHost(QStringLiteral("zh-CN")); }
    void cleanup() { ZrHostControl::shutdown(); }

    void dealWithTextDisplayOutsideChinese_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("mnemonic") << "en-US" << "By&Layer" << "By&(L)ayer";
        QTest::newRow("none") << "en-US" << "ByLayer" << "ByLayer";
        QTest::newRow("trailing") << "en-US" << "Layer&" << "Layer&";
        QTest::newRow("chinese") << "zh-CN" << "By&Layer" << "By&Layer";
    }

    void dealWithTextDisplayOutsideChinese()
    {
        QFETCH(QString, language);
        QFETCH(QString, text);
        QFETCH(QString, shown);
        ZrHostControl::shutdown();
        startHost(language);
        QCOMPARE(dealWithTextDisplay(text), shown);
    }

    void labelElidedOnlyPastItsWidth()
    {
        QLabel label(QStringLiteral("Layer 图层 Linetype"));
        const QString full = label.text();
        // Exactly the width that holds the text besides the dots' share: it stays.
        label.setMaximumWidth(advance(label, full) + label.fontMetrics().horizontalAdvance(QStringLiteral("...")));
        zrutAdjustWidgetTextDisplay(&label);
        QCOMPARE(label.text(), full);
        QVERIFY(label.toolTip().isEmpty());

        label.setMaximumWidth(label.maximumWidth() - 1);
        zrutAdjustWidgetTextDisplay(&label);
        QVERIFY(label.text() != full);
        QVERIFY(label.text().endsWith(QChar(0x2026)));
        QCOMPARE(label.toolTip(), full);

        // A tool tip of its own stays.
        QLabel tipped(full);
        tipped.setToolTip(QStringLiteral("own"));
        tipped.setMaximumWidth(30);
        zrutAdjustWidgetTextDisplay(&tipped);
        QCOMPARE(tipped.toolTip(), QStringLiteral("own"));
    }

    void mnemonicTipOutsideChinese()
    {
        ZrHostControl::shutdown();
        startHost(QStringLiteral("en-US"));
        QCheckBox box(QStringLiteral("By&Layer and more"));
        box.setMaximumWidth(40);
        zrutAdjustWidgetTextDisplay(&box);
        QCOMPARE(box.toolTip(), QStringLiteral("By(L)ayer and more"));
    }

    // What each kind keeps for its indicator: the text fits exactly at its width plus that share.
    void eachKindReservesItsShare_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("reserved");
        QTest::newRow("radio") << "radio" << 50;
        QTest::newRow("check") << "check" << 20;
        QTest::newRow("group") << "group" << 20;
        QTest::newRow("push") << "push" << 0;
    }

    void eachKindReservesItsShare()
    {
        QFETCH(QString, kind);
        QFETCH(int, reserved);
        const QString text = QStringLiteral("Hidden 隐藏线 line type");
        for (int less : {0, 1}) {
            std::unique_ptr<QWidget> widget;
            QString shown;
            if (kind == QLatin1String("radio"))
                widget.reset(new QRadioButton(text));
            else if (kind == QLatin1String("check"))
                widget.reset(new QCheckBox(text));
            else if (kind == QLatin1String("group"))
                widget.reset(new QGroupBox(text));
            else
                widget.reset(new QPushButton(text));
            widget->setMaximumWidth(advance(*widget, text) + reserved - less);
            zrutAdjustWidgetTextDisplay(widget.get());
            if (auto* group = qobject_cast<QGroupBox*>(widget.get()))
                shown = group->title();
            else
                shown = static_cast<QAbstractButton*>(widget.get())->text();
            QCOMPARE(shown == text, less == 0);
            QCOMPARE(widget->toolTip().isEmpty(), less == 0);
        }
    }

    void listAndTreeItems()
    {
        QListWidget list;
        auto* item = new QListWidgetItem(QStringLiteral("A long name of a line type"), &list);
        zrutAdjustWidgetItemTextDisplay(&list, item, 400);
        QVERIFY(item->toolTip().isEmpty());
        zrutAdjustWidgetItemTextDisplay(&list, item, 40);
        QVERIFY(item->text() != QStringLiteral("A long name of a line type"));
        QCOMPARE(item->toolTip(), QStringLiteral("A long name of a line type"));

        QTreeWidget tree;
        auto* row = new QTreeWidgetItem(&tree, {QStringLiteral("线型名称很长很长很长")});
        zrutAdjustWidgetItemTextDisplay(&tree, row, 30);
        QCOMPARE(row->toolTip(0), QStringLiteral("线型名称很长很长很长"));
    }

    void comboBoxItemsGetTips()
    {
        QComboBox box;
        box.addItems({QStringLiteral("短"), QStringLiteral("A rather long line type name"), QStringLiteral("Another long one, tipped")});
        box.setItemData(2, QStringLiteral("own"), Qt::ToolTipRole);
        box.setMaximumWidth(60);
        zrutAdjustComboBoxDisplay(&box);
        QVERIFY(box.itemData(0, Qt::ToolTipRole).isNull());
        QCOMPARE(box.itemData(1, Qt::ToolTipRole).toString(), QStringLiteral("A rather long line type name"));
        QCOMPARE(box.itemData(2, Qt::ToolTipRole).toString(), QStringLiteral("own"));
        // The items keep their texts: the list elides them as it draws.
        QCOMPARE(box.itemText(1), QStringLiteral("A rather long line type name"));
        zrutUpdateListViewInComboBox(&box);
        QVERIFY(box.view()->hasAutoScroll());
    }

    void tableColumnsFromTheirTitles()
    {
        QTableWidget one(2, 1);
        one.setHorizontalHeaderLabels({QStringLiteral("名称")});
        one.resize(300, 200);
        one.show();
        QVERIFY(QTest::qWaitForWindowExposed(&one));
        zrutAdjustTableWidgetOrViewTitle(&one, 10);
        QCOMPARE(one.columnWidth(0), one.viewport()->width());

        QStandardItemModel model(1, 3);
        model.setHorizontalHeaderLabels({QStringLiteral("A"), QStringLiteral("Linetype"), QStringLiteral("Description")});
        QTableView view;
        view.setModel(&model);
        view.horizontalHeader()->setMinimumSectionSize(1);
        view.resize(60, 100);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const QFontMetrics metrics(view.horizontalHeader()->font());
        zrutAdjustTableWidgetOrViewTitle(&view, 8);
        QCOMPARE(view.columnWidth(0), metrics.horizontalAdvance(QStringLiteral("A")) + 8);
        QCOMPARE(view.columnWidth(1), metrics.horizontalAdvance(QStringLiteral("Linetype")) + 8);
        // The last title does not fit in what is left: its own width.
        QCOMPARE(view.columnWidth(2), metrics.horizontalAdvance(QStringLiteral("Description")) + 8);
        // Where it fits, it takes the rest of the viewport.
        view.resize(400, 100);
        QTRY_VERIFY(view.viewport()->width() > 300);
        zrutAdjustTableWidgetOrViewTitle(&view, 8);
        QCOMPARE(view.columnWidth(2), view.viewport()->width() - view.columnWidth(0) - view.columnWidth(1));

        zrutAdjustTableWidgetOrViewItem(&view, view.font(), QStringLiteral("wide text here"), 1, 4, 30);
        QCOMPARE(view.columnWidth(1), 30);
        zrutAdjustTableWidgetOrViewItem(&view, view.font(), QStringLiteral("i"), 1, 4, 300);
        QCOMPARE(view.columnWidth(1), QFontMetrics(view.font()).horizontalAdvance(QStringLiteral("i")) + 4);
    }

};

ZR_TEST_SUITE(TestWidgetText)
#include "tst_widgettext.moc"
