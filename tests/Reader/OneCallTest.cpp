#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

#include "Results/ResultsFiles.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

std::string Shown(const InputPlace& place) {
    std::ostringstream out;
    out << place;
    return out.str();
}

TEST(OneCall, ReadsModelsAsAsked) {
    const std::string path = WriteFile("asked.model", Sections("AMCXS"));
    unsigned long long cubes = 0;
    ReadOptions options;
    options.cubesRead = &cubes;
    const Model whole = ReadModel(path, options);
    EXPECT_EQ(ShowModel(whole), ShowModel(*ReadPath(path).model));
    EXPECT_EQ(whole.actuators[0].table, whole.tables.at(-1).get());
    options.doublePrecision = false;
    EXPECT_EQ(ReadModel(path, options).tables.at(-1)->elementSize, sizeof(float));
    options.cubesOnly = true;
    EXPECT_TRUE(ReadModel(path, options).actuators.empty() && cubes == 1);
}

TEST(OneCall, ReadsResultsAsAsked) {
    const std::string file = support::WriteFile("r", "u\n1\n");
    float percent = 0;
    ReadOptions options;
    options.percentRead = &percent;
    EXPECT_EQ(Describe(*ReadResults(file, options)), "1x1+0 | ; 1");
    EXPECT_EQ(percent, 100.0F);
    EXPECT_THROW(ReadResults(file + "x"), Exception);
    CheckOptions checking;
    checking.percentRead = &(percent = 0);
    EXPECT_TRUE(CheckResults(file, checking).empty());
    EXPECT_EQ(percent, 100.0F);
}

TEST(OneCall, ErrorsKnowTheirPlace) {
    const struct {
        const char* text;
        int code;
        const char* place;
        std::uint64_t row;
    } table[] = {
        {"CUBES count 2 format 0 data\n1 1 1 1\n2 x", 121, "/e.model:3:3", 2},
        {"CUBES\n\ncount 0", 116, "/e.model:3:7", 0},
        {"", 142, "/e.model:1:1", 0},
    };
    ReadOptions options;
    options.cubesOnly = true;
    for (const auto& row : table) {
        const std::string path = WriteFile("e.model", row.text);
        Reader reader(path, true);
        try {
            ReadModel(path, options);
            ADD_FAILURE() << row.text;
        } catch (const ReadError& error) {
            const ReadError copy = error;
            EXPECT_EQ(Line("", copy.code(), copy.Row()), Line("", row.code, row.row));
            EXPECT_EQ(Shown(copy.Place()), ScratchDirectory() + row.place);
            EXPECT_TRUE(copy.Place().Known());
            Model model;
            EXPECT_THROW(reader.Execute(&model, true), ReadError);
            EXPECT_TRUE(copy.Place() == reader.FailurePlace() && copy.Row() == reader.FailureRow());
        }
    }
    try {
        ReadModel("/none");
    } catch (const Exception& error) {
        const auto* const known = dynamic_cast<const ReadError*>(&error);
        EXPECT_TRUE(known != nullptr && known->code() == 103 && !known->Place().Known() && known->Row() == 0);
    }
}

TEST(OneCall, PlacesAreEqualInAll) {
    const InputPlace place = {"m", 4, 2, 3};
    for (const InputPlace& other : {InputPlace{"n", 4, 2, 3}, {"m", 5, 2, 3}, {"m", 4, 1, 3}, {"m", 4, 2, 4}}) {
        EXPECT_TRUE(place != other && !(place == other)) << Shown(other);
    }
    EXPECT_TRUE(place == InputPlace(place) && !(place != InputPlace(place)) && !InputPlace().Known());
}

}  // namespace
}  // namespace orvalo
