#pragma once

#include <QString>
#include <QTime>

namespace pvardo::schedule {

// The values of the meeting editor, named after its boxes, as the editor
// hands them over for a check or a save and gets them back from a row.
struct MeetingForm
{
    QString Text1; // "Meeting / Room Number:"  MRMID
    QString Text2; // "Purpose / Meeting Name:" MNAME
    QString Text3; // "Location:"               MLOC
    QString Text4 = QStringLiteral("1"); // "Anticipated duration:"   MDUR
    QString Text5; // "Booked by:"              MBY
    QString Text6; // "Associated Case Number (if any):" MRECNO
    QString Text7; // "Remarks:"                MNOTES
    QTime DTPicker1; // the time                  MTIME
    bool Option1 = false; // "Once Only, on currently selected date"
    bool Option2 = false; // "On a recurring basis"
    QString Combo1 = QStringLiteral("First"); // the ordinal of a recurring meeting
    QString Combo2 = QStringLiteral("Monday"); // its weekday
    QString Combo3; // its interval, "03 months"; empty for every month

    bool operator==(const MeetingForm&) const = default;
};

} // namespace pvardo::schedule
