#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/values/CleanForm.h"
#include "pavane/dialogs/values/number_list.h"
#include "pavane/dialogs/values/typed_number.h"
#include "platform/profile.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <limits>

namespace pavane
{

namespace
{

/// Texts that are no number that any field takes.
constexpr const char* noNumbers[] = {"",     " ",     "abc",  "1 2", "nan", "inf",
                                     "-inf", "1e400", "0x10", "1,5", "--1", "1e"};

ACleanParameterPM other()
{
    ACleanParameterPM pm;
    CleanParameters& p = pm.parameters;
    p.width = 1024;
    p.height = 768;
    p.cell = 0.1;
    p.weighting = ImageWeighting::uniform;
    p.robust = -1.25;
    p.taper = 1.0 / 3;
    p.form = "LL";
    p.ifs = {0, 1, 3};
    p.start = 0.25;
    p.end = 1.5;
    p.shiftX = -12.5;
    p.shiftY = 1e-3;
    p.gain = 0.05;
    p.majorGain = 0.6;
    p.iterations = 123456789;
    p.threshold = 2.5;
    p.unit = ThresholdUnit::sigma;
    p.isAutoMask = 1;
    p.autoMaskSigma = 4;
    p.isMultiscale = 1;
    return pm;
}

struct CleanProfile : testing::Test {
    CleanProfile() { SetProfileFile(file); }
    ~CleanProfile() override
    {
        SetProfileFile("");
        std::filesystem::remove(file);
    }
    std::string file = testing::TempDir() + "clean-form.ini";
};

}  // namespace

TEST_F(CleanProfile, ComesBackFromProfileAndFile)
{
    const ACleanParameterPM pm = other();
    ASSERT_TRUE(pm.StoreToINI(nullptr, "Clean", 2));
    ACleanParameterPM read;
    EXPECT_FALSE(read.LoadFromINI(nullptr, "Clean", 1));
    EXPECT_EQ(read.parameters, CleanParameters());
    EXPECT_TRUE(read.LoadFromINI(nullptr, "Clean", 2));
    EXPECT_EQ(read.parameters, pm.parameters);
    // what cannot be leaves its field alone, the others are taken
    for (const char* const entry :
         {"CL NX2", "CL CELL2", "CL WT2", "CL FORM2", "CL IFS2", "CL AM2", "CL ITER2", "CL THU2"})
        for (const char* const text : {"", "17.5", "-1e400", "nan", "uniforms"}) {
            ASSERT_TRUE(pm.StoreToINI(nullptr, "Clean", 2));
            ASSERT_TRUE(WriteProfileString("Clean", entry, text));
            ACleanParameterPM damaged = pm;
            damaged.parameters.gain = 1;
            const bool isCell = std::string(entry) == "CL CELL2" && std::string(text) == "17.5";
            const bool isAllIfs = std::string(entry) == "CL IFS2" && !*text;
            EXPECT_EQ(damaged.LoadFromINI(nullptr, "Clean", 2), isCell || isAllIfs)
                << entry << " " << text;
            EXPECT_EQ(damaged.parameters.gain, pm.parameters.gain);
            EXPECT_EQ(damaged.parameters.width, pm.parameters.width);
        }
    MemoryFile stored;
    ASSERT_TRUE(pm.Store(stored));
    ASSERT_TRUE(other().Store(stored));
    ASSERT_TRUE(stored.seek(0));
    ACleanParameterPM loaded;
    EXPECT_TRUE(loaded.Load(stored) && loaded.Load(stored));
    EXPECT_EQ(loaded.parameters, pm.parameters);
    EXPECT_FALSE(loaded.Load(stored));
    // a length that nothing is behind, and a cut block
    for (const std::string& bytes :
         {std::string("\xff\xff\xff\xff", 4), stored.bytes().substr(0, 40), std::string("\2\0", 2),
          std::string("\x0c\0\0\0CL GAIN=9e9\n", 16)}) {
        MemoryFile cut(bytes);
        loaded = other();
        EXPECT_FALSE(loaded.Load(cut));
        EXPECT_EQ(loaded.parameters, pm.parameters);
    }
}

TEST(CleanForm, TakesWhatIsTyped)
{
    CleanForm form;
    form.setRecord(other());
    ASSERT_FALSE(form.save().isRefused());
    EXPECT_EQ(form.record().parameters, other().parameters);
    form.setText(CleanForm::width, "2048");
    form.setChoice(CleanForm::weighting, static_cast<int>(ImageWeighting::briggs));
    form.setText(CleanForm::robust, "0.5");
    form.setChoice(CleanForm::unit, 0);
    ASSERT_FALSE(form.save().isRefused());
    EXPECT_EQ(form.record().parameters.width, 2048);
    EXPECT_EQ(form.record().parameters.robust, 0.5);
    EXPECT_EQ(form.record().parameters.unit, ThresholdUnit::millijansky);
    // a child a cycle goes without what begins anew in each
    form.setChoice(CleanForm::stopsEachCycle, 1);
    EXPECT_FALSE(form.isEnabled(CleanForm::isAutoMask) || form.isEnabled(CleanForm::maskLevel) ||
                 form.isEnabled(CleanForm::isMultiscale));
    ASSERT_FALSE(form.save().isRefused());
    EXPECT_FALSE(form.record().parameters.isAutoMask || form.record().parameters.isMultiscale);
}

TEST(CleanForm, RefusesAndNamesTheField)
{
    constexpr int numbers[] = {CleanForm::width,      CleanForm::height,    CleanForm::cell,
                               CleanForm::robust,     CleanForm::taper,     CleanForm::shiftX,
                               CleanForm::shiftY,     CleanForm::gain,      CleanForm::majorGain,
                               CleanForm::iterations, CleanForm::threshold, CleanForm::maskLevel};
    ACleanParameterPM begin = other();
    begin.parameters.weighting = ImageWeighting::briggs;
    const auto refused = [&](int field, const CString& text) {
        CleanForm form;
        form.setRecord(begin);
        form.setText(field, text);
        const FormRefusal refusal = form.save();
        EXPECT_EQ(form.record().parameters, begin.parameters) << field << " '" << text << "'";
        EXPECT_EQ(form.note(CleanForm::beam), "");
        return refusal.isRefused() ? refusal.field : -1;
    };
    for (const int field : numbers)
        for (const char* const text : noNumbers)
            EXPECT_EQ(refused(field, text), field) << text;
    const struct {
        int field;
        const char* texts[4];
    } outside[] = {
        {CleanForm::width, {"511", "14", "32770", "-512"}},
        {CleanForm::height, {"512.5", "0", "1e300", "1e9"}},
        {CleanForm::cell, {"0", "-0.2", "1e9", "1e6"}},  // the last: wider than 27 degrees
        {CleanForm::robust, {"-5.1", "6", "1e300", "-1e300"}},
        {CleanForm::taper, {"-1", "1e9", "1e300", "-0.001"}},
        {CleanForm::shiftX, {"1e9", "-1e9", "1e300", "-1e300"}},
        {CleanForm::gain, {"0", "-0.1", "1.1", "1e-9"}},
        {CleanForm::majorGain, {"0", "-1", "2", "1e300"}},
        {CleanForm::iterations, {"-1", "0.5", "1e10", "1e300"}},
        {CleanForm::threshold, {"-1", "1e13", "-1e-9", "1e300"}},
        {CleanForm::maskLevel, {"0", "-5", "1e7", "0.01"}},
    };
    for (const auto& row : outside)
        for (const char* const text : row.texts)
            EXPECT_EQ(refused(row.field, text), row.field) << text;
    // what cannot be typed now is not judged
    CleanForm form;
    form.setRecord(begin);
    form.setText(CleanForm::robust, "abc");
    form.setChoice(CleanForm::weighting, 0);
    form.setText(CleanForm::maskLevel, "");
    form.setChoice(CleanForm::isAutoMask, 0);
    EXPECT_FALSE(form.save().isRefused());
    EXPECT_EQ(form.record().parameters.robust, begin.parameters.robust);
}

TEST(CleanForm, ProposesACellAndTellsOfTheBeam)
{
    ACleanParameterPM pm;
    pm.greatestUv = 2e8;  // a fringe of 1.031 mas
    CleanForm form;
    form.setRecord(pm);
    EXPECT_EQ(form.text(CleanForm::cell), "0.2");
    EXPECT_EQ(form.note(CleanForm::proposal), "proposed: 0.2 (finest fringe 1.031 mas)");
    EXPECT_EQ(form.note(CleanForm::extent), "The map shows 102.4 mas by 102.4 mas.");
    EXPECT_EQ(form.note(CleanForm::beam).substr(0, 10), "A new beam");  // there is none yet
    ASSERT_FALSE(form.save().isRefused());
    form.setRecord(form.record());
    EXPECT_EQ(form.note(CleanForm::beam), "Beam and dirty map stay as they are.");
    form.setText(CleanForm::iterations, "300");
    EXPECT_EQ(form.note(CleanForm::beam).substr(0, 4), "Beam");
    form.setText(CleanForm::cell, "0.1");
    EXPECT_EQ(form.note(CleanForm::beam).substr(0, 10), "A new beam");
    EXPECT_TRUE(form.takeProposal());
    EXPECT_EQ(form.note(CleanForm::beam).substr(0, 4), "Beam");

    form.setRecord({});
    EXPECT_EQ(form.text(CleanForm::cell), "");
    EXPECT_FALSE(form.takeProposal());
    EXPECT_EQ(form.save().field, CleanForm::cell);
}

TEST(NumberList, ReadsWhatItWrites)
{
    const struct {
        std::vector<int> numbers;
        const char* text;
    } rows[] = {{{}, ""}, {{0}, "1"}, {{0, 1, 2, 5}, "1-3,6"}, {{3, 5, 7}, "4,6,8"}};
    for (const auto& row : rows) {
        std::vector<int> read = {99};
        EXPECT_EQ(numberListText(row.numbers), row.text);
        EXPECT_TRUE(readNumberList(row.text, 8, read));
        EXPECT_EQ(read, row.numbers);
    }
    std::vector<int> read = {99};
    for (const char* const text :
         {"0", "9", "3-2", "1,,2", "1,1", "1-3,2", "a", "1-", "-1", "1e3", "1-999999999", "1;2"})
        EXPECT_FALSE(readNumberList(text, 8, read)) << text;
    EXPECT_EQ(read, std::vector<int>{99});
    EXPECT_TRUE(readNumberList(" 6, 1 - 3 ", 8, read));
    EXPECT_EQ(numberListText(read), "1-3,6");
    std::vector<std::vector<int>> lists;
    EXPECT_TRUE(readNumberLists("1-4;3-6", 8, lists));  // in two: judged by who uses them
    EXPECT_EQ(numberListsText(lists), "1-4;3-6");
    EXPECT_FALSE(readNumberLists("1-4;", 8, lists));
}

}  // namespace pavane
