#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/values/SelectionForm.h"
#include "platform/profile.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

ACleanSelectionPM four()
{
    ACleanSelectionPM pm;
    pm.forms = polarisationForms({"RR", "LL", "RL"});
    AUVXFreqs freqs;
    for (int i = 0; i < 4; ++i) {
        UvIf one;
        one.offset.value = 16e6 * i;
        one.channelWidth.value = 8e6;
        one.bandwidth.value = 16e6;
        freqs.ifs.push_back(one);
    }
    pm.frequencies = AUVXFqTbl(8.4e9, 1, 2, {freqs});
    pm.infoStart = 3600;
    pm.infoStop = 7200;
    return pm;
}

std::string asText(const ACleanSelectionPM& pm)
{
    std::string text;
    for (const RecordEntry& entry : pm.entries())
        text += (text.empty() ? "" : " ") + entry.text;
    return text;
}

}  // namespace

TEST(Selection, FormsAreThoseOfTheHands)
{
    const struct {
        std::vector<std::string> products;
        std::vector<std::string> forms;
    } rows[] = {
        {{"RR", "LL", "RL", "LR"}, {"mean", "strict", "RR", "LL"}},
        {{"LL"}, {"mean", "LL"}},
        {{"XX", "YY"}, {"mean", "strict", "XX", "YY"}},
        {{"I"}, {"mean", "I"}},
        {{"RL", "LR"}, {}},
        {{}, {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(polarisationForms(row.products), row.forms);
}

TEST(Selection, BecomesWhatTheEngineTakes)
{
    ACleanSelectionPM pm = four();
    CleanParameters parameters;
    pm.groups = {{2, 3}, {0}};
    pm.start = 4320;
    pm.stop = 6480;
    pm.form = "LL";
    pm.giveTo(parameters);
    EXPECT_EQ(parameters.ifs, (std::vector<int>{0, 2, 3}));
    EXPECT_DOUBLE_EQ(parameters.start, 0.05);
    EXPECT_DOUBLE_EQ(parameters.end, 0.075);
    EXPECT_EQ(parameters.form, "LL");
    ACleanSelectionPM back = four();
    back.takeFrom(parameters);
    EXPECT_EQ(asText(back), "LL 1;3;4 4320 6480");
    // to the end of the data is with their last time, which an end would leave out
    pm.stop = 7200;
    pm.giveTo(parameters);
    EXPECT_GT(parameters.end * 86400, 7200.5);
    back.takeFrom(parameters);
    EXPECT_EQ(asText(back), "LL 1;3;4 4320 7200");
    pm.groups = {{2, 3}, {0, 1}};  // all of them
    pm.stop = pm.start;
    pm.giveTo(parameters);
    EXPECT_TRUE(parameters.ifs.empty() && parameters.start == parameters.end);

    MemoryFile file;
    ASSERT_TRUE(pm.Store(file) && file.seek(0));
    ACleanSelectionPM read;
    ASSERT_TRUE(read.Load(file));
    EXPECT_EQ(asText(read), asText(pm));
    const std::string profile = testing::TempDir() + "selection-form.ini";
    SetProfileFile(profile);
    ACleanSelectionPM kept;
    EXPECT_FALSE(kept.LoadFromINI(nullptr, "Clean", 1));
    EXPECT_TRUE(pm.StoreToINI(nullptr, "Clean", 1) && kept.LoadFromINI(nullptr, "Clean", 1));
    EXPECT_EQ(asText(kept), asText(pm));
    SetProfileFile("");
    std::filesystem::remove(profile);
    for (const char* const groups : {"1-2;x", "0", "1-", "1;;2"})
        EXPECT_FALSE(read.takeEntry({"CS GROUPS", groups})) << groups;
    EXPECT_FALSE(read.takeEntry({"CS TS", "1e400"}) || read.takeEntry({"CS FORM", "RX"}));
    EXPECT_EQ(asText(read), asText(pm));
}

TEST(Selection, RefusesAndNamesTheField)
{
    const struct {
        const char *start, *stop, *groups;
        int field;
        const char* record;
    } rows[] = {
        {"01:00:00", "02:00:00", "1;2;3;4", -1, "mean 1;2;3;4 0 0"},
        {"01:10:00", "01:50:00", "1-2;4", -1, "mean 1-2;4 4200 6600"},
        {"00:00:00", "99:00:00", "1", -1, "mean 1 0 356400"},  // more than there is
        {"", "02:00:00", "1", SelectionForm::start, ""},
        {"nan", "02:00:00", "1", SelectionForm::start, ""},
        {"1:99:00", "02:00:00", "1", SelectionForm::start, ""},
        {"01:00:00", "1e400", "1", SelectionForm::stop, ""},
        {"01:30:00", "01:30:00", "1", SelectionForm::stop, ""},
        {"02:00:00", "03:00:00", "1", SelectionForm::start, ""},
        {"-1:00:00", "01:00:00", "1", SelectionForm::stop, ""},
        {"01:00:00", "02:00:00", "1-3;3-4", SelectionForm::ifs, ""},
        {"01:00:00", "02:00:00", "", SelectionForm::ifs, ""},
    };
    for (const auto& row : rows) {
        SelectionForm form;
        form.setRecord(four());
        form.setText(SelectionForm::start, row.start);
        form.setText(SelectionForm::stop, row.stop);
        ACleanSelectionPM wanted = four();
        ASSERT_TRUE(wanted.takeEntry({"CS GROUPS", row.groups}));
        form.groups().Free();
        for (const std::vector<int>& group : wanted.groups) {
            ABitArray bits(4);
            for (const int i : group)
                bits.set(i, 1);
            form.groups().Add(bits);
        }
        const FormRefusal refusal = form.save();
        EXPECT_EQ(refusal.field, row.field) << row.start << " " << row.stop << " " << row.groups;
        EXPECT_EQ(refusal.isRefused(), row.field >= 0);
        EXPECT_EQ(asText(form.record()), *row.record ? row.record : asText(four()));
    }
    ACleanSelectionPM none = four();
    none.forms.clear();
    SelectionForm form;
    form.setRecord(none);
    EXPECT_EQ(form.save().field, SelectionForm::form);
    // groups of other data, and a form that these do not have
    ACleanSelectionPM other = four();
    other.form = "XX";
    other.groups = {{0, 7}};
    form.setRecord(other);
    EXPECT_FALSE(form.save().isRefused());
    EXPECT_EQ(asText(form.record()), "mean 1;2;3;4 0 0");
}

TEST(Selection, TellsOfIfsAndBeam)
{
    SelectionForm form;
    form.setRecord(four());
    EXPECT_EQ(form.note(SelectionForm::used), "All IFs are used.");
    EXPECT_EQ(form.note(SelectionForm::beam), "Beam and dirty map stay as they are.");
    ASSERT_TRUE(form.groups().DeleteItems(1, 2));
    EXPECT_EQ(form.note(SelectionForm::used), "IFs 2-3 are in no group and not used.");
    EXPECT_EQ(form.note(SelectionForm::beam).substr(0, 10), "A new beam");
    form.groups().Add(form.groups()(0));
    EXPECT_EQ(form.note(SelectionForm::used),
              "IF 1 is in two groups. Here an IF can be in one only.");
    form.setRecord(four());
    form.setText(SelectionForm::start, "01:30:00");
    EXPECT_EQ(form.note(SelectionForm::beam).substr(0, 10), "A new beam");
    form.takeWholeTime();
    EXPECT_EQ(form.note(SelectionForm::beam).substr(0, 4), "Beam");
}

}  // namespace pavane
