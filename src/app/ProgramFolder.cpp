#include "app/ProgramFolder.h"

#include <QCoreApplication>
#include <QDir>

namespace pvardo::app {

QString programFolder()
{
    const QString named = qEnvironmentVariable("PVARDO_HOME");
    QString folder = named.isEmpty() ? QCoreApplication::applicationDirPath() : QDir(named).absolutePath();
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/'))) {
        folder.chop(1);
    }
    return folder;
}

} // namespace pvardo::app
