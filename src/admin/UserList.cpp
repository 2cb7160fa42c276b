#include "admin/UserList.h"

#include "admin/PasswordHash.h"
#include "admin/ScrambleText.h"
#include "common/TextFiles.h"

#include <QFile>
#include <QUrl>
#include <algorithm>

namespace pvardo::admin {

QStringList UserLevels::offered()
{
    return {admin(), member(), user()};
}

bool UserLevels::isKnown(const QString& level)
{
    return level == admin() || level == member() || level == user() || level == supervisor();
}

bool UserEntry::accepts(const QString& typed) const
{
    if (!password.isEmpty()) {
        return password.toUpper() == typed.toUpper();
    }
    return passwordMatches(passwordHash, typed.toUpper());
}

namespace {

QString lineName(qsizetype index)
{
    return QStringLiteral("line ") + QString::number(index + 1);
}

// One user line of either form, or nullopt with the reason it is left out.
std::optional<UserEntry> readEntry(const QByteArray& line, bool legacy, QString* why)
{
    const QList<QByteArray> fields = line.split(legacy ? ',' : '\t');
    if (fields.size() != 3) {
        *why = QStringLiteral("does not hold a name, a password and a level");
        return std::nullopt;
    }
    UserEntry entry;
    if (legacy) {
        entry.name = ScrambleText(QString::fromLatin1(fields.at(0)));
        entry.password = ScrambleText(QString::fromLatin1(fields.at(1)));
        entry.level = ScrambleText(QString::fromLatin1(fields.at(2)));
    } else {
        entry.name = QString::fromUtf8(QByteArray::fromPercentEncoding(fields.at(0)));
        entry.passwordHash = QString::fromLatin1(fields.at(1));
        entry.level = QString::fromLatin1(fields.at(2));
    }
    if (entry.name.trimmed().isEmpty()) {
        *why = QStringLiteral("holds no user name");
        return std::nullopt;
    }
    return entry;
}

} // namespace

std::optional<UserList> UserList::read(
    const QString& path, QString* error, QStringList* problems, QStringList* notes)
{
    QStringList ignoredProblems;
    QStringList ignoredNotes;
    if (!problems) {
        problems = &ignoredProblems;
    }
    if (!notes) {
        notes = &ignoredNotes;
    }
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
    const bool legacy = lines.isEmpty() || lines.first() != formatLine();
    const qsizetype countLine = legacy ? 0 : 1;
    bool isNumber = false;
    const int count = countLine < lines.size() ? lines.at(countLine).trimmed().toInt(&isNumber) : 0;
    if (!isNumber || count < 0) {
        if (error) {
            *error = path + QStringLiteral(": the ")
                + (legacy ? QStringLiteral("first") : QStringLiteral("second"))
                + QStringLiteral(" line does not hold the number of users");
        }
        return std::nullopt;
    }
    const int wanted = std::min(count, capacity);
    UserList list;
    for (qsizetype i = countLine + 1; i < lines.size(); ++i) {
        const QByteArray& line = lines.at(i);
        if (line.isEmpty()) {
            continue;
        }
        if (list.entries.size() >= wanted) {
            problems->append(lineName(i) + QStringLiteral(" is past the ") + QString::number(count)
                + QStringLiteral(" users the file counts"));
            continue;
        }
        QString why;
        std::optional<UserEntry> entry = readEntry(line, legacy, &why);
        if (!entry) {
            problems->append(lineName(i) + QLatin1Char(' ') + why);
            continue;
        }
        if (!UserLevels::isKnown(entry->level)) {
            notes->append(lineName(i) + QStringLiteral(": the level \"") + entry->level
                + QStringLiteral("\" of ") + entry->name
                + QStringLiteral(" is not one the program knows; the user has the rights of USER"));
            entry->level = UserLevels::user();
        }
        if (!entry->passwordHash.isEmpty() && !looksLikePasswordHash(entry->passwordHash)) {
            notes->append(lineName(i) + QStringLiteral(": the password of ") + entry->name
                + QStringLiteral(" is damaged; the user cannot log on until a new one is set"));
            entry->passwordHash.clear();
        } else if (!entry->hasPassword()) {
            notes->append(lineName(i) + QStringLiteral(": ") + entry->name
                + QStringLiteral(" has no password and cannot log on until one is set"));
        }
        list.entries.append(*entry);
    }
    if (list.entries.size() < wanted) {
        notes->append(QStringLiteral("the file counts ") + QString::number(count)
            + QStringLiteral(" users but holds ") + QString::number(list.entries.size()));
    }
    return list;
}

QByteArray UserList::toBytes(QString* error) const
{
    const auto fail = [error](const QString& why) {
        if (error) {
            *error = why;
        }
        return QByteArray();
    };
    if (entries.size() > capacity) {
        return fail(QStringLiteral("The user list holds at most ") + QString::number(capacity)
            + QStringLiteral(" users."));
    }
    QByteArray bytes = formatLine() + '\n' + QByteArray::number(entries.size()) + '\n';
    for (const UserEntry& entry : entries) {
        if (entry.name.trimmed().isEmpty()) {
            return fail(QStringLiteral("A user without a name cannot be kept in the list."));
        }
        QString hash = entry.passwordHash;
        if (!entry.password.isEmpty()) {
            hash = hashPassword(entry.password.toUpper());
            if (hash.isEmpty()) {
                return fail(QStringLiteral("The password of ") + entry.name
                    + QStringLiteral(" could not be made secret (the computer is short of memory)."));
            }
        }
        const QString level = UserLevels::isKnown(entry.level) ? entry.level : UserLevels::user();
        bytes += QUrl::toPercentEncoding(entry.name) + '\t' + hash.toLatin1() + '\t' + level.toLatin1()
            + '\n';
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
