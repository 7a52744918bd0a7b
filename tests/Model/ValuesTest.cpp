#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

using CubeIterator = RecordRange<Cube>::Iterator;
static_assert(std::random_access_iterator<CubeIterator> && std::sized_sentinel_for<CubeIterator, CubeIterator>);

TEST(Values, RecordsAreTakenApart) {
    // Signed coordinates, the largest material, a coefficient of another byte order than its value.
    const unsigned char bytes[] = {0xFE, 0xFF, 0x00, 0x80, 0xFF, 0x7F, 0xFF, 0, 0, 0, 0, 0, 0, 0xE0, 0x3F};
    static_assert(sizeof bytes == Cubes::dampingRecordSize && Cubes::recordSize == 7);
    const Cube cube = Packing<Cube>::Read(bytes);
    EXPECT_EQ(Line("", cube.x, cube.y, cube.z, cube.material), " -2 -32768 32767 255\n");
    const DampingCube damping = Packing<DampingCube>::Read(bytes);
    EXPECT_EQ(Line("", damping.x, damping.y, damping.z, damping.material, damping.coefficient),
              " -2 -32768 32767 255 0.5\n");
}

TEST(Values, RecordsSuitAlgorithms) {
    const auto model = ReadText(
                           "CUBES count 4 format 0 data 1 2 3 1\n5 6 7 2\n8 9 1 3\n32767 0 0 255 END END\n"
                           "DAMPING count 2 data 1 1 1 1 0.5 2 2 2 2 -3 END END",
                           {true})
                           .model;
    const auto records = model->cubes.Records();
    const auto first = records.begin();
    auto it = records.end();
    // From the end to the start and on again, by every step that there is.
    EXPECT_EQ((--it)->x, 32767);
    EXPECT_EQ((it--)->material, 255);
    it -= 1;
    EXPECT_EQ((*it++).x + (*it).x, 5 + 8);
    EXPECT_EQ((++it)[-3].z, 3);
    EXPECT_TRUE(it - first == 3 && it == first + 3 && 3 + first == it && it - 3 == first && first != it);
    EXPECT_TRUE(first < it && it > first && first <= it && it >= first && !(it < first) && !(it <= first));
    EXPECT_EQ(std::distance(records.begin(), records.end()), static_cast<std::ptrdiff_t>(records.size()));
    const auto byX = [](const Cube& cube, int x) { return cube.x < x; };
    EXPECT_EQ(std::lower_bound(records.begin(), records.end(), 6, byX)->y, 9);
    const std::vector<Cube> backwards(std::make_reverse_iterator(records.end()),
                                      std::make_reverse_iterator(records.begin()));
    int sum = 0;
    for (const Cube cube : model->cubes.Records()) sum = 10 * sum + cube.z;
    EXPECT_EQ(sum, 3710);
    EXPECT_EQ(Line("", backwards[3].x, records[1].x, model->cubes.CubeAt(2).x, CubeIterator() == first), " 1 5 8 0\n");

    double coefficients = 0;
    for (const DampingCube cube : model->cubes.DampingRecords()) coefficients += cube.x * cube.coefficient;
    EXPECT_EQ(coefficients, 0.5 - 6);
    EXPECT_EQ(model->cubes.DampingCubeAt(1).coefficient, -3);
    // No records, with and without a count.
    EXPECT_TRUE(Cubes().Records().empty() && Cubes().DampingRecords().begin() == Cubes().DampingRecords().end());
    EXPECT_EQ(ReadText("CUBES count 1e18 format 0 data 1 1 1 1 END END", {true}).model->cubes.Records().size(), 0U);
}

TEST(Values, SamplesHaveTheTypeAskedFor) {
    const std::string text =
        Sections("AMCXS") + "TABLE id 1 count 3 data 1 0.1 -2 END END SET id 4 count 2 data 1 2 3 " + "4 5 6 END END";
    for (const bool doubles : {true, false}) {
        const auto model = ReadText(text, {false, doubles}).model;
        const Table& table = *model->tables.at(1);
        const auto wide = table.Doubles();
        const auto narrow = table.Floats();
        const std::vector<double> all(wide.begin(), wide.end());
        const std::vector<float> allNarrow(narrow.begin(), narrow.end());
        EXPECT_TRUE(doubles ? all == std::vector<double>({1, 0.1, -2})
                            : allNarrow == std::vector<float>({1, 0.1F, -2}));
        EXPECT_EQ(doubles ? wide[1] : static_cast<double>(narrow[1]), table.Get(1));
        EXPECT_EQ(doubles ? static_cast<const void*>(wide.data()) : narrow.data(), table.data);
        EXPECT_TRUE(wide.size() == (doubles ? 3U : 0U) && narrow.empty() == doubles);
        int weighted = 0;
        for (const Point& point : *model->sets.at(4)) weighted = 100 * weighted + 10 * point.x + point.z;
        EXPECT_EQ(weighted, 1346);
    }
    Table unread;
    unread.count = 5;
    EXPECT_TRUE(unread.Doubles().empty() && unread.Floats().begin() == nullptr && Set().begin() == Set().end());
}

TEST(Values, CodesHaveNames) {
    const auto read = [](const std::string& section) {
        return ReadText(Sections("AMC") + section + Sections("XS")).model;
    };
    const auto actuator = [&](const std::string& words) {
        return read(
                   "ACTUATOR shape point position 1 1 1 input definition method force type fullpulse waveform sine "
                   "envelope none frequency 100 duration 10 phase 0 " +
                   words + " END\n")
            ->actuators.at(0);
    };
    const auto file = [&](const std::string& words) {
        return read("DUMP id 1 output all filename \"a\" " + words + " END\n")->dumps.at(1).file;
    };
    EXPECT_EQ(actuator("").input, ActuatorInputDefinition);
    EXPECT_EQ(read("TABLE id 1 count 1 data 0 END END ACTUATOR shape point position 1 1 1 input wave method force "
                   "table 1 END\n")
                  ->actuators.at(0)
                  .input,
              ActuatorInputWave);
    EXPECT_EQ(actuator("").method, ActuatorMethodForce);
    EXPECT_EQ(actuator("method absolute").method, ActuatorMethodAbsolute);
    EXPECT_EQ(actuator("").definition.type, ActuatorTypeFullPulse);
    EXPECT_EQ(actuator("type halfpulse").definition.type, ActuatorTypeHalfPulse);
    EXPECT_EQ(actuator("type continuouswave").definition.type, ActuatorTypeContinuousWave);
    EXPECT_EQ(actuator("waveform square").definition.waveform, ActuatorWaveformSquare);
    EXPECT_EQ(actuator("").definition.waveform, ActuatorWaveformSine);
    EXPECT_EQ(actuator("waveform gaussian").definition.waveform, ActuatorWaveformGaussian);
    EXPECT_EQ(actuator("").definition.envelope, ActuatorEnvelopeNone);
    EXPECT_EQ(actuator("envelope hannwindow").definition.envelope, ActuatorEnvelopeHannWindow);
    EXPECT_EQ(file("").writeMode, FileWriteModeOverwrite);
    EXPECT_EQ(file("writemode create").writeMode, FileWriteModeCreate);
    EXPECT_EQ(file("writemode append").writeMode, FileWriteModeAppend);
    EXPECT_EQ(file("notation decimal").notation, FileNotationDecimal);
    EXPECT_EQ(file("").notation, FileNotationScientific);
    EXPECT_EQ(file("").fileFormat, FileFormatTxt);
    EXPECT_EQ(file("fileformat mat").fileFormat, FileFormatMat);
    EXPECT_EQ(Actuator().method, ActuatorMethodUnset);
    EXPECT_EQ(Actuator().definition.type, ActuatorTypeUnset);
    EXPECT_EQ(Actuator().definition.waveform, ActuatorWaveformUnset);
}

}  // namespace
}  // namespace orvalo
