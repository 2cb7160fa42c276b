#include "common/SettingStore.h"

#include "common/Session.h"
#include "common/TextFiles.h"

#include <QDir>
#include <QFileInfo>

namespace pvardo {

QString settingFile(const QString& name)
{
    return joinPath(session().ProgramFolder, QStringLiteral("\\settings\\") + name);
}

bool SettingPut(const QString& name, const QString& value, QString* error)
{
    const QString file = settingFile(name);
    const QString folder = QFileInfo(file).absolutePath();
    if (!QDir().mkpath(folder)) {
        if (error) {
            *error = QStringLiteral("The settings folder ") + QDir::toNativeSeparators(folder)
                + QStringLiteral(" cannot be made.");
        }
        return false;
    }
    return replaceTextLines(file, {value}, error);
}

QString SettingGet(const QString& /*section*/, const QString& name, const QString& defaultValue)
{
    const QString file = settingFile(name);
    if (QFileInfo::exists(file)) {
        if (const std::optional<QStringList> lines = readTextLines(file)) {
            return lines->value(0);
        }
        // There but unreadable: the default serves, and the file is left as it is.
        return defaultValue;
    }
    // A folder that cannot be written keeps no value; the default serves.
    SettingPut(name, defaultValue);
    return defaultValue;
}

bool ReadSiblingInfo()
{
    Session& state = session();
    state.SiblingFolder = SettingGet(QStringLiteral("Settings"), QStringLiteral("EP"), QString());
    state.SiblingProgram = SettingGet(QStringLiteral("Settings"), QStringLiteral("AE"), QString());
    return !state.SiblingFolder.isEmpty();
}

} // namespace pvardo
