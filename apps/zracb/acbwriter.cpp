#include "acbwriter.h"

#include "uicolorbookmng.h"

#include <QRegularExpression>
#include <QSaveFile>
#include <QTextCodec>
#include <QXmlStreamWriter>

namespace zracb {

namespace {

// Longer names are not colour names; a book tab could not show them anyway.
constexpr int maxNameLength = 255;

bool readChannel(const QString& field, int& value)
{
    bool ok = false;
    value = field.toInt(&ok);
    return ok && value >= 0 && value <= 255;
}

// Characters an XML text cannot hold, and the line breaks that would split a name.
bool isWritableName(const QString& name)
{
    for (const QChar c : name) {
        if (c.category() == QChar::Other_Control || c.isSurrogate() || c == QChar(0xFFFE) || c == QChar(0xFFFF))
            return false;
    }
    return true;
}

// The name runs to the end of the line; a GIMP palette puts a tab before it, other lists blanks.
bool readColorLine(const QString& line, BookColor& color, QString& problem)
{
    static const QRegularExpression pattern(QStringLiteral("^(\\S+)\\s+(\\S+)\\s+(\\S+)\\s*(.*)$"));
    const QRegularExpressionMatch match = pattern.match(line);
    if (!match.hasMatch()) {
        problem = QStringLiteral("expected \"R G B name\"");
        return false;
    }
    if (!readChannel(match.captured(1), color.red) || !readChannel(match.captured(2), color.green)
        || !readChannel(match.captured(3), color.blue)) {
        problem = QStringLiteral("each of red, green and blue must be a whole number from 0 to 255");
        return false;
    }
    color.name = match.captured(4);
    if (color.name.isEmpty()) {
        problem = QStringLiteral("the colour has no name");
        return false;
    }
    if (color.name.size() > maxNameLength || !isWritableName(color.name)) {
        problem = QStringLiteral("the name is longer than %1 characters or holds control characters")
                      .arg(maxNameLength);
        return false;
    }
    return true;
}

QByteArray encodeByte(int value, int highSlot, int lowSlot, int baseSlot, char base)
{
    // A digit is its distance from the base letter, wrapped by 26 so that it stays a letter.
    const auto letter = [base](int digit) { return char(base + digit > 'z' ? base + digit - 26 : base + digit); };
    QByteArray text(3, base);
    text[highSlot] = letter(value >> 4);
    text[lowSlot] = letter(value & 15);
    text[baseSlot] = base;
    return text;
}

void writeChannels(QXmlStreamWriter& xml, const QString& name, const BookColor& color, bool masked)
{
    if (!masked) {
        xml.writeStartElement(QStringLiteral("RGB8"));
        xml.writeTextElement(QStringLiteral("red"), QString::number(color.red));
        xml.writeTextElement(QStringLiteral("green"), QString::number(color.green));
        xml.writeTextElement(QStringLiteral("blue"), QString::number(color.blue));
        xml.writeEndElement();
        return;
    }
    const MaskedChannels channels = maskChannels(name, color.red, color.green, color.blue);
    xml.writeStartElement(QStringLiteral("RGB8Encrypt"));
    xml.writeTextElement(QStringLiteral("redEncrypt"), QString::fromLatin1(channels.red));
    xml.writeTextElement(QStringLiteral("greenEncrypt"), QString::fromLatin1(channels.green));
    xml.writeTextElement(QStringLiteral("blueEncrypt"), QString::fromLatin1(channels.blue));
    xml.writeEndElement();
}

} // namespace

bool readPalette(const QByteArray& text, Palette& palette, QString& error)
{
    palette = Palette();
    const QList<QByteArray> lines = text.split('\n');
    QTextCodec* utf8 = QTextCodec::codecForName("UTF-8");
    for (int i = 0; i < lines.size(); ++i) {
        QTextCodec::ConverterState state;
        const QString line = utf8->toUnicode(lines[i].constData(), lines[i].size(), &state).trimmed();
        if (state.invalidChars > 0) {
            error = QStringLiteral("line %1: not UTF-8").arg(i + 1);
            return false;
        }
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1Char('!')))
            continue;
        if (i == 0 && line == QLatin1String("GIMP Palette"))
            continue;
        if (line.startsWith(QLatin1String("Name:"))) {
            palette.name = line.mid(5).trimmed();
            continue;
        }
        if (line.startsWith(QLatin1String("Columns:")))
            continue;
        BookColor color;
        QString problem;
        if (!readColorLine(line, color, problem)) {
            error = QStringLiteral("line %1: %2").arg(i + 1).arg(problem);
            return false;
        }
        palette.colors.append(color);
    }
    if (palette.colors.isEmpty()) {
        error = QStringLiteral("no colours");
        return false;
    }
    return true;
}

MaskedChannels maskChannels(const QString& colorName, int red, int green, int blue)
{
    const uint32_t key = zrutBookColorKey(ZrUtf8String(colorName));
    const int maskedRed = (red ^ int(key >> 16)) & 0xFF;
    const int maskedGreen = (green ^ int(key >> 8)) & 0xFF;
    const int maskedBlue = (blue ^ int(key)) & 0xFF;
    // Base letters that vary from colour to colour, so that equal digits do not show.
    const auto base = [](int value, int channel) { return char('a' + (value * 7 + channel * 11) % 26); };
    MaskedChannels channels;
    channels.red = encodeByte(maskedRed, 2, 0, 1, base(maskedRed, 0));
    channels.green = encodeByte(maskedGreen, 0, 1, 2, base(maskedGreen, 1));
    channels.blue = encodeByte(maskedBlue, 1, 2, 0, base(maskedBlue, 2));
    return channels;
}

QByteArray bookXml(const QVector<BookColor>& colors, const BookOptions& options)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("colorBook"));
    xml.writeTextElement(QStringLiteral("bookName"), options.bookName);
    const int pageSize = qMax(1, options.pageSize);
    for (int first = 0; first < colors.size(); first += pageSize) {
        xml.writeStartElement(QStringLiteral("colorPage"));
        // The page shows its first colour; it has no name, so a masked one takes the empty name's key.
        xml.writeStartElement(QStringLiteral("pageColor"));
        writeChannels(xml, QString(), colors[first], options.masked);
        xml.writeEndElement();
        for (int i = first; i < qMin(first + pageSize, colors.size()); ++i) {
            xml.writeStartElement(QStringLiteral("colorEntry"));
            // The name comes first: the masking of the channels is keyed on it.
            xml.writeTextElement(QStringLiteral("colorName"), colors[i].name);
            writeChannels(xml, colors[i].name, colors[i], options.masked);
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

bool saveFile(const QString& path, const QByteArray& bytes, QString& error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace zracb
