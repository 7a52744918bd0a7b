#include <filesystem>
#include <iostream>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Results/ResultsFiles.h"
#include "Support/RoundTrip.h"

namespace orvalo {
namespace {

/// What was written and read back in this process, whichever tests ran in it.
struct Counts {
    long models = 0;
    long results = 0;
};
Counts counts;

// A list may declare more rows than any test walks.
constexpr std::size_t mostCubes = 1'000'000;

/// Has everything that any test reads written and read back, once a text.
const bool everythingIsWritten = [] {
    support::afterReadingModel = [](const Model& model, bool doublePrecision) {
        static std::set<std::string> seen;
        if (model.cubes.CubesCount() > mostCubes || model.cubes.DampingCubesCount() > mostCubes) return;
        if (!seen.insert(support::ShowModel(model)).second) return;
        ++counts.models;
        EXPECT_EQ(support::RoundTripProblem(model, doublePrecision), "");
    };
    afterReadingResults = [](const Results& results) {
        ++counts.results;
        EXPECT_EQ(support::RoundTripProblem(results), "");
    };
    return true;
}();

class TellCounts : public testing::EmptyTestEventListener {
    void OnTestProgramEnd(const testing::UnitTest&) override {
        std::cout << "written and read back: " << counts.models << " models, " << counts.results << " results\n";
    }
};

const bool countsAreTold = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new TellCounts);
    return true;
}();

TEST(RoundTrip, SeedsAndExampleComeBackEqual) {
    const std::filesystem::path seeds = std::filesystem::path(ORVALO_EXAMPLES).parent_path() / "fuzz" / "seeds";
    for (const char* folder : {"model", "results-txt", "results-mat"}) {
        for (const auto& entry : std::filesystem::directory_iterator(seeds / folder)) {
            const std::string bytes = support::FileBytes(entry.path().string());
            if (std::string_view(folder) == "model") {
                support::ReadText(bytes.substr(0, bytes.find('\xFF')));
            } else {
                const std::string header = std::string_view(folder) == "results-mat" ? MatHeader() : "";
                OutcomeOfBytes(header + bytes);
            }
        }
    }
    const Counts before = counts;
    const std::string plate = std::string(ORVALO_EXAMPLES) + "/plate/plate";
    const support::Outcome outcome = support::ReadPath(plate + ".model");
    support::ReadPath(plate + ".model", {false, false});
    EXPECT_EQ(counts.models, before.models + 2);
    Load(plate + "-results.txt");
    Load(plate + "-results.mat");
    // The bounds follow from the cells, and are those of all rows where none were replaced.
    const std::string path = support::ScratchDirectory() + "/plate-again.model";
    WriteModel(*outcome.model, path);
    const Model again = ReadModel(path);
    EXPECT_EQ(support::ShowGrid(again), support::ShowGrid(*outcome.model));
}

TEST(RoundTrip, AModelThatAProgramMakes) {
    Model model;
    model.cellSize = 0.5;
    model.timeStep = 0.05 * 1e-6;
    Material steel("steel");
    steel.SetFormat1(7.85e-6, 2.1e8, 0.3);
    model.materials.Add(steel, 200);
    model.cubes.AllocCubes(3, true);
    for (unsigned char i = 0; i < 3; ++i) {
        const unsigned char record[] = {static_cast<unsigned char>(i + 1), 0, 1, 0, 1, 0, 1};
        std::copy(std::begin(record), std::end(record), model.cubes.CubesPtr() + i * Cubes::recordSize);
        model.cubes.TemperaturesPtr()[i] = 20 + 0.1 * i;
    }
    const auto table = std::make_shared<Table>();
    table->id = 5;
    table->count = 2;
    table->Allocate(true);
    static_cast<double*>(table->data)[1] = 1.0 / 3;
    model.tables[5] = table;
    const auto piezo = std::make_shared<Piezo>();
    piezo->shared.id = 1;
    piezo->direction.z = 1;
    piezo->method = ActuatorMethodForce;
    piezo->start = -3;
    piezo->tables[5] = table;
    piezo->data.Add(-1, 2, 5, 5, 5);
    piezo->data.Add(0, 2, 0, 0, 0);
    model.piezos.push_back(piezo);
    model.dumps[3].shared.id = 3;
    model.dumps[3].output = "u0v0w0u1v1w1u2v2w2u0";
    const std::string path = support::ScratchDirectory() + "/made.model";
    WriteModel(model, path);
    EXPECT_EQ(support::FileBytes(path),
              "ANALYSIS\n  cellsize = 0.5\n  timestep = 0.05\nEND\n\n"
              "MATERIALS\n  200 1 \"steel\" 7.85e-6 2.1e8 0.3\nEND\n\n"
              "CUBES\n  count = 3\n  format = 1\n  data\n1 1 1 200 20\n2 1 1 200 20.1\n3 1 1 200 20.2\n  END\nEND\n\n"
              "TABLE\n  id = 5\n  count = 2\n  data\n0\n0.3333333333333333\n  END\nEND\n\n"
              "PIEZO\n  id = 1\n  position = 0 0 0\n  direction = 0 0 1\n  method = force\n  start = 0.15\n"
              "  count = 2\n  data\n    0 2 i\n    -1 2 t 5 5 5\n  END\n"
              "  table\n    id = 5\n    count = 2\n    data\n0\n0.3333333333333333\n    END\n  END\nEND\n\n"
              "DUMP\n  id = 3\n  output = u0 v0 w0 u1 v1 w1 u2 v2 w2 u0\n  filename = \"\"\nEND\n");
    EXPECT_EQ(support::RoundTripProblem(ReadModel(path), true), "");
}

}  // namespace
}  // namespace orvalo
