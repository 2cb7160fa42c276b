#pragma once

#include <QList>
#include <QString>
#include <optional>

namespace pvardo::admin {

// One user of the program, as typed (not scrambled).
struct UserEntry
{
    QString name;
    QString password;
    QString level; // "ADMIN", "MEMBER", "USER" (or "SUPERVISOR")

    bool operator==(const UserEntry&) const = default;
};

// The list of users of one computer, kept in Users.Set in the program folder:
// a first line with the number of users, then one line per user with the
// scrambled name, password and level joined by commas. Each scrambled
// character is one byte of the file.
class UserList
{
public:
    // The list holds at most this many users.
    static constexpr int capacity = 100;

    QList<UserEntry> entries;

    // Reads a user file. nullopt, with a reason, when the file cannot be read
    // or its first line is not a count. A line that does not hold three fields
    // is left out and named in `problems`.
    static std::optional<UserList> read(
        const QString& path, QString* error = nullptr, QStringList* problems = nullptr);

    // Writes the file anew, whole or not at all. Refuses, with a reason, a
    // list that could not be read back: more than `capacity` users, a character
    // outside the one-byte range, or a field whose scrambled form holds a
    // comma or a line feed (or ends the line with a carriage return).
    bool write(const QString& path, QString* error = nullptr) const;

    // The file's bytes for this list; empty with a reason when write() would refuse.
    QByteArray toBytes(QString* error = nullptr) const;

    // The index of the first entry of this name, compared in capitals; -1 for none.
    int indexOf(const QString& name) const;
};

} // namespace pvardo::admin
