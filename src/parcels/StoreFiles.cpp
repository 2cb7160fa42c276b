#include "parcels/StoreFiles.h"

#include "common/ReplacingFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
namespace pvardo::parcels {

bool copyFileReplacing(const QString& source, const QString& target, QString* error)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = QStringLiteral("Cannot read %1: %2")
                         .arg(QDir::toNativeSeparators(source), in.errorString());
        }
        return false;
    }
    ReplacingFile out(target);
    if (!out.open(QIODevice::WriteOnly)) {
        if (error) {
            *error = QStringLiteral("Cannot write %1: %2")
                         .arg(QDir::toNativeSeparators(target), out.errorText());
        }
        return false;
    }
    // In pieces: a parcel store can be tens of megabytes.
    QByteArray buffer;
    while (!in.atEnd()) {
        buffer = in.read(1 << 20);
        if (buffer.isEmpty() && in.error() != QFile::NoError) {
            break;
        }
        if (out.write(buffer) != buffer.size()) {
            break;
        }
    }
    if (in.error() != QFile::NoError) {
        if (error) {
            *error = QStringLiteral("Cannot copy %1 to %2: %3")
                         .arg(QDir::toNativeSeparators(source), QDir::toNativeSeparators(target), in.errorString());
        }
        out.cancel();
        return false;
    }
    if (!out.commit()) {
        if (error) {
            *error = QStringLiteral("Cannot copy %1 to %2: %3")
                         .arg(QDir::toNativeSeparators(source), QDir::toNativeSeparators(target), out.errorText());
        }
        return false;
    }
    return true;
}

} // namespace pvardo::parcels
