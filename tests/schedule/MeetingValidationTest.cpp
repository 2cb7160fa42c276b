#include "schedule/MeetingValidation.h"

#include "common/Session.h"
#include "support/ScriptedPrompts.h"

#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::schedule;

namespace {

using pvardo::test::q;

MeetingForm goodForm()
{
    MeetingForm form;
    form.Text2 = q("Planning Board");
    form.Text3 = q("Town Hall");
    form.Option2 = true;
    form.Combo1 = q("Second");
    form.Combo2 = q("Tuesday");
    form.Combo3 = q("03 months");
    return form;
}

struct ValidationCase
{
    const char* what;
    std::function<void(MeetingForm&)> change;
    const char* atAdd; // the message at IAdd, "" for none
    const char* atSave; // the message at ISave
};

class MeetingValidationTest : public ::testing::TestWithParam<ValidationCase>
{
};

const char* const kName = "Please enter a meeting name first.";
const char* const kLocation = "Please enter a location first.";
const char* const kOption = "Please select the option for the schedule\n(once only or recurring.)";
const char* const kRecurring = "Please select the options for a recurring event.";
const char* const kInterval = "Maximum yearly or minimum quarterly.";

} // namespace

TEST_P(MeetingValidationTest, GivesTheFirstProblemInOrder)
{
    const ValidationCase& c = GetParam();
    MeetingForm form = goodForm();
    c.change(form);
    EXPECT_EQ(meetingFormProblem(form, MeetingCommand::Add), q(c.atAdd)) << c.what;
    EXPECT_EQ(meetingFormProblem(form, MeetingCommand::Save), q(c.atSave)) << c.what;
}

INSTANTIATE_TEST_SUITE_P(Checks, MeetingValidationTest,
    ::testing::Values(ValidationCase{"all good", [](MeetingForm&) {}, "", ""},
        ValidationCase{"everything missing: the name comes first",
            [](MeetingForm& f) {
                f = MeetingForm{};
                f.Combo1.clear();
                f.Combo3 = q("01 months");
            },
            kName, kName},
        ValidationCase{"blank name", [](MeetingForm& f) { f.Text2 = q("   "); }, kName, kName},
        ValidationCase{"no location, no option",
            [](MeetingForm& f) {
                f.Text3.clear();
                f.Option2 = false;
            },
            kLocation, kLocation},
        ValidationCase{"no option, no ordinal",
            [](MeetingForm& f) {
                f.Option2 = false;
                f.Combo1.clear();
            },
            kOption, kOption},
        ValidationCase{
            "recurring without an ordinal", [](MeetingForm& f) { f.Combo1.clear(); }, kRecurring, kRecurring},
        ValidationCase{"recurring without a weekday, bad interval",
            [](MeetingForm& f) {
                f.Combo2.clear();
                f.Combo3 = q("2");
            },
            kRecurring, kRecurring},
        ValidationCase{"once only needs no ordinal",
            [](MeetingForm& f) {
                f.Option2 = false;
                f.Option1 = true;
                f.Combo1.clear();
                f.Combo2.clear();
            },
            "", ""},
        ValidationCase{"interval of 2 months: refused only when adding",
            [](MeetingForm& f) { f.Combo3 = q("02 months"); }, kInterval, ""},
        ValidationCase{"interval of 13 months", [](MeetingForm& f) { f.Combo3 = q("13"); }, kInterval, ""},
        ValidationCase{
            "interval typed as words reads as 0", [](MeetingForm& f) { f.Combo3 = q("ab"); }, kInterval, ""},
        ValidationCase{"interval of 3 and of 12 are the limits",
            [](MeetingForm& f) { f.Combo3 = q("12 months"); }, "", ""},
        ValidationCase{"no interval is every month", [](MeetingForm& f) { f.Combo3 = q(" "); }, "", ""}),
    [](const auto& testInfo) { return "case" + std::to_string(testInfo.index); });

TEST(MeetingValidationBoxTest, ShowsTheMessageAndSetsStopFlag)
{
    MeetingForm form = goodForm();
    form.Text3.clear();
    EXPECT_FALSE(validateMeetingForm(form, MeetingCommand::Save));
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(test::scriptedPrompts().shownTexts(), QStringList{q(kLocation)});

    test::scriptedPrompts().clear();
    EXPECT_TRUE(validateMeetingForm(goodForm(), MeetingCommand::Add));
    EXPECT_FALSE(session().StopFlag);
    EXPECT_TRUE(test::scriptedPrompts().shownTexts().isEmpty());
}
