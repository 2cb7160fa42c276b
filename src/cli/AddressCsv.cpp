#include "cli/AddressCsv.h"

#include <QStringDecoder>
#include <csv.h>

namespace pvardo::cli {

namespace {

// A record ends at a line feed alone; the carriage return of a CRLF line is
// trimmed like a blank.
int isLineFeed(unsigned char c)
{
    return c == CSV_LF ? 1 : 0;
}

int isBlank(unsigned char c)
{
    return c == CSV_SPACE || c == CSV_TAB || c == CSV_CR ? 1 : 0;
}

struct Reader
{
    int line = 1; // the line the parser has reached
    int rowStart = 1; // the line the current record began on
    QList<QByteArray> fields;
    QList<QList<QByteArray>> records;
    QList<int> starts;
};

void onField(void* data, size_t length, void* context)
{
    auto* reader = static_cast<Reader*>(context);
    const QByteArray field(static_cast<const char*>(data), qsizetype(length));
    if (reader->fields.isEmpty()) {
        reader->rowStart = reader->line;
    }
    reader->line += int(field.count('\n'));
    reader->fields.append(field);
}

void onRecordEnd(int terminator, void* context)
{
    auto* reader = static_cast<Reader*>(context);
    if (!reader->fields.isEmpty()) {
        reader->records.append(reader->fields);
        reader->starts.append(reader->rowStart);
        reader->fields.clear();
    }
    if (terminator == CSV_LF) {
        ++reader->line;
    }
}

// A heading as the list is matched against: lower case, with blanks,
// underscores, commas, slashes and dashes alike.
QString headingKey(const QString& heading)
{
    QString key = heading.toLower();
    for (QChar& c : key) {
        if (c == QLatin1Char('_') || c == QLatin1Char(',') || c == QLatin1Char('/') || c == QLatin1Char('-')) {
            c = QLatin1Char(' ');
        }
    }
    return key.simplified();
}

bool decode(const QByteArray& bytes, QString& text)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    text = utf8.decode(bytes);
    return !utf8.hasError();
}

} // namespace

AddressList readAddressCsv(const QByteArray& input)
{
    AddressList list;
    QByteArray bytes = input;
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        bytes.remove(0, 3);
    }

    Reader reader;
    csv_parser parser;
    if (csv_init(&parser, CSV_REPALL_NL) != 0) {
        list.error = QStringLiteral("the CSV reader could not start");
        return list;
    }
    csv_set_term_func(&parser, isLineFeed);
    csv_set_space_func(&parser, isBlank);
    const size_t parsed
        = csv_parse(&parser, bytes.constData(), size_t(bytes.size()), onField, onRecordEnd, &reader);
    if (parsed != size_t(bytes.size())) {
        list.error = QString::fromUtf8(csv_strerror(csv_error(&parser)));
        csv_free(&parser);
        return list;
    }
    csv_fini(&parser, onField, onRecordEnd, &reader);
    csv_free(&parser);

    if (reader.records.isEmpty()) {
        list.error = QStringLiteral("the list is empty; it needs a header line and a line per addressee");
        return list;
    }
    QStringList header;
    for (const QByteArray& field : reader.records.first()) {
        QString text;
        decode(field, text);
        header.append(headingKey(text));
    }
    qsizetype nameColumn = header.indexOf(QStringLiteral("name"));
    qsizetype addressColumn = header.indexOf(QStringLiteral("address"));
    if (nameColumn < 0 && addressColumn < 0) {
        nameColumn = 0;
        addressColumn = 1;
    }
    if (nameColumn < 0 || addressColumn < 0 || header.size() < 2) {
        list.error = QStringLiteral("the header line needs a \"name\" and an \"address\" column");
        return list;
    }
    // The columns of the city line, in the order the line reads.
    QList<qsizetype> cityColumns;
    const QStringList combined{QStringLiteral("city state zip"), QStringLiteral("city state zip code"),
        QStringLiteral("csz")};
    for (const QString& heading : combined) {
        if (header.contains(heading)) {
            cityColumns = {header.indexOf(heading)};
            break;
        }
    }
    if (cityColumns.isEmpty()) {
        const QList<QStringList> parts{{QStringLiteral("city"), QStringLiteral("town")},
            {QStringLiteral("state")}, {QStringLiteral("zip"), QStringLiteral("zip code"), QStringLiteral("zipcode")}};
        for (const QStringList& names : parts) {
            for (const QString& heading : names) {
                if (header.contains(heading)) {
                    cityColumns.append(header.indexOf(heading));
                    break;
                }
            }
        }
    }
    list.cityColumns = !cityColumns.isEmpty();

    for (qsizetype i = 1; i < reader.records.size(); ++i) {
        const QList<QByteArray>& record = reader.records.at(i);
        const int line = reader.starts.at(i);
        if (record.size() == 1 && record.first().trimmed().isEmpty()) {
            continue; // a line of blanks
        }
        if (record.size() != header.size()) {
            list.problems.append({line,
                QStringLiteral("has %1 fields where the header has %2")
                    .arg(record.size())
                    .arg(header.size())});
            continue;
        }
        AddressRow row;
        row.line = line;
        bool utf8 = decode(record.at(nameColumn), row.name) && decode(record.at(addressColumn), row.address);
        QStringList cityParts;
        for (qsizetype column : std::as_const(cityColumns)) {
            QString part;
            utf8 = decode(record.at(column), part) && utf8;
            if (!part.trimmed().isEmpty()) {
                cityParts.append(part.simplified());
            }
        }
        if (!utf8) {
            list.problems.append({line, QStringLiteral("is not UTF-8 text")});
            continue;
        }
        row.cityLine = cityParts.join(QLatin1Char(' '));
        if (row.name.trimmed().isEmpty() && row.address.trimmed().isEmpty() && row.cityLine.isEmpty()) {
            list.problems.append({line, QStringLiteral("has neither a name nor an address")});
            continue;
        }
        list.rows.append(row);
    }
    return list;
}

} // namespace pvardo::cli
