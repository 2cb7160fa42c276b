#pragma once

#include <QString>
#include <QStringList>

namespace pvardo::cases {

// The pick lists of the case screen. The office may replace the items of the
// type, use, accessory structure and zoning lists with a text file of its own
// in the database folder, one item a line.
class CaseLists
{
public:
    static QStringList typeItems(); // Combo1, \zpt.txt
    static QStringList useItems(); // Combo2, \zpu.txt
    static QStringList accessoryItems(); // Combo3, \zps.txt
    static QStringList zoningItems(); // Combo4, \zpz.txt
    static QStringList structureTypeItems(); // Combo6
    static QStringList exteriorMaterialItems(); // Combo7
    static QStringList exteriorColorItems(); // Combo8

    // The items of a list file of the database folder (officeName as
    // "\zpt.txt"), or the built-in items when the file is missing or cannot be
    // read. A line of 21 characters or more is split at line feeds, for files
    // written with bare line feeds inside one line. Empty lines give no item.
    static QStringList load(
        const QString& databaseFolder, const QString& officeName, const QStringList& builtIn);

    // The map providers of \GIS.txt: a count, a line not used, then a name and
    // an address for each provider. Names that are blank are left out.
    struct MapProvider
    {
        QString name;
        QString address;
    };
    static QList<MapProvider> loadMapProviders(const QString& databaseFolder);
};

} // namespace pvardo::cases
