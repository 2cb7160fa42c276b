#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace pvardo::documents {

// The addressee of a letter: the three texts "%nm", "%ad" and "%zp" put in.
struct Addressee {
    QString name;
    QString street = QStringLiteral("<no address>");
    QString city = QStringLiteral("<no city state zip>");
};

// What the letters and listings of one session share: the choices of the
// print dialog, the page counter, the addressee and the texts that the
// print-time pass fills. One set for the whole program (printState()).
struct PrintState {
    // Margins in inches.
    double leftMargin = 0.8;
    double topMargin = 0.8;
    double rightMargin = 0.8;
    double bottomMargin = 0.8;
    // The size of a listing's fixed-pitch type.
    double reportFontSize = 10;
    // Counts up after each printed page; a counter below 1 reads as 1.
    int pageCounter = 1;
    // Reserves and prints the footer band.
    bool footer = false;
    // "Allow view /edit before printing": the report opens for editing first.
    bool preview = false;
    // The report type chosen in the print dialog, trimmed and upper-cased.
    QString ReportChoice;
    // The same caption as the dialog showed it: a report built after the
    // dialog is named after it (with the current case) unless its screen
    // names it otherwise.
    QString reportCaption;
    // 0 plain, 1 expired, 2 expiring, 81 expired zoning, 82 expiring zoning,
    // 99 surrounding parcels; 3 and 4 count as 0.
    int reportKind = 0;
    // The template the label and notice printing loads ("lab.rtf", "roster").
    QString templateName;
    // "%sh": the heading of the report being built.
    QString reportHeading;
    // RTF for the footer band; nothing sets it yet, so the band prints empty.
    QString footerText;
    Addressee addressee;
    // Slots 1 to 25 of "%01".."%25" and "%$01".."%$25", filled by the receipt
    // screen; slot 0 is unused.
    std::array<QString, 26> receiptSlots{};
    // The captions the print dialog offers.
    QStringList ReportList;
};

PrintState& printState();

// A fresh state, as at the start of the program.
void resetPrintState();

} // namespace pvardo::documents
