// The index colour tab on its own: where each index stands on the grids, and the user's mouse and keys.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "colordialogrunner.h"

#include "uicolorindextab.h"
#include "uicolorwidgets.h"

#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

namespace {

using ColorTest::aci;

struct Shape
{
    int type, rows, columns, cellSize;
};

const Shape kShapes[] = {
    {ZrPaleteWnd::kUpper, 5, 24, 12},
    {ZrPaleteWnd::kLower, 5, 24, 12},
    {ZrPaleteWnd::kStandard, 1, 9, 17},
    {ZrPaleteWnd::kGrey, 1, 6, 17},
};

// The centre of a cell, measured the way the grids are drawn: cells `cellSize` wide, 2 pixels
// apart, the first 2 pixels in.
QPoint centreOf(const Shape& shape, int row, int column)
{
    const int pitch = shape.cellSize + 2;
    return QPoint(column * pitch + 2 + shape.cellSize / 2, row * pitch + 2 + shape.cellSize / 2);
}

// The tab in a dialog of its own, shown and active, on the dialog's two colours.
struct TabWindow
{
    explicit TabWindow(const QString& json, ZrCmColor start = aci(3)) : newColor(start), oldColor(start)
    {
        tab = new ZrIndexColorWnd(&dialog, &dialog);
        (new QVBoxLayout(&dialog))->addWidget(tab);
        tab->initializeData(ElementValue::parse(ZrUtf8String(json)), &newColor, &oldColor);
        dialog.show();
        dialog.activateWindow();
        if (!QTest::qWaitForWindowActive(&dialog))
            qWarning("the tab's window never became active");
    }

    template <class T = QWidget>
    T* child(const char* name) const { return ColorTest::dialogChild<T>(&dialog, name); }
    ZrPaleteWnd* grid(int type) const
    {
        static const char* const names[] = {"ZrPaleteWnd_upper", "ZrPaleteWnd_lower", "ZrPaleteWnd_standard",
                                            "ZrPaleteWnd_grey"};
        return child<ZrPaleteWnd>(names[type - 1]);
    }
    QString line() const { return tab->getColorLineEdit()->text(); }
    void click(int type, int row, int column, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(grid(type), button, Qt::NoModifier, centreOf(kShapes[type - 1], row, column));
    }

    QDialog dialog;
    ZrCmColor newColor;
    ZrCmColor oldColor;
    ZrIndexColorWnd* tab = nullptr;
};

} // namespace

class TestIndexTab : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host); }
    void cleanup() { m_host.reset(); }

    void layoutRule_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("aci");
        QTest::newRow("upper top left") << 1 << 0 << 0 << 18;
        QTest::newRow("upper bottom left") << 1 << 4 << 0 << 10;
        QTest::newRow("upper next column") << 1 << 0 << 1 << 28;
        QTest::newRow("lower bottom right") << 2 << 4 << 23 << 249;
        QTest::newRow("standard first") << 3 << 0 << 0 << 1;
        QTest::newRow("grey last") << 4 << 0 << 5 << 255;
        QTest::newRow("upper row 5") << 1 << 5 << 0 << -1;
        QTest::newRow("upper column 24") << 1 << 0 << 24 << -1;
        QTest::newRow("standard column 9") << 3 << 0 << 9 << -1;
        QTest::newRow("grey column 6") << 4 << 0 << 6 << -1;
        QTest::newRow("negative") << 1 << -1 << 0 << -1;
    }

    void layoutRule()
    {
        QFETCH(int, type);
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(int, aci);
        const Shape& s = kShapes[type - 1];
        ZrPaleteWnd grid(s.type, s.rows, s.columns, s.cellSize);
        QCOMPARE(grid.getAciByPos(row, column, type), aci);
        int r = -9;
        int c = -9;
        if (aci != -1) {
            QVERIFY(ZrPaleteWnd::getPosByAci(aci, type, r, c));
            QCOMPARE(r, row);
            QCOMPARE(c, column);
        }
    }

    void everyIndexOnExactlyOneGrid()
    {
        std::vector<std::unique_ptr<ZrPaleteWnd>> grids;
        for (const Shape& s : kShapes)
            grids.emplace_back(new ZrPaleteWnd(s.type, s.rows, s.columns, s.cellSize));
        for (int aci = 0; aci <= 257; ++aci) {
            QList<int> onTypes;
            for (const Shape& s : kShapes) {
                int row = -1;
                int column = -1;
                if (!ZrPaleteWnd::getPosByAci(aci, s.type, row, column))
                    continue;
                onTypes << s.type;
                QCOMPARE(grids[s.type - 1]->getAciByPos(row, column, s.type), aci);
            }
            const bool onAGrid = aci >= 1 && aci <= 255;
            QVERIFY2(onTypes.size() == (onAGrid ? 1 : 0), qPrintable(QString::number(aci)));
            if (aci <= 9 && onAGrid)
                QCOMPARE(onTypes.first(), int(ZrPaleteWnd::kStandard));
            if (aci >= 250 && onAGrid)
                QCOMPARE(onTypes.first(), int(ZrPaleteWnd::kGrey));
        }
    }

    void colourTexts_data()
    {
        QTest::addColumn<int>("method");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("colorName");
        QTest::addColumn<QString>("bookName");
        QTest::addColumn<QString>("text");
        QTest::newRow("ByLayer") << 192 << 256 << "" << "" << "BYLAYER";
        QTest::newRow("ByBlock") << 193 << 0 << "" << "" << "BYBLOCK";
        QTest::newRow("red") << 195 << 1 << "" << "" << "红";
        QTest::newRow("7 always white") << 195 << 7 << "" << "" << "白";
        QTest::newRow("8") << 195 << 8 << "" << "" << "8";
        QTest::newRow("255") << 195 << 255 << "" << "" << "255";
        QTest::newRow("index 256") << 195 << 256 << "" << "" << "BYLAYER";
        QTest::newRow("index 0") << 195 << 0 << "" << "" << "BYBLOCK";
        QTest::newRow("index 257") << 195 << 257 << "" << "" << "";
        QTest::newRow("true colour") << 194 << 0 << "" << "" << "1,2,3";
        QTest::newRow("book colour") << 194 << 0 << "Lachs 12" << "Eigene" << "Lachs 12";
        QTest::newRow("book without colour name") << 194 << 0 << "" << "Eigene" << "1,2,3";
        QTest::newRow("colour name without book") << 194 << 0 << "Lachs 12" << "" << "1,2,3";
        QTest::newRow("none") << 200 << 0 << "" << "" << "";
    }

    void colourTexts()
    {
        QFETCH(int, method);
        QFETCH(int, index);
        QFETCH(QString, colorName);
        QFETCH(QString, bookName);
        QFETCH(QString, text);
        ZrCmColor color;
        if (method == 194) {
            color.setRGB(1, 2, 3);
        } else {
            color.setColorMethod(static_cast<ZrCmEntityColor::ColorMethod>(method));
            color.setColorIndex(uint16_t(index));
        }
        color.setNames(ZrString(colorName).kwszPtr(), ZrString(bookName).kwszPtr());
        QCOMPARE(ZrColorLineEdit::getColorText(color), text);
    }

    void byLayerAndByBlockButtonsAndKeys_data()
    {
        QTest::addColumn<QString>("param");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("method");
        QTest::newRow("L") << "{}" << int(Qt::Key_L) << "" << 192;
        QTest::newRow("K") << "{}" << int(Qt::Key_K) << "" << 193;
        QTest::newRow("ByLayer button") << "{}" << 0 << "btnByLayer" << 192;
        QTest::newRow("ByBlock button") << "{}" << 0 << "btnByBlock" << 193;
        // A key in the parameter object takes the single-key shortcut away, whatever its value.
        QTest::newRow("L, key true") << R"({"isByLayerEnable":true})" << int(Qt::Key_L) << "" << 195;
        QTest::newRow("ByLayer off") << R"({"isByLayerEnable":false})" << 0 << "btnByLayer" << 195;
    }

    void byLayerAndByBlockButtonsAndKeys()
    {
        QFETCH(QString, param);
        QFETCH(int, key);
        QFETCH(QString, button);
        QFETCH(int, method);
        TabWindow w(param);
        w.click(ZrPaleteWnd::kUpper, 0, 1);
        if (key)
            QTest::keyClick(w.grid(ZrPaleteWnd::kUpper), Qt::Key(key));
        else
            QTest::mouseClick(w.child<QPushButton>(button.toLatin1().constData()), Qt::LeftButton);
        QCOMPARE(int(w.newColor.colorMethod()), method);
        QCOMPARE(w.line(), method == 192 ? QStringLiteral("BYLAYER") : method == 193 ? QStringLiteral("BYBLOCK")
                                                                                    : QStringLiteral("28"));
        // The cell stays marked: the buttons leave the grids alone.
        QCOMPARE(w.grid(ZrPaleteWnd::kUpper)->selectedAci(), 28);
    }

};

ZR_TEST_SUITE(TestIndexTab)
#include "tst_indextab.moc"
