// Fitting widget texts into their space, the small helpers around them and the panel widgets.

#include "zrtestmain.h"

#include "ZrQtUtilsFunc.h"

#include "zrcmcolor.h"
#include "zrhostcontrol.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <QtMath>
#include <sys/stat.h>

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

int modeOf(const QString& path)
{
    struct stat info{};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
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
        QTest::newRow("first letter") << "en-US" << "&Open" << "&(O)pen";
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

    void pushButtonThatFitsTakesItsHintAsMinimum()
    {
        QPushButton button(QStringLiteral("确定"));
        zrutAdjustWidgetTextDisplay(&button);
        QCOMPARE(button.minimumWidth(), button.sizeHint().width());
        QLineEdit other(QStringLiteral("x"));
        zrutAdjustWidgetTextDisplay(&other);
        zrutAdjustWidgetTextDisplay(nullptr);
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

    void widgetKeptInsideBounds()
    {
        QWidget widget;
        zrutAdjustWidgetPos(&widget, QRect(90, 50, 30, 20), QRect(0, 0, 100, 100));
        QCOMPARE(widget.pos(), QPoint(70, 50));
        zrutAdjustWidgetPos(&widget, QRect(10, 95, 30, 20), QRect(0, 0, 100, 100));
        QCOMPARE(widget.pos(), QPoint(10, 80));
    }

    void paletteColourText()
    {
        QWidget widget;
        QPalette palette = widget.palette();
        palette.setColor(QPalette::Active, QPalette::Window, QColor(12, 34, 56));
        widget.setPalette(palette);
        QCOMPARE(zrutGetWidgetPaletteColorString(&widget, QPalette::Window, QPalette::Active),
                 QStringLiteral("rgb(12, 34, 56)"));
        QVERIFY(zrutGetWidgetPaletteColorString(nullptr, QPalette::Window).isEmpty());
    }

    void comboBoxesUnderAWidgetTakeTheSheet()
    {
        QWidget form;
        auto* plain = new QComboBox(&form);
        auto* editable = new QComboBox(&form);
        editable->setEditable(true);
        zrutUpdateComboBoxStyleCreateByUIFile(&form, true);
        QVERIFY(plain->styleSheet().isEmpty());
        zrutUpdateComboBoxStyleCreateByUIFile(&form);
        QVERIFY(plain->styleSheet().startsWith(QStringLiteral("QComboBox {color:#000000;background-color:#f5f5f5;")));
        QVERIFY(plain->styleSheet().contains(QStringLiteral("/ImageRes/common/arrow_down.bmp")));
        QVERIFY(plain->styleSheet().contains(QStringLiteral("/ImageRes/common/arrow_up.bmp")));
        QCOMPARE(editable->styleSheet(), plain->styleSheet());
        QVERIFY(editable->lineEdit()->testAttribute(Qt::WA_StyleSheet));
    }

    void chmodThroughATree()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("a/b")));
        for (const QString& name : {QStringLiteral("top.txt"), QStringLiteral("a/b/deep.txt")}) {
            QFile file(dir.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QCOMPARE(zrutRecursiveChmod(dir.path(), 0750), 0);
        for (const QString& name : {QString(), QStringLiteral("a"), QStringLiteral("a/b"), QStringLiteral("top.txt"),
                                    QStringLiteral("a/b/deep.txt")})
            QCOMPARE(modeOf(dir.filePath(name)), 0750);
        QCOMPARE(zrutRecursiveChmod(dir.filePath(QStringLiteral("missing")), 0700), -1);
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("empty")));
        QCOMPARE(zrutRecursiveChmod(dir.filePath(QStringLiteral("empty")), 0700), -1);
        QCOMPARE(modeOf(dir.filePath(QStringLiteral("empty"))), 0700);
    }

    void checkPushButtons()
    {
        QWidget parent;
        QPushButton* plain = zrutInitCheckPushButton(&parent, QStringLiteral("question.svg"), true, false, false);
        QCOMPARE(plain->size(), QSize(24, 24));
        QVERIFY(plain->isFlat() && plain->isCheckable() && !plain->isEnabled());
        QVERIFY(!plain->isDefault() && !plain->autoDefault());
        QVERIFY(!plain->icon().isNull());
        QPushButton* arrow = zrutInitCheckPushButton(&parent, QStringLiteral("question.svg"), false, true, true);
        QVERIFY(qobject_cast<ZrQtPanelButtonWithArrow*>(arrow));
        QCOMPARE(arrow->size(), QSize(32, 24));
        QVERIFY(!arrow->isCheckable() && arrow->isEnabled());
        QCOMPARE(arrow->layoutDirection(), Qt::LeftToRight);
        QVERIFY(!static_cast<ZrQtPanelButtonWithArrow*>(arrow)->isClickLeftArea());
        // The label inside takes the button's size, and the click still reaches the button.
        QSignalSpy clicked(arrow, &QPushButton::clicked);
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        auto* label = arrow->findChild<ZrQtPanelLabelWithArrow*>();
        QVERIFY(label);
        QCOMPARE(label->size(), QSize(32, 24));
        QTest::mouseClick(arrow, Qt::LeftButton, {}, QPoint(8, 12));
        QCOMPARE(clicked.count(), 1);
    }

    void panelPaintings()
    {
        ZrQtCategeryTitleWidget title;
        QPalette palette = title.palette();
        palette.setColor(QPalette::Dark, QColor(1, 2, 3));
        title.setPalette(palette);
        title.resize(20, 10);
        QCOMPARE(title.grab().toImage().pixel(10, 5), qRgb(1, 2, 3));

        ZrQtColorLabel swatch;
        swatch.SetColor(QColor(200, 10, 20));
        const int side = QFontMetrics(QApplication::font()).height();
        QCOMPARE(swatch.pixmap(Qt::ReturnByValue).size(), QSize(side, side));
        QCOMPARE(swatch.pixmap(Qt::ReturnByValue).toImage().pixel(1, 1), qRgb(200, 10, 20));
        swatch.SetColor(0x00102030u);
        QCOMPARE(swatch.pixmap(Qt::ReturnByValue).toImage().pixel(0, 0), qRgb(0x10, 0x20, 0x30));
        ZrCmColor red;
        red.setRGB(250, 0, 0);
        swatch.SetColor(red);
        QCOMPARE(swatch.pixmap(Qt::ReturnByValue).toImage().pixel(0, 0), qRgb(250, 0, 0));

        // The icon at the left edge, the arrow at the right, a line between them when split.
        QPixmap green(16, 16);
        green.fill(Qt::green);
        for (bool split : {false, true}) {
            ZrQtPanelLabelWithArrow label(nullptr, split);
            label.setIcon(QIcon(green));
            label.resize(48, 20);
            const QImage image = label.grab().toImage();
            QCOMPARE(image.pixel(4, 10), qRgb(0, 255, 0));
            bool inkRight = false;
            for (int x = 32; x < 48; ++x)
                inkRight = inkRight || image.pixel(x, 10) != image.pixel(47, 0);
            QVERIFY(inkRight);
        }
    }

    void firstImageOfAFile()
    {
        QTemporaryDir dir;
        QImage picture(5, 4, QImage::Format_RGB32);
        picture.fill(qRgb(1, 2, 3));
        const QString path = dir.filePath(QStringLiteral("p.png"));
        QVERIFY(picture.save(path));
        const QImage read = getImage(path);
        QCOMPARE(read.size(), QSize(5, 4));
        QCOMPARE(read.pixel(2, 2), qRgb(1, 2, 3));
        QVERIFY(getImage(dir.filePath(QStringLiteral("none.png"))).isNull());
        QFile junk(dir.filePath(QStringLiteral("junk.png")));
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write("not a picture");
        junk.close();
        QVERIFY(getImage(junk.fileName()).isNull());
    }
};

ZR_TEST_SUITE(TestWidgetText)
#include "tst_widgettext.moc"
