#include "documents/Listing.h"

#include "documents/RtfReader.h"

#include "common/DateText.h"
#include "store/Recordset.h"

#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace pvardo::documents {

namespace {

// Lines are handed to the document in batches: one insertion per line would
// make a long listing cost far more than its text.
constexpr int linesPerBatch = 2048;

QString columnText(const store::Recordset& row, const ListingColumn& column)
{
    const int index = row.fieldIndex(column.name);
    if (index < 0) {
        return PadColumn(QString(), column.width);
    }
    const QVariant value = row.value(index);
    if (column.money) {
        if (value.isNull() || value.toString().trimmed().isEmpty()) {
            return QStringLiteral("--").rightJustified(column.width, QLatin1Char(' '), true);
        }
        bool ok = false;
        const double amount = value.toDouble(&ok);
        return PadColumn(ok ? MoneyText(amount, column.width) : value.toString(), column.width);
    }
    QString text;
    switch (row.fieldKind(index)) {
    case store::FieldKind::Date:
    case store::FieldKind::DateTime:
        text = FixDateText(row.text(column.name).section(QLatin1Char(' '), 0, 0));
        break;
    case store::FieldKind::Time:
        text = TimeText(value);
        break;
    default:
        text = row.text(column.name);
        break;
    }
    // A line break inside a value would break the row in two.
    text.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    return PadColumn(text, column.width);
}

} // namespace

Listing::Listing(QTextDocument& report, double fontSize)
    : m_report(report)
{
    m_report.clear();
    QFont font(listingFontFamily());
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    font.setPointSizeF(fontSize > 0 ? fontSize : 10);
    m_report.setDefaultFont(font);
    m_format.setFont(font);
    m_format.setProperty(listingMarkProperty, true);
}

void Listing::append(const QString& text)
{
    if (text.isEmpty()) {
        return;
    }
    QTextCursor end(&m_report);
    end.movePosition(QTextCursor::End);
    end.insertText(text, m_format);
}

bool Listing::appendHeadFile(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    QTextDocument head;
    if (readRtf(file.readAll(), head).notRtf) {
        return false;
    }
    append(head.toPlainText() + QLatin1Char('\n'));
    return true;
}

QString Listing::rowText(const store::Recordset& row, const QList<ListingColumn>& columns)
{
    QString line;
    for (const ListingColumn& column : columns) {
        line += columnText(row, column);
    }
    return line;
}

int Listing::appendRows(store::Recordset& rows, const QList<ListingColumn>& columns,
                        const std::function<bool(const store::Recordset&)>& keep,
                        const std::function<void(int)>& progress)
{
    int written = 0;
    if (rows.RecordCount() <= 0) {
        return 0;
    }
    rows.MoveFirst();
    QString batch;
    int inBatch = 0;
    int read = 0;
    while (!rows.Eof()) {
        if (!keep || keep(rows)) {
            batch += rowText(rows, columns);
            batch += QLatin1Char('\n');
            ++written;
            if (++inBatch == linesPerBatch) {
                append(batch);
                batch.clear();
                inBatch = 0;
            }
        }
        if (progress) {
            progress(++read);
        }
        if (!rows.MoveNext().ok()) {
            break;
        }
    }
    append(batch);
    return written;
}

bool isListing(const QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            if (fragment.fragment().isValid() && fragment.fragment().length() > 0) {
                return fragment.fragment().charFormat().boolProperty(listingMarkProperty);
            }
        }
    }
    return false;
}

int widestLine(const QTextDocument& document)
{
    int widest = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QString text = block.text();
        // A line break inside a paragraph (U+2028) starts a line as well.
        for (const QStringView line : QStringView(text).split(QChar::LineSeparator)) {
            widest = std::max(widest, int(line.size()));
        }
    }
    return widest;
}

ListingPaper fitListing(int characters, double fontSize, double characterWidth, double portraitWidth,
                        double landscapeWidth)
{
    ListingPaper paper;
    paper.fontSize = fontSize > 0 ? fontSize : 10;
    if (characters <= 0 || characterWidth <= 0) {
        return paper;
    }
    // A hair of room for the layout's rounding, then tenths of a point.
    auto largestThatFits = [&](double width) {
        return std::floor(width * 0.99 / (characters * characterWidth) * 10) / 10;
    };
    const double portrait = std::min(paper.fontSize, largestThatFits(portraitWidth));
    if (portrait >= std::min(paper.fontSize, smallestPortraitListingSize)) {
        paper.fontSize = portrait;
        return paper;
    }
    paper.landscape = true;
    paper.fontSize = std::max(0.1, std::min(paper.fontSize, largestThatFits(landscapeWidth)));
    return paper;
}

} // namespace pvardo::documents
