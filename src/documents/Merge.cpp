#include "documents/Merge.h"

#include "documents/Placeholders.h"
#include "documents/RtfReader.h"
#include "documents/ValueFormats.h"

#include "common/DateText.h"
#include "common/Session.h"
#include "store/Recordset.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QLocale>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextImageFormat>
#include <QUrl>

#include <tuple>

namespace pvardo::documents {

namespace {

// The largest template the merge reads; an office's letter is a few hundred
// kilobytes even with a picture in it.
constexpr qint64 largestTemplate = 64LL * 1024 * 1024;

QHash<int, PlugVarsFunction>& plugVarsRegistry()
{
    static QHash<int, PlugVarsFunction> registry;
    return registry;
}

ContactFunction& letterContact()
{
    static ContactFunction contact;
    return contact;
}

QDate today()
{
    const QDate day = session().Today;
    return day.isValid() ? day : QDate::currentDate();
}

QString pageCounterText()
{
    int& counter = printState().pageCounter;
    if (counter < 1) {
        counter = 1;
    }
    return QString::number(counter);
}

QString shortDateText()
{
    return QLocale::system().toString(today(), QLocale::ShortFormat);
}

QString timeText()
{
    return QLocale::system().toString(QTime::currentTime(), QLocale::ShortFormat);
}

// Replaces each match of `token` by the rich text of an RTF value, which keeps
// its own fonts: the main heading is a letterhead, not a line of words.
void replaceByRtf(QTextDocument& buffer, const QString& token, const QString& rtf)
{
    QTextDocument value;
    if (!rtf.trimmed().isEmpty()) {
        readRtf(rtf.toUtf8(), value);
    }
    // The document's last paragraph mark would add an empty line behind the
    // heading; the fragment ends with the text.
    QTextCursor all(&value);
    all.select(QTextCursor::Document);
    const QTextDocumentFragment fragment = value.isEmpty() ? QTextDocumentFragment() : all.selection();
    const QString plain = fragment.toPlainText();
    int from = 0;
    for (;;) {
        QTextCursor match = findPlaceholder(buffer, token, from);
        if (match.isNull() || !match.hasSelection()) {
            break;
        }
        const int start = match.selectionStart();
        match.removeSelectedText();
        if (!fragment.isEmpty()) {
            match.insertFragment(fragment);
        }
        // Behind the heading when it holds the token itself, so the pass ends.
        from = plain.contains(token, Qt::CaseInsensitive) ? match.position() : start + 1;
    }
}

// Replaces each match of `token` by a picture file. The shipped letterhead
// and letters hold the logo and the signature: while the office has chosen
// none, or the picture cannot be read, the placeholder goes without a trace.
void replaceByPicture(QTextDocument& buffer, const QString& token, const QString& path)
{
    QTextCursor match = findPlaceholder(buffer, token, 0);
    if (match.isNull()) {
        return;
    }
    const QImage image(path);
    if (image.isNull()) {
        replaceMatches(buffer, token, [](int) { return QString(); });
        return;
    }
    const QUrl name(QStringLiteral("pvardo-picture:") + QFileInfo(path).fileName());
    buffer.addResource(QTextDocument::ImageResource, name, image);
    QTextImageFormat format;
    format.setName(name.toString());
    format.setWidth(image.width());
    format.setHeight(image.height());
    int from = 0;
    for (;;) {
        match = findPlaceholder(buffer, token, from);
        if (match.isNull() || !match.hasSelection()) {
            break;
        }
        const int start = match.selectionStart();
        match.removeSelectedText();
        match.insertImage(format);
        from = start + 1;
    }
}

// What a document shows, kept to skip the searches for placeholders it does
// not hold: a long listing holds hardly any, and searching all of it for each
// of the print-time words would cost more than printing it. Read again after
// any replacement, since a value may bring a placeholder of its own.
class PlaceholderScan
{
public:
    explicit PlaceholderScan(QTextDocument& document)
        : m_document(document)
    {
    }

    bool holds(const QString& token)
    {
        if (m_stale) {
            readMarks();
        }
        return m_marks.contains(token.toCaseFolded());
    }
    void token(const QString& token, const QString& value, int mode = 1)
    {
        if (holds(token)) {
            m_stale = ReplaceToken(m_document, token, value, mode) > 0 || m_stale;
        }
    }
    void literal(const QString& token, const QString& value)
    {
        if (holds(token)) {
            m_stale = ReplaceLiteral(m_document, token, value) > 0 || m_stale;
        }
    }
    template <typename Replace> void other(const QString& token, Replace replace)
    {
        if (holds(token)) {
            replace();
            m_stale = true;
        }
    }

private:
    // Every placeholder begins with "%" or "#": the text behind each of
    // those, folded, one piece a line, is all a search needs to look at.
    void readMarks()
    {
        constexpr qsizetype longest = 40; // longer than any placeholder
        const QString text = m_document.toPlainText();
        m_marks.clear();
        qsizetype percent = text.indexOf(QLatin1Char('%'));
        qsizetype hash = text.indexOf(QLatin1Char('#'));
        while (percent >= 0 || hash >= 0) {
            const qsizetype at = percent < 0 ? hash : hash < 0 ? percent : std::min(percent, hash);
            m_marks += QStringView(text).mid(at, longest).toString().toCaseFolded();
            m_marks += QLatin1Char('\n');
            if (at == percent) {
                percent = text.indexOf(QLatin1Char('%'), at + 1);
            }
            if (at == hash) {
                hash = text.indexOf(QLatin1Char('#'), at + 1);
            }
        }
        m_stale = false;
    }

    QTextDocument& m_document;
    QString m_marks;
    bool m_stale = true;
};

QString twoDigits(int i)
{
    return QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0'));
}

QString formsPath(const QString& fileName)
{
    QString relative = QDir::fromNativeSeparators(QString(fileName).replace(QLatin1Char('\\'), QLatin1Char('/')));
    while (relative.startsWith(QLatin1Char('/'))) {
        relative.remove(0, 1);
    }
    return QDir::cleanPath(session().FormsFolder + QLatin1Char('/') + relative);
}

} // namespace

Addressee SplitAddress(const QString& name, const QString& address)
{
    Addressee addressee;
    addressee.name = name.trimmed();
    // The city, state and ZIP are the last part of an address: a street line
    // may hold commas of its own ("12 Main St, Apt 3"), and the city may
    // stand before a comma of its own ("Delmar, NY 12054").
    qsizetype comma = address.lastIndexOf(QLatin1Char(','));
    static const QRegularExpression stateAndZip(
        QStringLiteral("^([A-Za-z]{2}\\.?(\\s+\\d{5}(-\\d{4})?)?|\\d{5}(-\\d{4})?)$"));
    if (comma > 0 && stateAndZip.match(address.mid(comma + 1).trimmed()).hasMatch()) {
        const qsizetype before = address.lastIndexOf(QLatin1Char(','), comma - 1);
        if (before >= 0) {
            comma = before;
        }
    }
    if (comma >= 0) {
        addressee.street = address.left(comma).trimmed();
        addressee.city = address.mid(comma + 1).trimmed();
    } else if (!address.trimmed().isEmpty()) {
        addressee.street = address;
    }
    return addressee;
}

QList<ColumnValue> columnValuesOf(const store::Recordset& row, std::span<const store::ColumnDef> places,
                                  int lastPlace)
{
    QList<ColumnValue> values;
    const size_t count = lastPlace < 0 ? places.size() : std::min(places.size(), size_t(lastPlace));
    values.reserve(qsizetype(count));
    for (size_t i = 0; i < count; ++i) {
        const store::ColumnDef& place = places[i];
        const QString name = QString::fromLatin1(place.name);
        const int index = row.fieldIndex(name);
        if (index < 0) {
            continue; // the record has no such column: its placeholders stay as written
        }
        QString text = row.text(name);
        const store::FieldKind kind = row.fieldKind(index);
        if (kind == store::FieldKind::Date || kind == store::FieldKind::DateTime) {
            text = FixDateText(text.section(QLatin1Char(' '), 0, 0));
        }
        values.append({name, text});
    }
    return values;
}

void plugColumns(QTextDocument& buffer, const QList<ColumnValue>& columns, bool clockForm)
{
    const QString forms = clockForm ? QStringLiteral("$@&~") : QStringLiteral("$@&");
    PlaceholderScan scan(buffer);
    for (const ColumnValue& column : columns) {
        scan.token(QLatin1Char('%') + column.name, column.value);
        for (const QChar form : forms) {
            scan.token(QString(QLatin1Char('%')) + form + column.name, column.value);
        }
    }
}

void plugFixedWords(QTextDocument& buffer, int screenCode, const FixedWords& words)
{
    const bool addressed = screenCode == ScreenCodes::Case || screenCode == ScreenCodes::Fees
                           || screenCode == ScreenCodes::Bonds;
    const PrintState& state = printState();
    PlaceholderScan scan(buffer);
    scan.token(QStringLiteral("##"), pageCounterText());
    scan.token(QStringLiteral("%dl"), formatLongDate(today()));
    scan.token(QStringLiteral("%ds"), shortDateText());
    scan.token(QStringLiteral("%tm"), timeText());
    scan.other(QStringLiteral("%mh"), [&] { replaceByRtf(buffer, QStringLiteral("%mh"), session().ReportHeaderRtf); });
    scan.token(QStringLiteral("%sh"), state.reportHeading);
    if (addressed) {
        scan.token(QStringLiteral("%nm"), state.addressee.name);
        scan.token(QStringLiteral("%ad"), state.addressee.street);
        scan.token(QStringLiteral("%zp"), state.addressee.city);
    }
    if (screenCode != ScreenCodes::Dashboard) {
        scan.token(QStringLiteral("%proj"), words.caseNumber);
    }
    if (screenCode == ScreenCodes::Case) {
        scan.token(QStringLiteral("%stat"), words.statusWord);
    }
    if (addressed) {
        scan.token(QStringLiteral("%sbl"), words.sbl);
    }
    if (screenCode == ScreenCodes::Dashboard) {
        scan.token(QStringLiteral("%mm"), words.monthName);
        scan.token(QStringLiteral("%yy"), words.year);
    }
}

namespace {

// The pictures of a letter: the record's, the signature and the logo, or
// nothing where none is chosen.
void scanPictureTokens(PlaceholderScan& scan, QTextDocument& buffer)
{
    const Session& s = session();
    scan.other(QStringLiteral("%pi"), [&] { replaceByPicture(buffer, QStringLiteral("%pi"), s.DatabaseFolder + QStringLiteral("/pics/MP")); });
    scan.other(QStringLiteral("%si"), [&] { replaceByPicture(buffer, QStringLiteral("%si"), s.MasterDatabaseFolder + QStringLiteral("/memos/sig.bmp")); });
    scan.other(QStringLiteral("%lo"), [&] { replaceByPicture(buffer, QStringLiteral("%lo"), s.MasterDatabaseFolder + QStringLiteral("/memos/logo.bmp")); });
}

} // namespace

void ExpandPictureTokens(QTextDocument& buffer)
{
    PlaceholderScan scan(buffer);
    scanPictureTokens(scan, buffer);
}

void ExpandPrintTokens(QTextDocument& buffer)
{
    const PrintState& state = printState();
    PlaceholderScan scan(buffer);
    scan.literal(QStringLiteral("##"), pageCounterText());
    scan.literal(QStringLiteral("%dl"), formatLongDate(today()));
    scan.literal(QStringLiteral("%ds"), shortDateText());
    scan.literal(QStringLiteral("%tm"), timeText());
    // Words of a label sheet that no screen fills any more.
    for (const char* word : {"%ln", "%mi", "%id", "%ms", "%me"}) {
        scan.literal(QString::fromLatin1(word), QString());
    }
    scan.other(QStringLiteral("%mh"), [&] { replaceByRtf(buffer, QStringLiteral("%mh"), session().ReportHeaderRtf); });
    scan.token(QStringLiteral("%nm"), state.addressee.name);
    scan.token(QStringLiteral("%ad"), state.addressee.street);
    scan.token(QStringLiteral("%zp"), state.addressee.city);
    scanPictureTokens(scan, buffer);
    for (int i = 1; i <= 25; ++i) {
        const QString& slot = state.receiptSlots[size_t(i)];
        scan.literal(QLatin1Char('%') + twoDigits(i), slot);
        scan.token(QStringLiteral("%$") + twoDigits(i), slot);
    }
}

void registerPlugVars(int screenCode, PlugVarsFunction plugVars)
{
    plugVarsRegistry().insert(screenCode, std::move(plugVars));
}

void unregisterPlugVars(int screenCode)
{
    plugVarsRegistry().remove(screenCode);
}

void runPlugVars(int screenCode, QTextDocument& buffer)
{
    const QHash<int, PlugVarsFunction>& registry = plugVarsRegistry();
    if (screenCode != ScreenCodes::Case) {
        const auto own = registry.constFind(screenCode);
        if (own != registry.constEnd() && *own) {
            (*own)(buffer);
        }
    }
    const auto caseScreen = registry.constFind(ScreenCodes::Case);
    if (caseScreen != registry.constEnd() && *caseScreen) {
        (*caseScreen)(buffer);
    }
}

void registerLetterContact(ContactFunction contact)
{
    letterContact() = std::move(contact);
}

void unregisterLetterContact()
{
    letterContact() = nullptr;
}

QString formFileMessage(const QString& path, int screenCode)
{
    return QStringLiteral("The form file ") + QDir::toNativeSeparators(path) + QStringLiteral(" cannot be located\n")
           + QStringLiteral(" or not an RTF file. Please check your form definition file ")
           + QString::number(screenCode) + QStringLiteral("custom.txt\nto ensure there are no typos.");
}

FormLoad loadFormFile(QTextDocument& buffer, const QString& path, int screenCode)
{
    FormLoad load;
    load.path = path;
    QFile file(path);
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > largestTemplate || !file.open(QIODevice::ReadOnly)) {
        load.message = formFileMessage(path, screenCode);
        return load;
    }
    // The buffer is emptied whatever the file holds, as for every report.
    if (readRtf(file.readAll(), buffer).notRtf) {
        load.message = formFileMessage(path, screenCode);
        return load;
    }
    load.ok = true;
    return load;
}

namespace {

// What a line of a template says without its placeholders.
class LineWithPlaceholders : public QTextBlockUserData
{
public:
    explicit LineWithPlaceholders(QString withoutPlaceholders)
        : words(std::move(withoutPlaceholders))
    {
    }
    QString words;
};

const QRegularExpression& placeholderPattern()
{
    static const QRegularExpression pattern(QStringLiteral("%[$@&~]?[A-Za-z][A-Za-z0-9]*|##"));
    return pattern;
}

void markLinesWithPlaceholders(QTextDocument& buffer)
{
    for (QTextBlock block = buffer.begin(); block.isValid(); block = block.next()) {
        const QString text = block.text();
        if (!text.contains(placeholderPattern())) {
            continue;
        }
        block.setUserData(new LineWithPlaceholders(QString(text).remove(placeholderPattern()).simplified()));
    }
}

void dropLinesLeftEmpty(QTextDocument& buffer)
{
    QTextBlock block = buffer.begin();
    while (block.isValid()) {
        const QTextBlock next = block.next();
        const auto* mark = dynamic_cast<const LineWithPlaceholders*>(block.userData());
        if (mark && block.text().simplified() == mark->words && next.isValid()) {
            QTextCursor line(block);
            line.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
            line.removeSelectedText();
        } else if (mark && block.text().simplified() == mark->words) {
            // The last line: its text goes, the document's end stays.
            QTextCursor line(block);
            line.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            line.removeSelectedText();
        }
        block = next;
    }
}

} // namespace

bool namesAddressee(const QTextDocument& buffer)
{
    for (const char* token : {"%nm", "%ad", "%zp"}) {
        if (!buffer.find(QString::fromLatin1(token)).isNull()) {
            return true;
        }
    }
    return false;
}

QString noAddresseeMessage(const QString& caseNumber, const QString& party)
{
    const QString which = caseNumber.trimmed().isEmpty() ? QStringLiteral("this case")
                                                          : QStringLiteral("case ") + caseNumber.trimmed();
    return QStringLiteral("This letter is addressed to the %1 of the case, and %2 has no %1 name.\n"
                          "Fill in the %1 of the case, then print the letter again.")
        .arg(party, which);
}

FormLoad mergeTemplate(QTextDocument& buffer, const QString& path, int screenCode, const Addressee& addressee,
                       const QString& party, EmptyLines lines)
{
    FormLoad load = loadFormFile(buffer, path, screenCode);
    if (!load.ok) {
        return load;
    }
    // "Dear :" on a letter with no address would go out unseen: the letter is
    // not made.
    if (!party.isEmpty() && addressee.name.trimmed().isEmpty() && namesAddressee(buffer)) {
        buffer.clear();
        load.ok = false;
        load.noAddressee = true;
        load.message = noAddresseeMessage(session().CurrentCase, party);
        return load;
    }
    if (lines == EmptyLines::DropEmpty) {
        markLinesWithPlaceholders(buffer);
    }
    printState().addressee = addressee;
    runPlugVars(screenCode, buffer);
    printState().reportHeading.clear();
    if (lines == EmptyLines::DropEmpty) {
        dropLinesLeftEmpty(buffer);
    }
    return load;
}

FormLoad mergeFormFile(QTextDocument& buffer, const QString& fileName, int screenCode)
{
    QString name;
    QString address;
    if (letterContact()) {
        std::tie(name, address) = letterContact()();
    }
    return mergeTemplate(buffer, formsPath(fileName), screenCode, SplitAddress(name, address),
                         QStringLiteral("contact"));
}

QByteArray defaultLabelRtf()
{
    return QByteArrayLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\\f0\\fs20 %nm\\par %ad\\par "
                             "%zp\\par\\par}");
}

MemoForm DoMemoForm(QTextDocument& buffer, const QString& templateName, const QString& programFolder)
{
    MemoForm memo;
    if (templateName == QLatin1String("roster")) {
        memo.kind = MemoForm::Kind::Roster;
        return memo;
    }
    if (templateName.isEmpty()) {
        return memo;
    }
    const bool label = templateName.left(3).toUpper() == QLatin1String("LAB");
    memo.path = QDir::cleanPath(programFolder + (label ? QStringLiteral("/labels/") : QStringLiteral("/forms/"))
                                + templateName);
    buffer.clear();
    QFile file(memo.path);
    if (QFileInfo(memo.path).isFile() && file.open(QIODevice::ReadOnly) && !readRtf(file.readAll(), buffer).notRtf) {
        memo.kind = MemoForm::Kind::Loaded;
        return memo;
    }
    if (templateName == QLatin1String("lab.rtf")) {
        readRtf(defaultLabelRtf(), buffer);
        memo.kind = MemoForm::Kind::DefaultLabel;
        return memo;
    }
    memo.kind = MemoForm::Kind::Missing;
    memo.message = QStringLiteral("Unable to locate ") + QDir::toNativeSeparators(memo.path)
                   + QStringLiteral(". Unable to print.");
    return memo;
}

} // namespace pvardo::documents
