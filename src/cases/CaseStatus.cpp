#include "cases/CaseStatus.h"

#include "store/Recordset.h"

namespace pvardo::cases {

QStringList CaseStatus::statusListTexts()
{
    // The words a case shows for its letter, so that the list and the case
    // never name one status two ways; the first letter is what is stored.
    return {QStringLiteral("Initial Application"), QStringLiteral("Pending"), QStringLiteral("On Appeal"),
        QStringLiteral("Approved"), QStringLiteral("Denied"), QStringLiteral("Canceled"),
        QStringLiteral("Voided")};
}

QString CaseStatus::letterOf(const QString& listText)
{
    return listText.left(1);
}

QString CaseStatus::statusVerbose(const QString& letter)
{
    // Tested in this order, as the office's listings always have.
    static const std::pair<const char*, const char*> words[] = {
        {"I", "Initial Application"},
        {"O", "On Appeal"},
        {"D", "Denied"},
        {"P", "Pending"},
        {"A", "Approved"},
        {"T", "Tabled"},
        {"V", "Voided"},
        {"C", "Canceled"},
    };
    for (const auto& [code, word] : words) {
        if (letter == QLatin1String(code)) {
            return QString::fromLatin1(word);
        }
    }
    return letter;
}

bool CaseStatus::isActive(const QString& letter)
{
    return letter == QLatin1String("P") || letter == QLatin1String("I") || letter == QLatin1String("O");
}

QString CaseStatus::activeCriteria()
{
    return QStringLiteral("[PBSTATUS] = 'P' or [PBSTATUS] = 'I' or [PBSTATUS] = 'O'");
}

bool CaseStatus::isVoided(const store::Recordset& caseRow)
{
    if (caseRow.Bof() || caseRow.Eof()) {
        return false;
    }
    return caseRow.text(QStringLiteral("PBSTATUS")) == QLatin1String("V");
}

} // namespace pvardo::cases
