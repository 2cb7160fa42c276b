#include "parcels/Coordinates.h"

#include "common/NumberText.h"
#include "common/Session.h"
#include "common/SettingStore.h"

#include <QDir>
#include <QRegularExpression>
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

// A box of whole degrees, minutes or seconds: digits, with a minus sign
// in front at most. A blank box is no number.
bool wholeNumber(const QString& text)
{
    static const QRegularExpression whole(QStringLiteral("^-?[0-9]+$"));
    return whole.match(text.trimmed()).hasMatch();
}

} // namespace

Converted convert(const Sexagesimal& typed)
{
    Converted result;
    // The degrees must be given; blank minutes and seconds are none. A box
    // that holds no number is refused with its own line rather than read
    // as 0, which would put the point somewhere else without a word.
    const auto given = [](const QString& text, bool required) {
        return text.trimmed().isEmpty() ? !required : wholeNumber(text);
    };
    const bool latDegreesOk = given(typed.latDegrees, true);
    const bool longDegreesOk = given(typed.longDegrees, true);
    const bool latMinutesOk = given(typed.latMinutes, false);
    const bool longMinutesOk = given(typed.longMinutes, false);
    const bool latSecondsOk = given(typed.latSeconds, false);
    const bool longSecondsOk = given(typed.longSeconds, false);
    const double latDegrees = valueOf(typed.latDegrees);
    const double longDegrees = valueOf(typed.longDegrees);
    const double latMinutes = valueOf(typed.latMinutes);
    const double longMinutes = valueOf(typed.longMinutes);
    const double latSeconds = valueOf(typed.latSeconds);
    const double longSeconds = valueOf(typed.longSeconds);
    if (!latDegreesOk || latDegrees > 90 || latDegrees < -90) {
        result.faults << QStringLiteral("Latitude Degrees cannot be less than -90 or greater than 90.");
    }
    if (!longDegreesOk || longDegrees > 180 || longDegrees < -180) {
        result.faults << QStringLiteral("Longitude Degrees cannot be less than -180 or greater than 180.");
    }
    if (!latMinutesOk || latMinutes < 0 || latMinutes > 59) {
        result.faults << QStringLiteral("Latitude Minutes cannot be less than 0 or greater than 59.");
    }
    if (!longMinutesOk || longMinutes < 0 || longMinutes > 59) {
        result.faults << QStringLiteral("Longitude Minutes cannot be less than 0 or greater than 59.");
    }
    if (!latSecondsOk || latSeconds < 0 || latSeconds > 59) {
        result.faults << QStringLiteral("Latitude Seconds cannot be less than 0 or greater than 59.");
    }
    if (!longSecondsOk || longSeconds < 0 || longSeconds > 59) {
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
    // A plain decimal number and nothing else. The converter writes whole
    // degrees as 41.0 and the equator as 0.0: those are numbers too, so a
    // converted point can always be looked up.
    static const QRegularExpression plain(QStringLiteral("^-?([0-9]+(\\.[0-9]*)?|\\.[0-9]+)$"));
    return plain.match(text).hasMatch();
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
