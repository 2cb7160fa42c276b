#pragma once

#include <QString>
#include <QStringList>

namespace pvardo::parcels {

// Latitude and longitude for the map look-up: the degrees, minutes and
// seconds converter, the checks of the store and look-up commands, and the
// address of the map page.
namespace Coordinates {

// Degrees, minutes and seconds as typed into the six boxes.
struct Sexagesimal
{
    QString latDegrees, latMinutes, latSeconds;
    QString longDegrees, longMinutes, longSeconds;
};

struct Converted
{
    QStringList faults; // one line each, in the order checked; empty when converted
    QString latitude; // "##0.0#####"
    QString longitude;
};

// Checks the six values and converts them to decimal degrees. The sign
// travels on the degrees, so a west position of 0 degrees reads as east.
// Degrees must be given; blank minutes and seconds count as 0; a box that
// holds no whole number gets the line of its range.
Converted convert(const Sexagesimal& typed);

// A decimal degree value with one to six places, as the converter writes it.
QString decimalText(double value);

// The faults of the store command: each result box must hold something.
QStringList storeFaults(const QString& latitude, const QString& longitude);

// The faults of the look-up command: each value must lie on the map and
// read back exactly as typed (isNumber).
QStringList lookupFaults(const QString& latitude, const QString& longitude);

// True when the text is a plain decimal number: 40.5, 40.50, 0.5, 41.0 and
// -73.99 pass; 40.5N, " 40.5" and "" do not.
bool isNumber(const QString& text);

// The pair as one stored text, latitude "," longitude, cut to 20.
QString storedPair(const QString& latitude, const QString& longitude);
// The two halves of a stored pair; a pair without "," gives it all as the latitude.
std::pair<QString, QString> splitPair(const QString& stored);

// The map page's address for a point; the host ends in "/" or is given one.
QString mapAddress(const QString& host, const QString& latitude, const QString& longitude);

// The host of the map page: the installation's MAPHOST setting, by default
// the page shipped in the program folder.
QString mapHost();
QString defaultMapHost(const QString& programFolder);

} // namespace Coordinates

} // namespace pvardo::parcels
