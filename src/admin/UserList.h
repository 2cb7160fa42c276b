#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace pvardo::admin {

// The levels of the user list. Only these texts, exactly as written, give
// their rights; anything else gives no more than USER.
namespace UserLevels {
inline QString admin()
{
    return QStringLiteral("ADMIN");
}
inline QString member()
{
    return QStringLiteral("MEMBER");
}
inline QString user()
{
    return QStringLiteral("USER");
}
inline QString supervisor()
{
    return QStringLiteral("SUPERVISOR");
}
// The levels the add and edit screens offer, in their order.
QStringList offered();
// True for the four levels the program knows, in capitals and nothing else.
bool isKnown(const QString& level);
} // namespace UserLevels

// One user of the program. The password is kept as a hash; a password set
// (or read from an old user file) and not yet written is held in clear until
// the list is written, which hashes it.
struct UserEntry
{
    UserEntry(QString name_ = {}, QString password_ = {}, QString level_ = {}, QString passwordHash_ = {})
        : name(std::move(name_))
        , password(std::move(password_))
        , level(std::move(level_))
        , passwordHash(std::move(passwordHash_))
    {
    }

    QString name;
    QString password; // a new password, in clear, until the list is written
    QString level;
    QString passwordHash; // the stored hash of the capitalised password

    bool operator==(const UserEntry&) const = default;

    // True when the entry has a password at all; one without never logs on.
    bool hasPassword() const { return !password.isEmpty() || !passwordHash.isEmpty(); }
    // True when the typed password is this user's, compared in capitals. An
    // entry without a password accepts nothing, not even an empty password.
    bool accepts(const QString& typed) const;
};

// The list of users of one computer, kept in Users.Set in the program folder.
//
// The file the program writes: a first line "#pvardo-users 2", a second with
// the number of users, then one line per user with the name (UTF-8,
// percent-encoded, so it holds any spelling), the password's hash and the
// level, separated by tabs.
//
// The older file is still read: a first line with the number of users, then
// the scrambled name, password and level of each user joined by commas, each
// scrambled character one byte. It is written in the new form the first time
// the list is written, which hashes its passwords.
class UserList
{
public:
    // The list holds at most this many users.
    static constexpr int capacity = 100;

    QList<UserEntry> entries;

    // Reads a user file. nullopt, with a reason, when the file cannot be read
    // or the line of the count does not hold a number. Lines that cannot be
    // used (not three fields, no name, past the count) are left out and named
    // in `problems`; what was taken in another form than it was stored (a
    // level the program does not know, which becomes USER; a user without a
    // password; fewer users than counted) is named in `notes`.
    static std::optional<UserList> read(const QString& path, QString* error = nullptr,
        QStringList* problems = nullptr, QStringList* notes = nullptr);

    // Writes the file anew in the current form, whole or not at all. Refuses,
    // with a reason, more than `capacity` users or a user without a name.
    bool write(const QString& path, QString* error = nullptr) const;

    // The file's bytes for this list; empty with a reason when write() would refuse.
    QByteArray toBytes(QString* error = nullptr) const;

    // The index of the first entry of this name, compared in capitals; -1 for none.
    int indexOf(const QString& name) const;

    // The first line of the file in its current form.
    static QByteArray formatLine() { return QByteArrayLiteral("#pvardo-users 2"); }
};

} // namespace pvardo::admin
