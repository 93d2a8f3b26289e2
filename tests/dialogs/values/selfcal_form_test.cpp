#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/values/SelfCalForm.h"
#include "platform/profile.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

ASelfCalPM other()
{
    ASelfCalPM pm;
    pm.antennas = {"EF", "LA", "PT", "KP"};
    pm.kind = GainKind::both;
    pm.seconds = 0.1;
    pm.isScaled = 0;
    pm.leastRatio = 5.5;
    pm.leastAntennas = 3;
    pm.references = {"PT", "EF"};
    pm.leastUv = 1.5e6;
    pm.mostUv = 2e8;
    pm.model = SelfCalModel::components;
    pm.usesWeights = 0;
    pm.changesWeights = 0;
    pm.keepsFailed = 1;
    return pm;
}

std::string asText(const ASelfCalPM& pm)
{
    std::string text;
    for (const RecordEntry& entry : pm.entries())
        text += entry.key + "=" + entry.text + ";";
    return text;
}

}  // namespace

TEST(SelfCal, ComesBackFromProfileAndFile)
{
    const std::string file = testing::TempDir() + "selfcal-form.ini";
    SetProfileFile(file);
    const ASelfCalPM pm = other();
    ASelfCalPM read;
    EXPECT_TRUE(pm.StoreToINI(nullptr, "Calibration", 1));
    EXPECT_TRUE(read.LoadFromINI(nullptr, "Calibration", 1));
    EXPECT_EQ(asText(read), asText(pm));
    EXPECT_NE(asText(read), asText({}));
    for (const char* const entry : {"SC KIND1", "SC SEC1", "SC ANT1", "SC UVM1", "SC KEEP1"}) {
        ASSERT_TRUE(WriteProfileString("Calibration", entry, "-1e400"));
        EXPECT_FALSE(read.LoadFromINI(nullptr, "Calibration", 1)) << entry;
        EXPECT_EQ(asText(read), asText(pm));
    }
    MemoryFile stored;
    ASSERT_TRUE(pm.Store(stored) && stored.seek(0));
    ASelfCalPM loaded;
    EXPECT_TRUE(loaded.Load(stored));
    EXPECT_EQ(asText(loaded), asText(pm));
    SetProfileFile("");
    std::filesystem::remove(file);
}

TEST(SelfCal, OrdersReferences)
{
    SelfCalForm form;
    form.setRecord(other());
    const auto names = [&] {
        std::string all;
        for (const SelfCalForm::Antenna& each : form.antennas())
            all += each.name + (each.isOn ? "+ " : " ");
        return all;
    };
    EXPECT_EQ(names(), "PT+ EF+ LA KP ");
    EXPECT_EQ(form.move(0, -1), 0);
    EXPECT_EQ(form.move(3, 1), 3);
    EXPECT_EQ(form.move(3, -1), 2);
    EXPECT_EQ(form.move(-1, 1), -1);
    form.setOn(2, 1);
    form.setOn(99, 1);
    EXPECT_EQ(form.move(0, 1), 1);
    EXPECT_EQ(names(), "EF+ PT+ KP+ LA ");
    EXPECT_EQ(form.note(SelfCalForm::first), "Phase 0: EF, else the next one that is marked.");
    ASSERT_FALSE(form.save().isRefused());
    // one of another array is kept, and not asked for
    ASelfCalPM chosen = form.record();
    chosen.references.emplace_back("WB");
    const SelfCalibrationRules rules = chosen.rules();
    EXPECT_EQ(rules.references, (std::vector<std::string>{"EF", "PT", "KP"}));
    EXPECT_EQ(rules.gains.interval.kind, GainKind::both);
    EXPECT_EQ(rules.gains.interval.leastRatio, 5.5);
    EXPECT_EQ(rules.gains.interval.leastAntennas, 3);
    EXPECT_EQ(rules.weightPower, 0);
    EXPECT_EQ(rules.greatestUv, 2e8);
    EXPECT_FALSE(rules.gains.isScaled);
}

TEST(SelfCal, RefusesAndNamesTheField)
{
    const struct {
        int field;
        std::vector<const char*> texts;
    } rows[] = {
        {SelfCalForm::seconds, {"", "abc", "nan", "1e400", "0", "-60", "inf"}},
        {SelfCalForm::leastRatio, {"", "x", "nan", "1e400", "-1"}},
        {SelfCalForm::leastAntennas, {"", "2", "3.5", "-4", "nan", "1e400", "5"}},  // of four
        {SelfCalForm::leastUv, {"", "-1", "abc", "1e400"}},
        {SelfCalForm::mostUv, {"abc", "-1", "nan", "1", "1.5"}},  // the least is 1.5
    };
    for (const auto& row : rows)
        for (const char* const text : row.texts) {
            SelfCalForm form;
            form.setRecord(other());
            form.setText(row.field, text);
            EXPECT_EQ(form.save().field, row.field) << row.field << " '" << text << "'";
            EXPECT_EQ(asText(form.record()), asText(other()));
        }
    SelfCalForm form;
    form.setRecord(other());
    form.setText(SelfCalForm::mostUv, " ");
    form.setText(SelfCalForm::seconds, "no");
    form.setChoice(SelfCalForm::isWhole, 1);
    EXPECT_FALSE(form.save().isRefused());
    EXPECT_EQ(form.record().mostUv, 0);
    EXPECT_GT(form.record().rules().greatestUv, 1e300);
    EXPECT_EQ(form.record().seconds, 0.1);
    EXPECT_TRUE(form.isEnabled(SelfCalForm::isScaled));
    form.setChoice(SelfCalForm::kind, 0);
    EXPECT_FALSE(form.isEnabled(SelfCalForm::isScaled));
}

TEST(SelfCal, TellsHowTimeIsCut)
{
    ASelfCalPM pm = other();
    pm.integration = 2;
    pm.span = 3600;
    const struct {
        const char* seconds;
        int isWhole;
        const char* begin;
    } rows[] = {{"60", 0, "Each scan"},
                {"1", 0, "Shorter than an integration of 2 s"},
                {"3600", 0, "Longer"},
                {"60", 1, "One gain"},
                {"x", 0, ""}};
    for (const auto& row : rows) {
        SelfCalForm form;
        form.setRecord(pm);
        form.setText(SelfCalForm::seconds, row.seconds);
        form.setChoice(SelfCalForm::isWhole, row.isWhole);
        const CString note = form.note(SelfCalForm::count);
        EXPECT_EQ(note.substr(0, CString(row.begin).size()), row.begin);
        EXPECT_EQ(note.empty(), !*row.begin);
    }
}

}  // namespace pavane
