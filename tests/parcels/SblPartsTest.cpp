#include "parcels/SblParts.h"

#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo::parcels;

namespace {

using pvardo::test::q;

SblBoxes boxes(
    const char* section, const char* block, const char* lot, const char* sublot1, const char* sublot2)
{
    return SblBoxes{q(section), q(block), q(lot), q(sublot1), q(sublot2)};
}

} // namespace

TEST(SblParts, MakeSblFromBoxes)
{
    struct Case
    {
        SblBoxes boxes;
        const char* full;
    };
    const Case cases[] = {
        {boxes("", "", "", "", ""), "0-0-0-0-0-0-0-0"},
        {boxes("   ", " ", "", "", ""), "0-0-0-0-0-0-0-0"},
        {boxes("12.34", "1", "5", "", ""), "12-34-0-1-5-0-0-0"},
        {boxes("12", "1", "5", "1", ""), "12-0-0-1-5-1-0-0"},
        {boxes("12.34", "1", "5", "1", "2"), "12-34-0-1-5-1-2-0"},
        // Typed text is not trimmed, only tested for blanks; letters go upper case.
        {boxes("43", "12", "24", "c", ""), "43-0-0-12-24-C-0-0"},
        {boxes(" 7", "2 ", "3", "", ""), " 7-0-0-2 -3-0-0-0"},
        // Only the first point splits the section.
        {boxes("1.2.3", "4", "5", "", ""), "1-2.3-0-4-5-0-0-0"},
        {boxes("12.", "1", "5", "", ""), "12--0-1-5-0-0-0"},
    };
    for (const Case& c : cases) {
        SblParts parts;
        EXPECT_EQ(parts.MakeSBL(c.boxes), q(c.full)) << c.full;
    }
}

TEST(SblParts, FullToShort)
{
    const std::pair<const char*, const char*> cases[] = {
        {"12-34-0-1-5-0-0-0", "12.34-1-5"},
        {"12-34-0-1-5-1-0-0", "12.34-1-5.1"},
        {"0-0-0-0-0-0-0-0", "0-0-0"},
        {"269-78-0-6-142-12-8-0", "269.78-6-142.12.8"},
        {"43-0-0-12-24-c-0-0", "43-12-24.C"},
        // Position 3 stands as a dash part of its own; position 8 after a point.
        {"12-0-7-1-5-0-0-0", "12-7-1-5"},
        {"12-0-0-1-5-0-0-9", "12-1-5.9"},
        {"12-0-0-1-5-0-0-0-0", "12-1-5"},
        {"1-2-3-4-5-6-7", "invalid SBL"},
        {"12.34-1-5", "invalid SBL"},
        {"ABC", "invalid SBL"},
        {"", "invalid SBL"},
    };
    for (const auto& [full, shortForm] : cases) {
        SblParts parts;
        EXPECT_EQ(parts.mysbl2SBL(q(full)), q(shortForm)) << full;
    }
}

TEST(SblParts, FullToShortKeepsTheSlotOfAnOverlongPart)
{
    // A part of seven places is not read: its slot keeps what the previous
    // conversion left there, and the reader stays on it.
    SblParts parts;
    EXPECT_EQ(parts.mysbl2SBL(q("12-34-0-1-5-0-0-0")), q("12.34-1-5"));
    EXPECT_EQ(parts.mysbl2SBL(q("1234567-0-0-0-0-0-0-0")), q("12.34-1-5.1234567-0-0-0-0-0-0-0"));
}

TEST(SblParts, ShortToFull)
{
    const std::pair<const char*, const char*> cases[] = {
        {"12.34-1-5", "12-34-0-1-5-0-0-0"},
        {"12.34-1-5.1", "12-34-0-1-5-1-0-0"},
        {"12.34-1-5.1.2", "12-34-0-1-5-1-2-0"},
        {"0-0-0", "0-0-0-0-0-0-0-0"},
        {"43-12-24.c", "43-0-0-12-24-C-0-0"},
        {"059.26-1-118.5", "059-26-0-1-118-5-0-0"},
        {"ABC", "invalid SBL"},
        {"", "invalid SBL"},
        // No second dash: the block is read from the fifth character.
        {"1234-5", "1234-0-0--5-0-0-0"},
        {"12-5", "12-0-0--0-0-0-0"},
        {"12-345", "12-0-0-45-0-0-0-0"},
        // More than seven dashes in the result are cut once at the last.
        {"1-2-3-4", "1-0-0-2-3-4-0-0"},
        {"1-2-3-4-5", "1-0-0-2-3-4-5-0-0"},
        // A section or block of more than nine places is no parcel number.
        {"1234567890-1-2", "invalid SBL"},
        {"123456789-1-2", "123456789-0-0-1-2-0-0-0"},
        {"1-1234567890-2", "invalid SBL"},
    };
    for (const auto& [shortForm, full] : cases) {
        SblParts parts;
        EXPECT_EQ(parts.myssbl2SBL(q(shortForm)), q(full)) << shortForm;
    }
}

TEST(SblParts, RoundTripThroughTheBoxes)
{
    SblParts parts;
    const QString full = parts.MakeSBL(boxes("12.34", "1", "5", "", ""));
    EXPECT_EQ(full, q("12-34-0-1-5-0-0-0"));
    const QString shortForm = parts.mysbl2SBL(full);
    EXPECT_EQ(shortForm, q("12.34-1-5"));
    EXPECT_EQ(parts.myssbl2SBL(shortForm), full);
    EXPECT_EQ(parts.ExtractSBL(full), boxes("12.34", "1", "5", "", ""));
}

TEST(SblParts, ExtractSblToBoxes)
{
    const std::pair<const char*, SblBoxes> cases[] = {
        {"12-34-0-1-5-1-0-0", boxes("12.34", "1", "5", "1", "")},
        {"12-0-0-1-5-0-0-0", boxes("12", "1", "5", "", "")},
        {"0-0-0-0-0-0-0-0", boxes("", "", "", "", "")},
        {"43-0-0-12-24-c-0-0", boxes("43", "12", "24", "C", "")},
        {"269-78-0-6-142-12-8-0", boxes("269.78", "6", "142", "12", "8")},
        // No dash: every box stays blank.
        {"12345", boxes("", "", "", "", "")},
        // A first part of seven places: the reader never moves off it.
        {"1234567-1-0-2-3-0-0-0", boxes("", "", "", "", "")},
        // The reader stops where the dashes end.
        {"12-3", boxes("12", "", "", "", "")},
    };
    for (const auto& [full, expected] : cases) {
        SblParts parts;
        EXPECT_EQ(parts.ExtractSBL(q(full)), expected) << full;
    }
}

TEST(SblParts, ExtractSblIgnoresWhatAnEarlierConversionLeft)
{
    SblParts parts;
    parts.MakeSBL(boxes("12.34", "1", "5", "1", "2"));
    EXPECT_EQ(parts.ExtractSBL(q("1234567-1-0-2-3-0-0-0")), boxes("", "", "", "", ""));
}

TEST(SblParts, TrimSblRemovesFivePairsAtMost)
{
    const std::pair<const char*, const char*> cases[] = {
        {"12-34-0-1-5-1-0-0", "12-34-0-1-5-1"},
        {"10-0-0-0-0-0-0-0", "10-0-0"},
        {"0-0-0-0-0-0-0-0", "0-0-0"},
        {"12-34-0-1-5-1-2-3", "12-34-0-1-5-1-2-3"},
        {"12-34-0-1-50-0-0-0", "12-34-0-1-50"},
    };
    for (const auto& [full, trimmed] : cases) {
        EXPECT_EQ(SblParts::TrimSBL(q(full)), q(trimmed)) << full;
    }
}

TEST(SblParts, FilledAndCriteria)
{
    EXPECT_FALSE(SblParts::SBLfilled(boxes("", " ", "  ", "", "")));
    EXPECT_TRUE(SblParts::SBLfilled(boxes("", "", "", "", "2")));

    EXPECT_EQ(SblParts::SBL2SQL(boxes("", "", "", "", "")), q("[SEC] = '0' AND [BLK] = '0' AND"));
    EXPECT_EQ(SblParts::SBL2SQL(boxes(" 12.34 ", "1", " 5 ", "", "")),
        q("[SEC] = '12' AND[SUD] = '34' AND[BLK] = '1' AND[LOT] = '5' AND"));
    EXPECT_EQ(SblParts::SBL2SQL(boxes("", "", "", "1", "2")), q("[LOD] = '1' AND[SUB] = '2' AND"));
}
