#include "Common/Raise.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr const char* keywords = "end.cellsize.timestep.starttime.roomtemperature.";
enum Keyword { End, CellSize, TimeStep, StartTime, RoomTemperature };

constexpr double absoluteZero = -273.15;
constexpr double secondsPerMicrosecond = 1e-6;

}  // namespace

void ReadAnalysisSection(ReaderCore& core, Model& model) {
    bool cellSizeGiven = false;
    bool timeStepGiven = false;
    for (;;) {
        core.NextToken();
        const unsigned int keyword = core.MatchKeyword(keywords, ReaderMessages::UnknownKeyword);
        if (keyword == End) break;
        core.NextValue();
        switch (keyword) {
            case CellSize:
                model.cellSize = core.ExpectGreaterThan(0.0);
                cellSizeGiven = true;
                break;
            case TimeStep:
                // Multiplied, not divided: the sample counts of generated tables depend on the last bit.
                model.timeStep = core.ExpectAtLeast(0.0) * secondsPerMicrosecond;
                timeStepGiven = true;
                break;
            case StartTime:
                model.startTime = core.ExpectAtLeast(0.0) * secondsPerMicrosecond;
                break;
            default:
                model.roomTemperature = core.ExpectAtLeast(absoluteZero);
                break;
        }
    }
    if (!cellSizeGiven) ReaderCore::RaiseObligatoryMissing("Cellsize");
    if (!timeStepGiven) ReaderCore::RaiseObligatoryMissing("Timestep");
}

}  // namespace orvalo
