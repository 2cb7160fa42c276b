#include "common/BoardMembers.h"

#include "common/TextDamage.h"
#include "common/TextFiles.h"

namespace pvardo {

QString BoardMembers::fileOf(const QString& databaseFolder)
{
    return joinPath(databaseFolder, QStringLiteral("\\Inspectors.txt"));
}

QStringList BoardMembers::read(const QString& databaseFolder)
{
    QStringList names;
    const std::optional<QStringList> lines
        = readListLines(fileOf(databaseFolder), QStringLiteral("No board member is offered meanwhile."));
    if (!lines) {
        return names;
    }
    for (const QString& line : *lines) {
        if (line.trimmed().isEmpty()) {
            continue;
        }
        if (names.size() == capacity) {
            break;
        }
        names.append(line);
    }
    return names;
}

bool BoardMembers::write(const QString& databaseFolder, const QStringList& names, QString* error)
{
    QStringList kept;
    for (const QString& name : names) {
        if (!name.trimmed().isEmpty()) {
            kept.append(name.trimmed());
        }
    }
    return replaceTextLines(fileOf(databaseFolder), kept, error);
}

} // namespace pvardo
