#include "admin/PasswordHash.h"

#include <sodium.h>

namespace pvardo::admin {

namespace {

bool sodiumReady()
{
    static const bool ready = sodium_init() >= 0;
    return ready;
}

} // namespace

QString hashPassword(const QString& password)
{
    if (!sodiumReady()) {
        return {};
    }
    const QByteArray bytes = password.toUtf8();
    char stored[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str_alg(stored, bytes.constData(), static_cast<unsigned long long>(bytes.size()),
            crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE, crypto_pwhash_ALG_ARGON2ID13)
        != 0) {
        return {};
    }
    return QString::fromLatin1(stored);
}

bool passwordMatches(const QString& hash, const QString& password)
{
    if (!looksLikePasswordHash(hash)) {
        return false;
    }
    const QByteArray stored = hash.toLatin1();
    const QByteArray bytes = password.toUtf8();
    return crypto_pwhash_str_verify(stored.constData(), bytes.constData(),
               static_cast<unsigned long long>(bytes.size()))
        == 0;
}

bool looksLikePasswordHash(const QString& text)
{
    if (!text.startsWith(QLatin1String("$argon2id$")) || text.size() >= crypto_pwhash_STRBYTES
        || !sodiumReady()) {
        return false;
    }
    // The check of whether a hash needs renewing reads its parameters, and
    // says -1 when they cannot be read.
    const QByteArray stored = text.toLatin1();
    return crypto_pwhash_str_needs_rehash(
               stored.constData(), crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE)
        != -1;
}

} // namespace pvardo::admin
