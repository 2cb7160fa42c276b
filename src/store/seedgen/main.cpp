// Writes the empty seed databases of wrk/ into a folder, from the catalogue.
#include "store/Catalogue.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    if (argc != 2) {
        err << "usage: pvardo-seedgen FOLDER" << Qt::endl;
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    if (!QDir().mkpath(folder)) {
        err << "cannot make " << folder << Qt::endl;
        return 1;
    }
    for (const QString& name : pvardo::store::seedFileNames()) {
        const QString path = QDir(folder).filePath(name);
        QFile::remove(path);
        const pvardo::store::StoreStatus status =
            pvardo::store::createDatabaseFile(path, *pvardo::store::seedTableFor(name));
        if (!status.ok()) {
            err << status.description << Qt::endl;
            return 1;
        }
    }
    return 0;
}
