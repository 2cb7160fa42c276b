#include "parcels/Coordinates.h"

#include "common/NumberText.h"
#include "common/Session.h"
#include "common/SettingStore.h"

#include <QDir>
#include <QUrl>
#include <cmath>

namespace pvardo::parcels::Coordinates {

namespace {

double valueOf(const QString& text)
{
    return LeadingNumber(text.trimmed());
}

double decimalDegrees(double degrees, double minutes, double seconds)
{
    const double value = std::fabs(degrees) + minutes / 60.0 + seconds / 3600.0;
    return degrees < 0 ? -value : value;
}

// A number as the office's programs write one back: up to fifteen figures,
// no zero before the point of a fraction.
QString writtenBack(double value)
{
    QString text = QString::number(value, 'g', 15);
    if (text.startsWith(QLatin1String("0."))) {
        text.remove(0, 1);
    } else if (text.startsWith(QLatin1String("-0."))) {
        text.remove(1, 1);
    }
    return text;
}

} // namespace

Converted convert(const Sexagesimal& typed)
{
    Converted result;
    const double latDegrees = valueOf(typed.latDegrees);
    const double longDegrees = valueOf(typed.longDegrees);
    const double latMinutes = valueOf(typed.latMinutes);
    const double longMinutes = valueOf(typed.longMinutes);
    const double latSeconds = valueOf(typed.latSeconds);
    const double longSeconds = valueOf(typed.longSeconds);
    if (latDegrees > 90 || latDegrees < -90) {
        result.faults << QStringLiteral("Latitude Degrees cannot be less than -90 or greater than 90.");
    }
    if (longDegrees > 180 || longDegrees < -180) {
        result.faults << QStringLiteral("Longitude Degrees cannot be less than -180 or greater than 180.");
    }
    if (latMinutes < 0 || latMinutes > 59) {
        result.faults << QStringLiteral("Latitude Minutes cannot be less than 0 or greater than 59.");
    }
    if (longMinutes < 0 || longMinutes > 59) {
        result.faults << QStringLiteral("Longitude Minutes cannot be less than 0 or greater than 59.");
    }
    if (latSeconds < 0 || latSeconds > 59) {
        result.faults << QStringLiteral("Latitude Seconds cannot be less than 0 or greater than 59.");
    }
    if (longSeconds < 0 || longSeconds > 59) {
        result.faults << QStringLiteral("Longitude Seconds cannot be less than 0 or greater than 59.");
    }
    if (!result.faults.isEmpty()) {
        return result;
    }
    result.latitude = decimalText(decimalDegrees(latDegrees, latMinutes, latSeconds));
    result.longitude = decimalText(decimalDegrees(longDegrees, longMinutes, longSeconds));
    return result;
}

QString decimalText(double value)
{
    QString text = QString::number(value, 'f', 6);
    while (text.endsWith(QLatin1Char('0')) && !text.endsWith(QLatin1String(".0"))) {
        text.chop(1);
    }
    if (text == QLatin1String("-0.0")) {
        text = QStringLiteral("0.0");
    }
    return text;
}

QStringList storeFaults(const QString& latitude, const QString& longitude)
{
    QStringList faults;
    if (latitude.trimmed().isEmpty()) {
        faults << QStringLiteral("Latitude field must have an entry.");
    }
    if (longitude.trimmed().isEmpty()) {
        faults << QStringLiteral("Longitude field must have an entry.");
    }
    return faults;
}

QStringList lookupFaults(const QString& latitude, const QString& longitude)
{
    QStringList faults;
    const double lat = valueOf(latitude);
    const double lon = valueOf(longitude);
    if (lat < -90 || lat > 90) {
        faults << QStringLiteral("Latitude cannot be mapped.");
    }
    if (lon < -180 || lon > 180) {
        faults << QStringLiteral("Longitude cannot be mapped.");
    }
    if (!isNumber(latitude)) {
        faults << QStringLiteral("Latitude may not be a coordinate number.");
    }
    if (!isNumber(longitude)) {
        faults << QStringLiteral("Longitude may not be a coordinate number.");
    }
    return faults;
}

bool isNumber(const QString& text)
{
    return writtenBack(LeadingNumber(text)).trimmed().size() == text.size();
}

QString storedPair(const QString& latitude, const QString& longitude)
{
    return (latitude + QLatin1Char(',') + longitude).left(20);
}

std::pair<QString, QString> splitPair(const QString& stored)
{
    const qsizetype comma = stored.indexOf(QLatin1Char(','));
    if (comma < 0) {
        return {stored, QString()};
    }
    return {stored.left(comma), stored.mid(comma + 1)};
}

QString mapAddress(const QString& host, const QString& latitude, const QString& longitude)
{
    QString base = host.trimmed();
    if (!base.isEmpty() && !base.endsWith(QLatin1Char('/'))) {
        base += QLatin1Char('/');
    }
    return base + QStringLiteral("gps.htm?txtLat=") + latitude + QStringLiteral("&txtLong=") + longitude
        + QStringLiteral("&txtZoom=17");
}

QString defaultMapHost(const QString& programFolder)
{
    return QUrl::fromLocalFile(QDir(programFolder).filePath(QStringLiteral("map"))).toString()
        + QLatin1Char('/');
}

QString mapHost()
{
    return SettingGet(
        QStringLiteral("Map"), QStringLiteral("MAPHOST"), defaultMapHost(session().ProgramFolder));
}

} // namespace pvardo::parcels::Coordinates
