#include "pavane/trackers/areas/area_file.h"
#include "pavane/trackers/areas/area_names.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace pavane;

namespace
{

const std::vector<AreaLabel> labels = {{"knot A", 0xFF8000},
                                       {"", 0},
                                       {"\u00e9toile \u2606 \\ n", -1},
                                       {},
                                       {"it's \"{A}\"", 0x2EE6D6},
                                       {" # | ; ] , = ", 0xFFFFFF}};

AreaPlace map100() { return {{0, 99, 0, 99}, 100, 100}; }

AreaList labelledAreas()
{
    AreaList areas;
    for (const AreaLabel& label : labels) {
        AreaShape shape{AreaShape::Kind::ellipse, {40, 30.5}, 12, 5, 0.5, {}};
        shape.label = {fittingName(label.name), label.colour};
        shape.isNeverClean = areas.size() == 5;
        areas.push_back(shape);
    }
    return areas;
}

std::string fileNamed(const char* name) { return testing::TempDir() + name; }

std::string bytesOf(const std::string& file)
{
    AFile in(file, AFile::readOnly);
    std::string bytes(static_cast<std::size_t>(in.left()), '\0');
    EXPECT_TRUE(in.read(bytes.data(), static_cast<std::int64_t>(bytes.size())));
    return bytes;
}

}  // namespace

TEST(AreaNames, ComeBackFromEveryFileThatHoldsThem)
{
    for (const char* const name : {"names.areas", "names.reg", "names.crtf", "names.cma"}) {
        SCOPED_TRACE(name);
        const std::string file = fileNamed(name);
        const AreaList areas = labelledAreas();
        AreaList read;
        AreaNotes notes;
        std::string error;
        const int isCma = name == std::string("names.cma");
        ASSERT_TRUE(writeAreaFile(file, map100(), areas, isCma, notes, error)) << error;
        std::string told;
        for (const std::string& line : notes.lines)
            told += line + '\n';
        EXPECT_EQ(told.find("no names and no colours") != told.npos, isCma != 0) << told;
        ASSERT_TRUE(readAreaFile(file, map100(), read, notes, error)) << error;
        ASSERT_EQ(read.size(), areas.size() - static_cast<std::size_t>(isCma));
        for (std::size_t i = 0; i < read.size(); ++i) {
            AreaLabel expected = isCma ? AreaLabel() : areas[i].label;
            if (i == 4 && name == std::string("names.reg"))
                expected.name = "it's \" A \"";  // quotes of all kinds are told of
            if (i == 4 && name == std::string("names.crtf"))
                expected.name = "it's  {A}";
            EXPECT_EQ(read[i].label.name, expected.name);
            EXPECT_EQ(read[i].label.colour, expected.colour);
        }
    }
    // without labels nothing is left beside the areas
    AreaNotes notes;
    std::string error;
    AreaList plain = labelledAreas();
    for (AreaShape& shape : plain)
        shape.label = {};
    EXPECT_TRUE(IsFileExists(fileNamed("names.areas.names")));
    ASSERT_TRUE(writeAreaFile(fileNamed("names.areas"), map100(), plain, 0, notes, error));
    EXPECT_FALSE(IsFileExists(fileNamed("names.areas.names")));
}

TEST(AreaNames, OfOtherAreasAreLeftAsideAndTold)
{
    const std::string file = fileNamed("kept.areas");
    AreaNotes notes;
    std::string error;
    AreaList read;
    ASSERT_TRUE(writeAreaFile(file, map100(), labelledAreas(), 0, notes, error)) << error;
    const std::string names = bytesOf(namesFileOf(file));
    AreaList fewer = labelledAreas();
    fewer.pop_back();
    ASSERT_TRUE(writeAreaFile(file, map100(), fewer, 0, notes, error)) << error;
    AFile old(namesFileOf(file), AFile::writeOnly | AFile::create);
    ASSERT_TRUE(old.write(names.data(), static_cast<std::int64_t>(names.size())) && old.close());
    ASSERT_TRUE(readAreaFile(file, map100(), read, notes, error)) << error;
    ASSERT_EQ(read.size(), 5u);
    EXPECT_TRUE(read[0].label.isEmpty());
    ASSERT_EQ(notes.lines.size(), 1u);
    EXPECT_EQ(notes.lines[0],
              file + ".names: belongs to other areas; names and colours are left aside");
    EXPECT_TRUE(notes.loss.empty());
    // a file that is none of names is not removed
    AFile foreign(namesFileOf(file), AFile::writeOnly | AFile::create);
    ASSERT_TRUE(foreign.write("mine", 4) && foreign.close());
    removeNamesFile(file);
    EXPECT_TRUE(IsFileExists(namesFileOf(file)));
    std::filesystem::remove(namesFileOf(file));
}

TEST(AreaNames, AreReadFromNothingElse)
{
    const std::string sum = areaChecksum("areas");
    EXPECT_EQ(areaChecksum("foobar"), "85944171f73967e8");  // of the authors of the hash
    const std::string head = "# pavane areas 1\n2 " + sum + "\n";
    struct Case {
        std::string text;
        int count;
        const char* error;
    };
    for (const Case& c : std::initializer_list<Case>{
             {head + "- a\n#ff0000 b\\n\\\\\n", 2, ""},
             {head + "- a\r\n#ff0000 \r\n", 2, ""},
             {"", 2, "not a file of names of areas"},
             {"# pavane areas 2\n", 2, "not a file of names of areas"},
             {"# pavane areas 1\n", 2,
              "its second line is not the number of areas and their checksum"},
             {"# pavane areas 1\n-1 x\n", 2,
              "its second line is not the number of areas and their checksum"},
             {"# pavane areas 1\n99999999999 x\n", 2,
              "its second line is not the number of areas and their checksum"},
             {"# pavane areas 1\n2\n- a\n- b\n", 2, "belongs to other areas"},
             {head + "- a\n- b\n", 3, "belongs to other areas"},
             {head + "- a\n- b", 2, "is cut short"},
             {head + "- a\n", 2, "is cut short"},
             {head + "a\n- b\n", 2, "is damaged"},
             {head + "#ff000 a\n- b\n", 2, "is damaged"},
             {head + "- a\\\n- b\n", 2, "is damaged"},
             {head + "- a\\x\n- b\n", 2, "is damaged"},
             {head + "- a\n- b\n- c\n", 2, "goes on behind its last name"}}) {
        SCOPED_TRACE(c.text);
        std::vector<AreaLabel> read;
        std::string error;
        EXPECT_EQ(readNames(c.text, sum, c.count, read, error), *c.error == '\0');
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(read.size(), *c.error ? 0u : 2u);
    }
    EXPECT_EQ(fittingName(" \xff\ta\n" + std::string(300, 'b')).size(), longestAreaName);
    EXPECT_EQ(fittingName(std::string(254, 'b') + "\u2606"), std::string(254, 'b'));
}

TEST(AreaNames, ArePartOfUndo)
{
    AreaCollection areas;
    const AMnMxMCTransform map = map100().transform();
    for (const AreaShape& shape : labelledAreas())
        ASSERT_GE(areas.add(shape, map), 0);
    EXPECT_EQ(areas.label(0), labels[0]);
    areas.setSaved();
    ASSERT_TRUE(areas.setLabel(0, {"b", 5}));
    EXPECT_EQ(areas.edits().history().undoLabel(), "Name of Area 1");
    EXPECT_TRUE(areas.setLabel(0, {"b", 5}));
    ASSERT_TRUE(areas.erase(0));
    EXPECT_TRUE(areas.undo());
    EXPECT_EQ(areas.label(0), (AreaLabel{"b", 5}));
    EXPECT_TRUE(areas.undo());
    EXPECT_EQ(areas.label(0), labels[0]);
    EXPECT_FALSE(areas.isModified());
    EXPECT_TRUE(areas.redo() && areas.redo());
    EXPECT_EQ(areas.label(0), labels[1]);
}
