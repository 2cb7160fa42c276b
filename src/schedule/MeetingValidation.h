#pragma once

#include "schedule/MeetingForm.h"

#include <QString>

namespace pvardo::schedule {

// The two commands that write a meeting. Adding checks the interval as well;
// saving an edited meeting does not.
enum class MeetingCommand { Add, Save };

// The first thing wrong with the editor's values for the command, as the
// message the clerk is shown; empty when the meeting can be written. The
// checks run in a fixed order: name, location, schedule option, the rule's
// ordinal and weekday, and (adding only) an interval of 3 to 12 months.
QString meetingFormProblem(const MeetingForm& form, MeetingCommand command);

// Runs the checks and shows the first problem in a message box. True when the
// meeting can be written; false (and StopFlag set) when the clerk was told.
bool validateMeetingForm(const MeetingForm& form, MeetingCommand command);

} // namespace pvardo::schedule
