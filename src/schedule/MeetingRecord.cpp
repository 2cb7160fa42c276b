#include "schedule/MeetingRecord.h"

#include "common/NumberText.h"
#include "schedule/MeetingRules.h"
#include "store/Catalogue.h"
#include "store/ColumnMap.h"

namespace pvardo::schedule {

namespace {

// A text from a box, trimmed and cut to the width of its column.
QString boxText(const QString& text, const char* column)
{
    for (const store::ColumnDef& def : store::tableDef(store::Table::MEETING).places) {
        if (qstrcmp(def.name, column) == 0) {
            return store::ColumnMap::cut(text.trimmed(), def.longest);
        }
    }
    return text.trimmed();
}

} // namespace

MeetingRow meetingRowFromForm(const MeetingForm& form, int calYear, int calMonth, int calDay)
{
    MeetingRow row;
    int day = calDay;
    if (form.Option2) {
        const MeetingRule rule{occurrenceFromText(form.Combo1), weekdayFromText(form.Combo2)};
        day = MonthGrid(calYear, calMonth).cell(rule.weekday, rule.occurrence);
        row.MFREQ = QStringLiteral("R");
        row.MREC = encodeRule(rule);
    } else {
        row.MFREQ = QStringLiteral("O");
    }
    row.MDATE = QDate(calYear, calMonth, day);
    row.MJUL = DayNumber(calYear, calMonth, day);
    row.MYEAR = QStringLiteral("%1").arg(calYear, 4, 10, QLatin1Char('0'));
    row.EXTRA2 = boxText(buildMonthChain(calMonth, form.Combo3), "EXTRA2");
    row.MTIME = form.DTPicker1.isValid() ? QTime(form.DTPicker1.hour(), form.DTPicker1.minute()) : QTime();
    row.MDUR = LeadingNumber(form.Text4);
    row.MRMID = boxText(form.Text1, "MRMID");
    row.MNAME = boxText(form.Text2, "MNAME");
    row.MLOC = boxText(form.Text3, "MLOC");
    row.MBY = boxText(form.Text5, "MBY");
    row.MRECNO = boxText(form.Text6, "MRECNO");
    row.MNOTES = boxText(form.Text7, "MNOTES");
    return row;
}

store::StoreStatus movefieldsintodb(const MeetingForm& form, int calYear, int calMonth, int calDay,
    store::Recordset& rows, const QString& currentUser, MeetingRow* written)
{
    const MeetingRow row = meetingRowFromForm(form, calYear, calMonth, calDay);
    if (written) {
        *written = row;
    }
    const std::pair<const char*, QVariant> values[] = {
        {"MYEAR", row.MYEAR},
        {"MJUL", row.MJUL},
        {"MDATE", row.MDATE.isValid() ? QVariant(row.MDATE) : QVariant()},
        {"MTIME", row.MTIME.isValid() ? QVariant(row.MTIME) : QVariant()},
        {"MDUR", row.MDUR},
        {"MRMID", row.MRMID},
        {"MNAME", row.MNAME},
        {"MLOC", row.MLOC},
        {"MFREQ", row.MFREQ},
        {"MREC", row.MREC},
        {"MBY", row.MBY},
        {"EXTRA1", row.EXTRA1},
        {"EXTRA2", row.EXTRA2},
        {"MRECNO", row.MRECNO},
        {"MNOTES", row.MNOTES},
    };
    for (const auto& [column, value] : values) {
        const store::StoreStatus status = rows.setValue(QLatin1String(column), value);
        if (!status.ok()) {
            return status;
        }
    }
    return store::stampRow(rows, currentUser);
}

MeetingShown GetRecord(const store::Recordset& rows, const MonthGrid& grid)
{
    MeetingShown shown;
    MeetingForm& form = shown.form;
    shown.key = rows.text(QStringLiteral("RECNO"));
    form.Text1 = rows.text(QStringLiteral("MRMID"));
    form.Text2 = rows.text(QStringLiteral("MNAME"));
    form.Text3 = rows.text(QStringLiteral("MLOC"));
    form.Text4 = rows.text(QStringLiteral("MDUR"));
    form.Text5 = rows.text(QStringLiteral("MBY"));
    form.Text6 = rows.text(QStringLiteral("MRECNO"));
    form.Text7 = rows.text(QStringLiteral("MNOTES"));
    form.DTPicker1 = rows.value(QStringLiteral("MTIME")).toTime();
    form.Combo3 = intervalText(chainInterval(rows.text(QStringLiteral("EXTRA2"))));
    if (rows.text(QStringLiteral("MFREQ")).trimmed() == QLatin1String("R")) {
        const MeetingRule rule = decodeRule(rows.text(QStringLiteral("MREC")));
        form.Option2 = true;
        form.Combo1 = occurrenceText(rule.occurrence);
        form.Combo2 = weekdayText(rule.weekday);
        const int day = grid.cell(rule.weekday, rule.occurrence);
        shown.date = day > 0 ? QDate(grid.year(), grid.month(), day) : QDate();
    } else {
        form.Option1 = true;
        form.Combo1.clear();
        form.Combo2.clear();
        shown.date = rows.value(QStringLiteral("MDATE")).toDate();
    }
    return shown;
}

} // namespace pvardo::schedule
