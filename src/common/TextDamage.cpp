#include "common/TextDamage.h"

#include "common/TextFiles.h"

#include "common/PromptService.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QSet>

namespace pvardo {

bool looksDamagedText(const QByteArray& bytes)
{
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes.at(i));
        if (byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\f') {
            continue;
        }
        // The end-of-file mark old editors put last.
        if (byte == 0x1A && i == bytes.size() - 1) {
            continue;
        }
        return true;
    }
    return false;
}

std::optional<QStringList> readCheckedTextLines(const QString& path, bool* damaged)
{
    *damaged = false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    if (looksDamagedText(bytes)) {
        *damaged = true;
        return std::nullopt;
    }
    return textLines(decodeText(bytes));
}

std::optional<QStringList> readListLines(const QString& path, const QString& instead)
{
    bool damaged = false;
    std::optional<QStringList> lines = readCheckedTextLines(path, &damaged);
    if (!damaged) {
        return lines;
    }
    static QMutex mutex;
    static QSet<QString> told;
    {
        const QMutexLocker lock(&mutex);
        if (told.contains(path)) {
            return std::nullopt;
        }
        told.insert(path);
    }
    showMessage(QStringLiteral("The file %1 is damaged (error 3343): it holds bytes no list file holds, as a "
                               "failing disk leaves them. %2\n\nClose the program and restore the file from the "
                               "last backup, or remove it and write the list anew.")
                    .arg(QDir::toNativeSeparators(path), instead),
        QStringLiteral(" Damaged file"), PromptButtons::Ok, PromptIcon::Exclamation);
    return std::nullopt;
}

} // namespace pvardo
