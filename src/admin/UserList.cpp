#include "admin/UserList.h"

#include "admin/ScrambleText.h"
#include "common/NumberText.h"
#include "common/TextFiles.h"

#include <QFile>

namespace pvardo::admin {

namespace {

// The fields are stored with no quoting of their own: a scrambled text that
// holds a comma or a line end would break its line.
bool fitsTheFile(const QString& field, const QString& scrambled, bool endsTheLine, QString* why)
{
    for (const QChar c : field) {
        if (c.unicode() > 0xFF) {
            *why = QStringLiteral("holds the character \"") + c
                + QStringLiteral("\", which the user file cannot keep");
            return false;
        }
    }
    // A carriage return inside a line is kept; only at the end of a line would
    // it read as part of a Windows line end.
    const bool carriageReturnAtEnd = endsTheLine && scrambled.endsWith(QLatin1Char('\r'));
    for (const QChar c : scrambled) {
        if (c == QLatin1Char(',') || c == QLatin1Char('\n') || carriageReturnAtEnd) {
            *why = QStringLiteral(
                "cannot be kept in the user file in this spelling (its scrambled form holds a "
                "separator); change one of its letters");
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<UserList> UserList::read(const QString& path, QString* error, QStringList* problems)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = path + QStringLiteral(": ") + file.errorString();
        }
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    QList<QByteArray> lines = bytes.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    for (QByteArray& line : lines) {
        if (line.endsWith('\r')) {
            line.chop(1);
        }
    }
    if (lines.isEmpty() || QString::fromLatin1(lines.first()).trimmed().isEmpty()) {
        if (error) {
            *error = path + QStringLiteral(": the first line does not hold the number of users");
        }
        return std::nullopt;
    }
    UserList list;
    for (qsizetype i = 1; i < lines.size() && list.entries.size() < capacity; ++i) {
        const QString line = QString::fromLatin1(lines.at(i));
        if (line.isEmpty()) {
            continue;
        }
        const QStringList fields = line.split(QLatin1Char(','));
        if (fields.size() != 3) {
            if (problems) {
                problems->append(QStringLiteral("line ") + QString::number(i + 1)
                    + QStringLiteral(" does not hold a name, a password and a level"));
            }
            continue;
        }
        list.entries.append(
            UserEntry{ScrambleText(fields.at(0)), ScrambleText(fields.at(1)), ScrambleText(fields.at(2))});
    }
    return list;
}

QByteArray UserList::toBytes(QString* error) const
{
    if (entries.size() > capacity) {
        if (error) {
            *error = QStringLiteral("The user list holds at most ") + QString::number(capacity)
                + QStringLiteral(" users.");
        }
        return {};
    }
    QByteArray bytes = QByteArray::number(entries.size()) + '\n';
    for (const UserEntry& entry : entries) {
        const QString fields[] = {entry.name, entry.password, entry.level};
        const char* what[] = {"name", "password", "level"};
        QStringList scrambled;
        for (int f = 0; f < 3; ++f) {
            const QString stored = ScrambleText(fields[f]);
            QString why;
            if (!fitsTheFile(fields[f], stored, f == 2, &why)) {
                if (error) {
                    *error = QStringLiteral("The ") + QLatin1String(what[f]) + QStringLiteral(" of user ")
                        + entry.name + QLatin1Char(' ') + why + QLatin1Char('.');
                }
                return {};
            }
            scrambled.append(stored);
        }
        bytes += scrambled.join(QLatin1Char(',')).toLatin1() + '\n';
    }
    return bytes;
}

bool UserList::write(const QString& path, QString* error) const
{
    QString why;
    const QByteArray bytes = toBytes(&why);
    if (bytes.isEmpty()) {
        if (error) {
            *error = why;
        }
        return false;
    }
    return replaceFile(path, bytes, error);
}

int UserList::indexOf(const QString& name) const
{
    const QString wanted = name.toUpper();
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (entries.at(i).name.toUpper() == wanted) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

} // namespace pvardo::admin
