#pragma once

#include <QDateTime>
#include <QDialog>

namespace pvardo::ui {

// The record information box: who wrote the shown row last and when, from
// its BYUSER and TSTAMP stamps.
class RecordInfoBox : public QDialog
{
    Q_OBJECT

public:
    RecordInfoBox(const QString& user, const QDateTime& stamp, QWidget* parent = nullptr);

    // "dddd, mmmm dd, yyyy" and "Recorded time: " with "hh:mm AM/PM".
    static QString dateText(const QDateTime& stamp);
    static QString timeText(const QDateTime& stamp);
};

// Shows the box through the prompt service.
void showRecordInfo(const QString& user, const QDateTime& stamp, QWidget* parent = nullptr);

} // namespace pvardo::ui
