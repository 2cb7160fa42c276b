#include "documents/FormDefinitions.h"

#include "common/TextFiles.h"

#include <QFile>
#include <QFileInfo>

namespace pvardo::documents {

namespace {

int leadingNumber(const QString& text)
{
    int value = 0;
    for (const QChar c : text) {
        if (!c.isDigit() || value > 100000) {
            break;
        }
        value = value * 10 + c.digitValue();
    }
    return value;
}

} // namespace

FormDefinitions readFormDefinitions(const QString& path, int limit)
{
    FormDefinitions definitions;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return definitions;
    }
    definitions.found = true;
    // A definition file is a few lines; a huge one is no definition file.
    const QString text = decodeText(file.read(1024 * 1024));
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        line = line.trimmed();
    }
    // The line end of the last line opens no entry.
    while (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    if (lines.isEmpty()) {
        return definitions;
    }
    const int count = std::min(leadingNumber(lines.first()), limit);
    for (int i = 0; i < count; ++i) {
        const qsizetype caption = 1 + 2 * qsizetype(i);
        if (caption >= lines.size()) {
            break;
        }
        definitions.entries.append({lines.at(caption), caption + 1 < lines.size() ? lines.at(caption + 1) : QString()});
    }
    return definitions;
}

QString customFileName(int screenCode)
{
    return QString::number(screenCode) + QStringLiteral("custom.txt");
}

QStringList makeReportList(const QStringList& builtIn, const QList<FormEntry>& custom)
{
    QStringList list = builtIn.mid(0, ReportListLimit);
    for (const FormEntry& entry : custom) {
        if (list.size() >= ReportListLimit) {
            break;
        }
        list.append(entry.caption);
    }
    return list;
}

QString customFormFor(const QList<FormEntry>& custom, const QString& reportChoice)
{
    QString found;
    for (const FormEntry& entry : custom) {
        if (entry.caption.toUpper() == reportChoice) {
            found = entry.fileName;
        }
    }
    return found;
}

} // namespace pvardo::documents
