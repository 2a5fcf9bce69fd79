#pragma once
// What zracb reads and writes: palette text in, colour book text out.

#include <QByteArray>
#include <QString>
#include <QVector>

namespace zracb {

struct BookColor
{
    QString name;
    int red = 0;
    int green = 0;
    int blue = 0;
};

struct Palette
{
    // The "Name:" of a GIMP palette; empty for plain lines.
    QString name;
    QVector<BookColor> colors;
};

// Reads a GIMP palette or lines of "R G B name" ('#' and '!' start comments). False with `error`
// naming the first bad line.
bool readPalette(const QByteArray& text, Palette& palette, QString& error);

// The three masked channel texts a book stores for a colour of that name: red, green, blue.
struct MaskedChannels
{
    QByteArray red;
    QByteArray green;
    QByteArray blue;
};
MaskedChannels maskChannels(const QString& colorName, int red, int green, int blue);

struct BookOptions
{
    QString bookName;
    int pageSize = 8;
    bool masked = false;
};
QByteArray bookXml(const QVector<BookColor>& colors, const BookOptions& options);

// Writes the whole file or leaves the old one as it was; false with the reason, the file named.
bool saveFile(const QString& path, const QByteArray& bytes, QString& error);

} // namespace zracb
