#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

namespace pvardo::admin {

// Fills a new installation with an invented town's records, so that a
// newcomer sees the program at work: the municipality in the settings, the
// lists of the case screen, the board members, some three dozen cases over the
// last two years with their parcels, and the board's meetings of the month
// around `today` (two recurring ones and a dozen single dates). Names, streets
// and parcels are made up.
//
// Runs on an installation made by Installation::make. Adds no cases or
// meetings to one that already holds cases, so that records of an office are
// never mixed with the invented ones; list files already there are kept.
class DemoInstallation
{
public:
    DemoInstallation(QString programFolder, QDate today);

    bool make();

    const QStringList& created() const { return m_created; }
    const QStringList& failures() const { return m_failures; }
    // What was left as it was, and why.
    const QStringList& kept() const { return m_kept; }
    int caseCount() const { return m_caseCount; }
    int meetingCount() const { return m_meetingCount; }
    int feeCount() const { return m_feeCount; }

    // The user the demonstration records are stamped with.
    static QString demoUser() { return QStringLiteral("DEMO"); }

private:
    void writeMunicipality();
    void writeLetters();
    // demo/RPS995T1: a small assessment roll extract of the demonstration
    // cases' parcels and their neighbours, with grid coordinates, to import.
    void writeRollExtract();
    void writeListFile(const QString& fileName, const QStringList& lines);
    bool writeCases();
    bool writeMeetings();
    bool writeFees();
    QString databaseFolder() const;

    QString m_folder;
    QDate m_today;
    QStringList m_created;
    QStringList m_failures;
    QStringList m_kept;
    int m_caseCount = 0;
    int m_meetingCount = 0;
    int m_feeCount = 0;
};

} // namespace pvardo::admin
