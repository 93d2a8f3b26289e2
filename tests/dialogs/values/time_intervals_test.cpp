#include "containers/stored_file.h"
#include "pavane/dialogs/values/time_texts.h"
#include "pavane/dialogs/values/TimeIntervalForm.h"
#include "pavane/dialogs/values/TimeSteps.h"
#include "platform/profile.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tests/tessel/uvfits_text.h"

#include <cmath>
#include <random>

namespace pavane
{

namespace
{

std::string asText(const AUVXTIntervalPM& pm)
{
    std::string text;
    for (const double time :
         {pm.infoStart, pm.infoStop, pm.infoInterval, pm.start, pm.stop, pm.interval})
        text += timeText(time, 0) + " ";
    return text + std::to_string(pm.everyPoint);
}

AUVXTIntervalPM hour(double interval = 1000, int everyPoint = 0)
{
    AUVXTIntervalPM pm;
    pm.infoStop = 7200;
    pm.infoInterval = 10;
    pm.stop = 3600;
    pm.interval = interval;
    pm.everyPoint = everyPoint;
    return pm;
}

// Groups of the baselines 1-2, 1-3 and 2-3 at these seconds.
std::string groupsAt(const std::vector<float>& seconds)
{
    std::vector<TestGroup> groups;
    for (const float second : seconds)
        for (const float baseline : {258.0f, 259.0f, 515.0f})
            groups.push_back({second, baseline});
    return groupsHdu(groups);
}

}  // namespace

TEST(TimeIntervals, Record)
{
    AUVXTIntervalPM pm = hour();
    pm.everyPoint = -2;
    StoredFile file;
    ASSERT_TRUE(pm.Store(file));
    std::string bytes = file.bytes();
    EXPECT_EQ(bytes.size(), 56u);
    EXPECT_EQ(bytes.substr(46), std::string("\x8f\x40\xfe\xff\xff\xff\0\0\0\0", 10));
    EXPECT_EQ(bytes.substr(8, 8), std::string("\0\0\0\0\0\x20\xbc\x40", 8));
    AUVXTIntervalPM read;
    file.rewind();
    EXPECT_TRUE(read.Load(file));
    EXPECT_EQ(asText(read), "0 7200 10 0 3600 1000 -2");
    EXPECT_FALSE(read.Load(file));  // nothing follows
    file.rewind();
    file.failAfter(0);
    EXPECT_FALSE(read.Load(file));
    file.failAfter(0);
    EXPECT_FALSE(pm.Store(file));
    EXPECT_EQ(asText(read), "0 7200 10 0 3600 1000 -2");
    EXPECT_EQ(asText(AUVXTIntervalPM()), "0 0 0 0 0 0 1");
    std::mt19937 random(7);
    for (int turn = 0; turn < 300; ++turn) {
        for (char& byte : bytes)
            byte = turn % 3 ? static_cast<char>(random()) : '\xff';
        StoredFile hostile(bytes);
        AUVXTIntervalPM any = hour();
        const int isLoaded = any.Load(hostile);
        EXPECT_EQ(isLoaded, asText(any) != asText(hour()));
        EXPECT_FALSE(isLoaded && turn % 3 == 0);  // all of them no numbers
    }
}

TEST(TimeIntervals, Profile)
{
    SetProfileFile(testing::TempDir() + "intervals.ini");
    AUVXTIntervalPM pm = hour(0.1);
    ASSERT_TRUE(pm.StoreToINI(nullptr, "Step", 3));
    EXPECT_EQ(GetProfileString("Step", "TI TEI3") + GetProfileString("Step", "TI AT3"), "72000");
    EXPECT_EQ(GetProfileString("Step", "TI TD3"), "0.1");
    AUVXTIntervalPM read;
    EXPECT_TRUE(read.LoadFromINI(nullptr, "Step", 3));
    EXPECT_EQ(asText(read), asText(pm));
    EXPECT_FALSE(read.LoadFromINI(nullptr, "Step", 4));
    EXPECT_FALSE(read.LoadFromINI(nullptr, nullptr, 3));
    EXPECT_EQ(asText(read), asText(pm));
    const std::pair<const char*, const char*> bad[] = {{"TI TSI3", "x"},   {"TI TEI3", "1e999"},
                                                       {"TI TDI3", "nan"}, {"TI TS3", ""},
                                                       {"TI TE3", "inf"},  {"TI AT3", "1e300"}};
    for (const auto& [key, text] : bad)
        (void)WriteProfileString("Step", key, text);
    (void)WriteProfileString("Step", "TI TD3", "-2.5");
    EXPECT_FALSE(read.LoadFromINI(nullptr, "Step", 3));
    EXPECT_EQ(asText(read), "0 7200 10 0 3600 -2.5 1");
    SetProfileFile("");
}

TEST(TimeIntervals, OfADataFile)
{
    const auto index = [](float middle, float length, std::uint64_t subarray) {
        return bigEndian(middle / 86400) + bigEndian(length / 86400) + bigEndian(subarray, 4);
    };
    const std::string scans =
        tableHdu("AIPS NX", {{"TIME", "1E"}, {"TIME INTERVAL", "1E"}, {"SUBARRAY", "1J"}}, 12, 3,
                 index(115, 30, 1) + index(500, 40, 2) + index(60, 50, 1));
    const struct {
        std::string file;
        int subarray, selection;
        double start, stop, interval;  // stop 0: no data
    } rows[] = {
        {groupsAt({100, 110, 120, 130, 400, 410}), -1, -1, 100, 410, 10},
        {groupsAt({400, 120, 110, 410, 100, 130}), -1, -1, 100, 410, 10},  // in any order
        {groupsAt({90000, 90002.5f}), 1, 1, 90000, 90002.5, 2.5},
        {groupsAt({100, 120, 125, 130}) + scans, 1, -1, 35, 130, 5},
        {groupsAt({100, 120, 125, 130}) + scans, -1, -1, 35, 520, 5},
        {groupsAt({100, 110}) + scans, 1, 7, 0, 0, 0},
        {groupsAt({100, 110}), 2, -1, 0, 0, 0},
        {groupsAt({50}), -1, -1, 50, 50, 0},
        {groupsAt({NAN, NAN}), -1, -1, 0, 0, 0},
    };
    for (const auto& row : rows) {
        AUVXFile file;
        std::string error;
        ASSERT_TRUE(file.open(saved("intervals.uvfits", row.file), error)) << error;
        AUVXTIntervalPM pm = hour();
        EXPECT_EQ(pm.Load(file, row.subarray, row.selection), row.stop > 0);
        EXPECT_NEAR(pm.infoStart, row.start, 0.02);
        EXPECT_NEAR(pm.infoStop, row.stop, 0.02);
        EXPECT_NEAR(pm.infoInterval, row.interval, 1e-3);
        EXPECT_TRUE(pm.start == pm.infoStart && pm.stop == pm.infoStop &&
                    pm.interval == pm.infoInterval);
        EXPECT_EQ(asText(AUVXTIntervalPM(file, row.subarray, row.selection)).back(), '1');
    }
    AUVXFile closed;
    EXPECT_FALSE(AUVXTIntervalPM().Load(closed, -1, -1));
}

TEST(TimeIntervals, CommonestStep)
{
    const struct {
        std::vector<double> steps;
        double commonest;
    } rows[] = {{{}, 0},
                {{0, -5, NAN, INFINITY, 1e9}, 0},
                {{10, 20, 20, 300}, 20},
                {{30, 10}, 10},
                {{11.998, 12.003, 11.999, 30, 30}, 12},
                {{0.25, 0.25, 1}, 0.25},
                {{0.001, 0.002, 0.002}, 0.002}};
    for (const auto& row : rows) {
        TimeSteps steps;
        for (const double step : row.steps)
            steps.add(step);
        EXPECT_EQ(steps.commonest(), row.commonest);
    }
}

TEST(TimeIntervals, SaveRefuses)
{
    const struct {
        const char *start, *stop, *interval;
        int everyPoint, asClock;
        TimeField field;
        const char* message;
    } rows[] = {
        {"0", "3600", "900", 0, 0, TimeField::none, ""},
        {"-1:00:00", "00:30:00", "90.5", 0, 1, TimeField::none, ""},
        {"0", "3600", "0", 1, 0, TimeField::none, ""},
        {"0", "3600", "abc", 1, 0, TimeField::none, ""},
        {"0", "3600", "0", 0, 0, TimeField::interval, "Time interval can not be equevalence 0."},
        {"0", "3600", "-5", 0, 0, TimeField::interval, "Time interval can not be equevalence 0."},
        {"100", "100", "0", 0, 0, TimeField::interval, "Time interval can not be equevalence 0."},
        {"100", "100", "1", 0, 0, TimeField::stop, "Start time must be <= stop time."},
        {"9000", "100", "1", 0, 0, TimeField::stop, "Start time must be <= stop time."},
        {"7200", "9000", "1", 0, 0, TimeField::start, "Invalid start time."},
        {"24:60:61", "", "", 0, 1, TimeField::start, "Invalid start time."},
        {"nan", "1", "1", 0, 0, TimeField::start, "Invalid start time."},
        {"0", "1e999", "0", 0, 0, TimeField::stop, "Invalid stop time."},
        {"0", "1e308", "1", 0, 1, TimeField::stop, "Invalid stop time."},
        {"0", "1e308", "1", 0, 0, TimeField::none, ""},
        {"0", "", "1", 0, 0, TimeField::stop, "Invalid stop time."},
        {"0", "3600", "10 s", 0, 0, TimeField::interval, "Invalid time interval."},
        {"01:00:00", "3600", "1", 0, 0, TimeField::start, "Invalid start time."},
    };
    for (const auto& row : rows) {
        TimeIntervalForm form;
        form.setRecord(hour(), row.asClock);
        form.setText(TimeField::start, row.start);
        form.setText(TimeField::stop, row.stop);
        form.setText(TimeField::interval, row.interval);
        form.setEveryPoint(row.everyPoint);
        const TimeRefusal refusal = form.save();
        EXPECT_EQ(refusal.field, row.field) << row.start << " " << row.stop << " " << row.interval;
        EXPECT_STREQ(refusal.message, row.message);
        if (refusal.field != TimeField::none)
            EXPECT_EQ(asText(form.record()), asText(hour()));
        else
            EXPECT_EQ(form.record().everyPoint, row.everyPoint);
    }
}

TEST(TimeIntervals, FormsAndCounts)
{
    TimeIntervalForm form;
    form.setRecord(hour(90.5), 1);
    EXPECT_EQ(form.text(TimeField::stop) + " " + form.text(TimeField::interval),
              "01:00:00 00:01:30.5");
    form.setText(TimeField::start, "1e2");
    form.setClock(0);
    form.setClock(0);
    EXPECT_EQ(form.text(TimeField::start) + " " + form.text(TimeField::interval), "1e2 90.5");
    form.setClock(1);
    EXPECT_EQ(form.text(TimeField::start) + " " + form.text(TimeField::stop), "00:01:40 01:00:00");
    EXPECT_EQ(form.info(TimeField::stop) + form.info(TimeField::interval), 7210);
    const struct {
        double start, stop, interval;
        int count;  // 0: refused
        const char* text;
    } counts[] = {{0, 3600, 1000, 4, "4 intervals, the last one shorter"},
                  {0, 3600, 900, 4, "4 intervals"},
                  {0, 3600, 9000, 1, "1 interval"},
                  {0, 0.3, 0.1, 3, "3 intervals"},
                  {0, 3600, 3600.0 / 5143, 5143, "5143 intervals"},
                  {-1e308, 1e308, 1e-308, 1000000, ""},
                  {0, 1, 0, 0, ""},
                  {5, 5, 1, 0, ""}};
    for (const auto& row : counts)
        for (const int asClock : {0, row.stop < 1e9 ? 1 : 0}) {
            AUVXTIntervalPM pm = hour(row.interval);
            pm.start = row.start;
            pm.stop = row.stop;
            form.setRecord(pm, asClock);
            int count = 0;
            const TimeRefusal refusal = form.proposeCount(count);
            EXPECT_EQ(refusal.field == TimeField::none, row.count > 0);
            EXPECT_EQ(count, row.count) << row.interval;
            EXPECT_EQ(form.countText(), row.text);
        }
    form.setRecord(hour(), 1);
    for (const char* const none : {"0", "-1", "", "2147483648", "1000001", "4.5", "x"})
        EXPECT_FALSE(form.applyCount(none)) << none;
    EXPECT_TRUE(form.applyCount("4"));
    EXPECT_EQ(form.text(TimeField::interval), "00:15:00");
    form.setEveryPoint(1);
    EXPECT_EQ(form.countText(), "every point by itself");
}

TEST(TimeIntervals, RangesOfACommandLine)
{
    CString error;
    TimeRange range;
    const struct {
        const char* text;
        double start, stop;
    } rows[] = {{"01:00:00,02:30:00", 3600, 9000},
                {"1/00:00:30,1/12:00:00", 86430, 129600},
                {"1e2,3600.5", 100, 3600.5},
                {",25:00:00", -INFINITY, 90000},
                {"10,", 10, INFINITY},
                {"-1:00:00,0", -3600, 0}};
    for (const auto& row : rows) {
        EXPECT_TRUE(readTimeRange(row.text, range, error)) << error;
        EXPECT_TRUE(range.start == row.start && range.stop == row.stop) << row.text;
    }
    for (const char* const none : {"2,1", "1,1", ",", "", "5", "24:60:61,9e9", "nan,1", "1,inf",
                                   "1,2,3", "-1/00:00:00,9", "1/,9", "1/-1:00:00,9e9", "abc,1"})
        EXPECT_FALSE(readTimeRange(none, range, error)) << none;
    EXPECT_EQ(range.start, -3600);
}

}  // namespace pavane
