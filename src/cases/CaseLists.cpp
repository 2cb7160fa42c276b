#include "cases/CaseLists.h"

#include "common/NumberText.h"
#include "common/TextDamage.h"
#include "common/TextFiles.h"

namespace pvardo::cases {

namespace {

QStringList latin(std::initializer_list<const char*> items)
{
    QStringList list;
    for (const char* item : items) {
        list.append(QString::fromLatin1(item));
    }
    return list;
}

} // namespace

QStringList CaseLists::typeItems()
{
    return latin({"New Structure", "Addition", "Replacement", "Alteration", "Demolition",
        "Sub-division minor", "Sub-division major", "Lot Realignment", "Signage"});
}

QStringList CaseLists::useItems()
{
    return latin({"Accessory", "Residential", "Res. One Family", "Res. Two Family", "Res. Multi Family",
        "Res. Apartments", "Res. Town House", "Res. Others", "Non-Residential", "Non-Res. Hotel/Motel",
        "Non-Res. Resort", "Non-Res. Retail/Store", "Non-Res. Religious", "Non-Res. Bar/Restaurant",
        "Non-Res. Service", "Non-Res. Bank", "Non-Res. Entertainment", "Non-Res. Office", "Non-Res. Others"});
}

QStringList CaseLists::accessoryItems()
{
    return latin({"Deck / Patio", "Attached Garage", "Detached Garage", "Driveway", "Shed", "Fence",
        "AG Pool", "IG Pool", "Boat Landing", "Ham/Radio Tower", "Sign"});
}

QStringList CaseLists::zoningItems()
{
    return latin({"Agricultural", "Residential", "Agricultural Residential", "Rural Residential",
        "Suburban Residential", "Historical", "Commercial", "Industrial", "Floodplain"});
}

QStringList CaseLists::structureTypeItems()
{
    return latin({"Frame", "Concrete", "Metal", "Combo"});
}

QStringList CaseLists::exteriorMaterialItems()
{
    return latin({"Brick", "Metal", "Vinyl Siding", "Aluminum Siding", "Stone", "Concrete", "Other"});
}

QStringList CaseLists::exteriorColorItems()
{
    return latin({"White", "Off-white", "Tan", "Light Yellow", "Dark Yellow", "Light Red", "Dark Red",
        "Light Blue", "Dark Blue", "Light Brown", "Dark Brown", "Earth Tone", "Light Grey", "Dark Grey",
        "Multi-color", "Chrome", "Glass", "Other"});
}

QStringList CaseLists::load(
    const QString& databaseFolder, const QString& officeName, const QStringList& builtIn)
{
    const auto lines = readListLines(
        joinPath(databaseFolder, officeName), QStringLiteral("The list built into the program is offered meanwhile."));
    if (!lines) {
        return builtIn;
    }
    QStringList items;
    for (const QString& line : *lines) {
        const QStringList pieces = line.size() >= 21 ? line.split(QLatin1Char('\n')) : QStringList{line};
        for (const QString& piece : pieces) {
            if (!piece.trimmed().isEmpty()) {
                items.append(piece);
            }
        }
    }
    return items;
}

QList<CaseLists::MapProvider> CaseLists::loadMapProviders(const QString& databaseFolder)
{
    QList<MapProvider> providers;
    const auto lines = readListLines(joinPath(databaseFolder, QStringLiteral("\\GIS.txt")),
        QStringLiteral("No map provider is offered meanwhile."));
    if (!lines || lines->isEmpty()) {
        return providers;
    }
    const int count = std::min(100, LeadingWholeNumber(lines->first()));
    for (int i = 0; i < count; ++i) {
        const qsizetype nameLine = 2 + 2 * i;
        if (nameLine >= lines->size()) {
            break;
        }
        const QString name = lines->at(nameLine);
        const QString address = nameLine + 1 < lines->size() ? lines->at(nameLine + 1) : QString();
        if (!name.trimmed().isEmpty()) {
            providers.append({name.trimmed(), address.trimmed()});
        }
    }
    return providers;
}

} // namespace pvardo::cases
