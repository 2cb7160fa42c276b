#include "ui/RecordInfoBox.h"

#include "common/DateText.h"
#include "common/PromptService.h"
#include "ui/XPButton.h"

#include <QFormLayout>
#include <QLabel>
#include <QLocale>

namespace pvardo::ui {

QString RecordInfoBox::dateText(const QDateTime& stamp)
{
    if (!stamp.isValid()) {
        return {};
    }
    return QLocale::c().toString(stamp.date(), QStringLiteral("dddd, MMMM dd, yyyy"));
}

QString RecordInfoBox::timeText(const QDateTime& stamp)
{
    return QStringLiteral("Recorded time: ") + (stamp.isValid() ? TimeText(stamp) : QString());
}

RecordInfoBox::RecordInfoBox(const QString& user, const QDateTime& stamp, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("recinfo"));
    setWindowTitle(QStringLiteral(" Record Info "));
    setModal(true);
    auto* form = new QFormLayout(this);
    auto* userLabel = new QLabel(user, this);
    userLabel->setObjectName(QStringLiteral("lblUser"));
    auto* dateLabel = new QLabel(dateText(stamp), this);
    dateLabel->setObjectName(QStringLiteral("lblDate"));
    auto* timeLabel = new QLabel(timeText(stamp), this);
    timeLabel->setObjectName(QStringLiteral("lblTime"));
    form->addRow(QStringLiteral("User ID:"), userLabel);
    form->addRow(QStringLiteral("Last Modified:"), dateLabel);
    form->addRow(QString(), timeLabel);
    auto* ok = new XPButton(QStringLiteral("cmdOK"), QStringLiteral("OK"), QString(), this);
    ok->setDefault(true);
    form->addRow(QString(), ok);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

void showRecordInfo(const QString& user, const QDateTime& stamp, QWidget* parent)
{
    RecordInfoBox box(user, stamp, parent);
    prompts().exec(box);
}

} // namespace pvardo::ui
