#include "containers/stored_file.h"
#include "pavane/trackers/AAreaTracker.h"
#include "tests/trackers/made_tracker.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>

using namespace pavane;
using namespace pavane::test;

namespace
{

using Tracker = std::unique_ptr<ATracker>;

std::string hex(const std::string& bytes)
{
    const char* const digits = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

/// A shape of every class, with a different number in every field.
Tracker sample(const std::string& name)
{
    if (name == "ARectTracker")
        return madeTracker(name, {{}, {1, 2, 258, -1}, 0, {}});
    return name.starts_with("ARP")
               ? madeTracker(name, {{}, {1, 2, -0.5, 3}, -0.5, {{1, 3}, {-0.5, 3}, {2, 3}}})
               : madeTracker(name, {{}, {1, 2, 258, 4}, -0.5, {{1, 2}, {-1, 256}}});
}

const std::string head = "2d000000"
                         "06000000"
                         "00000000000000000000000000000000"
                         "00000000000000000000000000000000"
                         "00000000000000000000000000000000";
const std::string one = "000000000000f03f", two = "0000000000000040", three = "0000000000000840",
                  minusHalf = "000000000000e0bf";
const std::string pixelBox = "01000000020000000201000004000000", eight = "0800000008000000",
                  fifteen = "0f000000", box = one + two + minusHalf + three;

const struct {
    const char* name;
    std::size_t bytes;
    std::string tail;
} records[] = {
    {"ARectTracker", 84, "010000000200000002010000ffffffff0c0000000c00000000000000"},
    {"ARotateRectTracker", 92, pixelBox + minusHalf + eight + fifteen},
    {"AEllipseTracker", 92, pixelBox + minusHalf + eight + fifteen},
    {"AAreaTracker", 76, "020000000100000002000000ffffffff00010000"},
    {"ARPRectTracker", 100, box + "0c0000000c00000000000000"},
    {"ARPRotateRectTracker", 112, box + minusHalf + eight + fifteen + "00000000"},
    {"ARPEllipseTracker", 112, box + minusHalf + eight + fifteen + "00000000"},
    {"ARPAreaTracker", 108, "03000000" + one + three + minusHalf + three + two + three},
};

}  // namespace

TEST(TrackerRecord, HasTheseBytesForEveryClass)
{
    for (const auto& record : records) {
        const Tracker shape = sample(record.name);
        ASSERT_TRUE(shape) << record.name;
        EXPECT_STREQ(shape->GetClassName(), record.name);
        EXPECT_EQ(shape->State().size(), record.bytes) << record.name;
        EXPECT_EQ(hex(shape->State()), head + record.tail) << record.name;
        const Tracker copy(shape->Duplicate());
        EXPECT_EQ(copy->State(), shape->State()) << record.name;
        const Tracker loaded(CreateTracker(record.name));
        EXPECT_TRUE(loaded->SetState(shape->State())) << record.name;
        EXPECT_EQ(loaded->State(), shape->State()) << record.name;
        // only a polygon may be open
        EXPECT_EQ(shape->IsReady() != 0, !std::strstr(record.name, "Area")) << record.name;
    }
    EXPECT_EQ(CreateTracker("ATracker"), nullptr);
}

TEST(TrackerRecord, HoldsTheValidRectangleTwiceAndTakesTheSecond)
{
    std::string bytes = sample("ARectTracker")->State();
    bytes[8] = 5;   // left of the first copy
    bytes[24] = 7;  // of the second
    bytes[40] = 9;  // of the clip rectangle
    const Tracker shape(CreateTracker("ARectTracker"));
    ASSERT_TRUE(shape->SetState(bytes));
    EXPECT_EQ(shape->validRect().left, 7);
    EXPECT_EQ(shape->clipRect().left, 9);
}

TEST(TrackerRecord, FailsWithAnyReadOrWriteAndAtAnyLength)
{
    for (const auto& record : records) {
        const Tracker shape = sample(record.name);
        const std::string bytes = shape->State();
        for (std::size_t n = 0; n < bytes.size(); ++n) {
            const Tracker loaded = sample(record.name);
            loaded->SetStyle(1);
            const std::string before = loaded->State();
            EXPECT_FALSE(loaded->SetState(bytes.substr(0, n))) << record.name << n;
            EXPECT_EQ(loaded->State(), before) << record.name << n;
        }
        for (int failing = 0;; ++failing) {
            int done = 0;
            {
                StoredFile out;
                out.failAfter(failing);
                done = shape->Store(out);
                EXPECT_EQ(done, out.bytes() == bytes) << record.name << failing;
            }
            StoredFile in(bytes);
            in.failAfter(failing);
            const int loaded = Tracker(CreateTracker(record.name))->Load(in);
            EXPECT_EQ(loaded, in.left() == 0) << record.name << failing;
            if (done && loaded)
                break;
        }
    }
}

TEST(TrackerRecord, IsRefusedWithNumbersThatNoTrackerHas)
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    const struct {
        const char* name;
        std::size_t at;
        int number;
    } ints[] = {{"ARectTracker", 4, 0},          {"ARectTracker", 4, -6},
                {"AAreaTracker", 4, 2147483647}, {"ARectTracker", 72, -1},
                {"ARectTracker", 76, 40000},     {"ARotateRectTracker", 80, -8},
                {"AEllipseTracker", 88, -15},    {"AEllipseTracker", 88, 361},
                {"AAreaTracker", 56, 3},         {"AAreaTracker", 56, 2147483647},
                {"ARPRectTracker", 88, -1},      {"ARPEllipseTracker", 96, -1},
                {"ARPEllipseTracker", 104, -1},  {"ARPAreaTracker", 56, 4}};
    for (const auto& c : ints) {
        std::string bytes = sample(c.name)->State();
        bytes.replace(c.at, 4, reinterpret_cast<const char*>(&c.number), 4);
        EXPECT_FALSE(Tracker(CreateTracker(c.name))->SetState(bytes)) << c.name << c.at;
    }
    const struct {
        const char* name;
        std::size_t at;
    } doubles[] = {{"ARotateRectTracker", 72}, {"ARPRectTracker", 56},    {"ARPRectTracker", 80},
                   {"ARPEllipseTracker", 64},  {"ARPEllipseTracker", 88}, {"ARPAreaTracker", 100}};
    for (const auto& c : doubles)
        for (const double number : {notANumber, infinite}) {
            std::string bytes = sample(c.name)->State();
            bytes.replace(c.at, 8, reinterpret_cast<const char*>(&number), 8);
            EXPECT_FALSE(Tracker(CreateTracker(c.name))->SetState(bytes)) << c.name << c.at;
        }
}

TEST(TrackerRegistry, TakesClassesOfAHost)
{
    const auto maker = [] { return static_cast<ATracker*>(new AAreaTracker()); };
    EXPECT_FALSE(RegisterTrackerClass("", maker));
    EXPECT_FALSE(RegisterTrackerClass("A234567890123456789012345678901X", maker));
    EXPECT_FALSE(RegisterTrackerClass("HostTracker", nullptr));
    EXPECT_TRUE(RegisterTrackerClass("HostTracker", maker));
    EXPECT_TRUE(Tracker(CreateTracker("HostTracker")));
}
