#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/values/AAreaSets.h"
#include "pavane/dialogs/values/ABeamShapePM.h"
#include "pavane/dialogs/values/area_files.h"
#include "pavane/dialogs/values/base64.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "platform/profile.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>

namespace pavane
{

namespace
{

constexpr AreaMap map{TMinMax{0, 63, 0, 63}, 64, 64};

void add(AreaCollection& areas, AreaShape::Kind kind, double x, double width)
{
    AreaShape shape;
    shape.kind = kind;
    shape.centre = {x, 20};
    shape.width = width;
    shape.height = 6;
    ASSERT_GE(areas.add(shape, AMnMxMCTransform(map.range, map.rows, map.columns)), 0);
}

void fill(AreaCollection& areas, int count)
{
    for (int i = 0; i < count; ++i)
        add(areas, i % 2 ? AreaShape::Kind::ellipse : AreaShape::Kind::rectangle, 10 + 8 * i, 6);
}

std::string bytesOf(const AreaCollection& areas)
{
    MemoryFile file;
    EXPECT_TRUE(areas.Store(file));
    return file.bytes();
}

std::string asText(const AAreaSets& sets)
{
    std::string text;
    for (int i = 0; i < sets.count(); ++i)
        text += sets.name(i) + ":" + std::to_string(sets.areas(i)) + " ";
    return text;
}

struct AreaSets : testing::Test {
    AreaSets()
    {
        std::filesystem::create_directory(folder);
        fill(two, 2);
        fill(three, 3);
    }
    ~AreaSets() override { std::filesystem::remove_all(folder); }
    std::string folder = testing::TempDir() + "area sets";
    AreaCollection two, three;
    AAreaSets sets;
    CString error;
};

}  // namespace

TEST_F(AreaSets, AreKeptUnderNames)
{
    EXPECT_EQ(sets.keep("core", two, error), 0);
    EXPECT_EQ(sets.keep("with the jet", three, error), 1);
    EXPECT_EQ(sets.keep("Core", three, error), 0);  // the same name
    EXPECT_EQ(asText(sets), "Core:3 with the jet:3 ");
    for (const CString& name : {CString(), CString(" core"), CString("core\n"), CString(65, 'a')}) {
        EXPECT_EQ(sets.keep(name, two, error), -1) << name;
        EXPECT_FALSE(error.empty());
        error.clear();
        EXPECT_FALSE(sets.rename(1, name, error)) << name;
    }
    EXPECT_FALSE(sets.rename(1, "CORE", error));
    EXPECT_FALSE(sets.rename(2, "jet", error) || sets.remove(2) || sets.remove(-1));
    EXPECT_TRUE(sets.rename(0, "core", error) && sets.rename(1, "jet", error));
    EXPECT_EQ(asText(sets), "core:3 jet:3 ");
    AreaCollection areas;
    fill(areas, 1);
    const std::string before = bytesOf(areas);
    EXPECT_FALSE(sets.give(2, areas));
    EXPECT_TRUE(sets.give(1, areas));
    EXPECT_EQ(bytesOf(areas), bytesOf(three));
    EXPECT_TRUE(areas.undo());
    EXPECT_EQ(bytesOf(areas), before);
    EXPECT_TRUE(sets.remove(0));
    EXPECT_EQ(asText(sets), "jet:3 ");
}

TEST_F(AreaSets, ComeBackFromFileAndProfile)
{
    (void)sets.keep("core", two, error);
    (void)sets.keep("with the jet", three, error);
    (void)sets.keep("nothing", AreaCollection(), error);
    MemoryFile file;
    ASSERT_TRUE(sets.Store(file) && file.seek(0));
    AAreaSets read;
    ASSERT_TRUE(read.Load(file));
    EXPECT_EQ(asText(read), "core:2 with the jet:3 nothing:0 ");
    AreaCollection areas;
    EXPECT_TRUE(read.give(1, areas));
    EXPECT_EQ(bytesOf(areas), bytesOf(three));
    // cut or changed anywhere it is refused, or still a whole value; never half of one
    std::mt19937 random(7);
    for (std::size_t length = 0; length < file.bytes().size(); ++length) {
        MemoryFile cut(file.bytes().substr(0, length));
        AAreaSets part = read;
        EXPECT_FALSE(part.Load(cut)) << length;
        EXPECT_EQ(asText(part), asText(read));
        std::string changed = file.bytes();
        changed[length] = static_cast<char>(random());
        MemoryFile other(changed);
        const std::string before = asText(part);
        if (!part.Load(other)) {
            EXPECT_EQ(asText(part), before);
        }
    }

    SetProfileFile(folder + "/sets.ini");
    ASSERT_TRUE(sets.StoreToINI(nullptr, "Areas", 1));
    AAreaSets kept;
    EXPECT_FALSE(kept.LoadFromINI(nullptr, "Areas", 2));
    EXPECT_TRUE(kept.LoadFromINI(nullptr, "Areas", 1));
    EXPECT_EQ(asText(kept), asText(sets));
    ASSERT_TRUE(WriteProfileString("Areas", "AS DATA1.2", "!!!!"));
    EXPECT_FALSE(kept.LoadFromINI(nullptr, "Areas", 1));
    EXPECT_EQ(asText(kept), "core:2 nothing:0 ");
    ASSERT_TRUE(kept.StoreToINI(nullptr, "Areas", 1));
    EXPECT_TRUE(kept.LoadFromINI(nullptr, "Areas", 1));
    SetProfileFile("");
}

TEST_F(AreaSets, GoThroughFilesOfEachForm)
{
    const struct {
        const char* name;
        int isSame, hasLosses;
    } rows[] = {{"a.areas", 1, 0}, {"a.reg", 0, 0}, {"A.CRTF", 0, 0}, {"a.cma", 0, 1}};
    for (const auto& row : rows) {
        const std::string file = folder + "/" + row.name;
        EXPECT_EQ(!lossesOfAreas(file, map, three).lines.empty(), row.hasLosses) << row.name;
        ASSERT_TRUE(writeAreas(file, map, three, error)) << error;
        AreaCollection read;
        RegionNotes notes;
        fill(read, 1);
        ASSERT_TRUE(readAreas(file, map, read, notes, error)) << error;
        EXPECT_EQ(read.count(), 3) << row.name;
        EXPECT_TRUE(notes.firstLoss.empty()) << notes.firstLoss;
        if (row.isSame) {
            EXPECT_EQ(bytesOf(read), bytesOf(three));
        }
        EXPECT_TRUE(read.undo());
        EXPECT_EQ(read.count(), 1);
    }
    AreaCollection read;
    RegionNotes notes;
    std::ofstream(folder + "/noise.areas") << std::string(300, '\xff');
    std::ofstream(folder + "/noise.reg") << std::string(300, '\xff');
    std::ofstream(folder + "/noise.cma") << std::string(300, '\xff');
    fill(read, 1);
    for (const char* const name :
         {"noise.areas", "noise.reg", "noise.cma", "none.areas", "none.reg"}) {
        error.clear();
        EXPECT_FALSE(readAreas(folder + "/" + name, map, read, notes, error)) << name;
        EXPECT_NE(error.find(name), CString::npos) << error;
        EXPECT_EQ(read.count(), 1);
    }
    EXPECT_FALSE(writeAreas(folder + "/no/a.areas", map, three, error));
}

TEST_F(AreaSets, NeverCleanOnesAreToldWhereTheyAreLost)
{
    ASSERT_TRUE(three.setNeverClean(1, 1));
    const struct {
        const char* name;
        int areas, never;
    } rows[] = {{"n.areas", 3, 1}, {"n.reg", 3, 1}, {"n.crtf", 3, 1}, {"n.cma", 2, 0}};
    for (const auto& row : rows) {
        const std::string file = folder + "/" + row.name;
        const RegionNotes losses = lossesOfAreas(file, map, three);
        EXPECT_EQ(losses.firstLoss.empty(), row.never) << row.name << losses.firstLoss;
        AreaCollection read;
        RegionNotes notes;
        ASSERT_TRUE(writeAreas(file, map, three, error) && readAreas(file, map, read, notes, error))
            << error;
        EXPECT_EQ(read.count(), row.areas) << row.name;
        int never = 0;
        for (int i = 0; i < read.count(); ++i)
            never += read.isNeverClean(i);
        EXPECT_EQ(never, row.never) << row.name;
    }
}

TEST(Base64, ReadsWhatItWrites)
{
    const struct {
        const char *bytes, *text;
    } rows[] = {{"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}};
    std::string read;
    for (const auto& row : rows) {
        EXPECT_EQ(base64Text(row.bytes), row.text);
        EXPECT_TRUE(readBase64(row.text, read));
        EXPECT_EQ(read, row.bytes);
    }
    for (const char* const text : {"Z", "Zg=", "Z===", "====", "Zg==Zg==", "Z=g=", "Zm 9"})
        EXPECT_FALSE(readBase64(text, read)) << text;
}

TEST(BeamShape, IsABeamOrSaysWhyNot)
{
    ABeamShapePM pm;
    EXPECT_FALSE(pm.GetBeam().isSet());
    pm.fitted = {4, 1, 30};
    EXPECT_EQ(pm.GetBeam(), pm.fitted);
    pm.kind = BeamKind::circular;
    EXPECT_EQ(pm.GetBeam(), (MapBeam{2, 2, 0}));
    pm.diameter = 1.5;
    EXPECT_EQ(pm.GetBeam(), (MapBeam{1.5, 1.5, 0}));
    pm.kind = BeamKind::typed;
    pm.typed = {3, 1, -80};
    EXPECT_EQ(pm.GetBeam(), pm.typed);
    EXPECT_EQ(faultOfBeam(pm.GetBeam()), "");
    const double nan = std::nan("");
    for (const MapBeam& beam :
         {MapBeam{}, MapBeam{1, 0, 0}, MapBeam{1, 2, 0}, MapBeam{nan, 1, 0}, MapBeam{2, nan, 0},
          MapBeam{2, 1, nan}, MapBeam{2, 1, 400}, MapBeam{1e9, 1, 0}, MapBeam{-2, -3, 0}})
        EXPECT_NE(faultOfBeam(beam), "") << beam.major << " " << beam.minor << " " << beam.angle;
    MemoryFile file;
    ASSERT_TRUE(pm.Store(file) && file.seek(0));
    ABeamShapePM read;
    ASSERT_TRUE(read.Load(file));
    EXPECT_TRUE(read.kind == pm.kind && read.typed == pm.typed && read.diameter == pm.diameter);
    const std::string profile = testing::TempDir() + "beam-shape.ini";
    SetProfileFile(profile);
    ABeamShapePM kept;
    EXPECT_TRUE(pm.StoreToINI(nullptr, "Clean", 1) && kept.LoadFromINI(nullptr, "Clean", 1));
    EXPECT_TRUE(kept.kind == pm.kind && kept.typed == pm.typed && kept.diameter == pm.diameter);
    SetProfileFile("");
    std::filesystem::remove(profile);
    for (const RecordEntry& entry : std::initializer_list<RecordEntry>{
             {"BS KIND", "oval"}, {"BS MAJ", "-1"}, {"BS MIN", "1e400"}, {"BS PA", "nan"}})
        EXPECT_FALSE(read.takeEntry(entry)) << entry.key;
}

}  // namespace pavane
