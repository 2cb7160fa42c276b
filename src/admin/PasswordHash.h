#pragma once

#include <QString>

namespace pvardo::admin {

// Passwords of the user list are kept as salted Argon2id hashes in the
// self-describing text form ("$argon2id$v=19$m=...,t=...,p=...$salt$hash"),
// so a stolen user file gives nobody the passwords. Passwords are not
// case-sensitive: callers pass the capitalised password.

// The hash of a password; empty when the computer cannot spare the memory
// the hash needs (the caller then refuses the change).
QString hashPassword(const QString& password);

// True when the password gives this hash. A hash that is empty or not of the
// expected form never matches.
bool passwordMatches(const QString& hash, const QString& password);

// True when the text has the form of a stored hash.
bool looksLikePasswordHash(const QString& text);

} // namespace pvardo::admin
