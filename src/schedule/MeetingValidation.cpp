#include "schedule/MeetingValidation.h"

#include "common/PromptService.h"
#include "common/Session.h"
#include "schedule/MeetingRules.h"

namespace pvardo::schedule {

QString meetingFormProblem(const MeetingForm& form, MeetingCommand command)
{
    if (form.Text2.trimmed().isEmpty()) {
        return QStringLiteral("Please enter a meeting name first.");
    }
    if (form.Text3.trimmed().isEmpty()) {
        return QStringLiteral("Please enter a location first.");
    }
    if (!form.Option1 && !form.Option2) {
        return QStringLiteral("Please select the option for the schedule\n(once only or recurring.)");
    }
    if (form.Option2 && (form.Combo1.trimmed().isEmpty() || form.Combo2.trimmed().isEmpty())) {
        return QStringLiteral("Please select the options for a recurring event.");
    }
    if (command == MeetingCommand::Add && intervalGiven(form.Combo3)) {
        const int interval = intervalFromText(form.Combo3);
        if (interval < 3 || interval > 12) {
            return QStringLiteral("Maximum yearly or minimum quarterly.");
        }
    }
    return {};
}

bool validateMeetingForm(const MeetingForm& form, MeetingCommand command)
{
    const QString problem = meetingFormProblem(form, command);
    session().StopFlag = !problem.isEmpty();
    if (problem.isEmpty()) {
        return true;
    }
    showMessage(problem, QString(), PromptButtons::Ok, PromptIcon::Exclamation);
    return false;
}

} // namespace pvardo::schedule
