#include <cmath>
#include <limits>

#include "Write/MaterialNumbers.h"
#include "Write/SectionWriters.h"
#include "Write/Times.h"

namespace orvalo {

namespace {

constexpr double absoluteZero = -273.15;
constexpr double defaultRoomTemperature = 25.0;
constexpr Subject analysis{"The analysis", -1};

void CheckTime(std::string_view what, double seconds) {
    CheckAtLeast(analysis, what, seconds, 0.0);
    if (Microseconds(seconds)) return;
    Refuse(analysis, ": the ", what, " of ", seconds, " seconds is that of no number of microseconds; ",
           RoundedTo(std::numeric_limits<double>::digits10, seconds * 1e6) * 1e-6, " is one of the nearest that are");
}

bool IsDefault(double value, double byDefault) {
    return value == byDefault && std::signbit(value) == std::signbit(byDefault);
}

}  // namespace

void CheckAnalysis(const Model& model) {
    CheckAbove(analysis, "cell size", model.cellSize, 0.0);
    CheckTime("time step", model.timeStep);
    CheckTime("start time", model.startTime);
    CheckAtLeast(analysis, "room temperature", model.roomTemperature, absoluteZero);
}

void WriteAnalysis(const Model& model, SectionText& text) {
    text.Begin(ReadAnalysisSection);
    text.Property("cellsize", model.cellSize);
    text.Property("timestep", Microseconds(model.timeStep).value_or(0.0));
    if (!IsDefault(model.startTime, 0.0)) text.Property("starttime", Microseconds(model.startTime).value_or(0.0));
    if (!IsDefault(model.roomTemperature, defaultRoomTemperature)) {
        text.Property("roomtemperature", model.roomTemperature);
    }
    text.End();
}

void CheckMaterials(const MaterialRepository& materials) {
    constexpr std::size_t mostMaterials = 256;
    if (materials.Count() > mostMaterials) Refuse("The model has more than 255 materials");
    for (int i = 1; i < static_cast<int>(materials.Count()); ++i) {
        const int number = materials.Vec2File(i);
        const Subject subject{"Material", number};
        if (number < 1) Refuse("The material of the vector index ", i, " has no number from 1 to 255");
        if (materials.File2Vec(number) != i) Refuse(subject, ": another material has the same number");
        CheckName(subject, "name", materials[i].name);
        const MaterialNumbers found = FindNumbers(materials[i]);
        if (found.format < 0) {
            Refuse(subject, ": the wave speeds and elastic constants belong to no density with wave speeds, or with ",
                   "Young's modulus and Poisson's ratio");
        }
        for (int n = 0; n < found.count; ++n) CheckNumber(subject, "density or a coefficient", found.numbers[n]);
    }
}

void WriteMaterials(const MaterialRepository& materials, SectionText& text) {
    text.Begin(ReadMaterialsSection);
    TextWriter& out = text.Out();
    for (int i = 1; i < static_cast<int>(materials.Count()); ++i) {
        const MaterialNumbers found = FindNumbers(materials[i]);
        text.Indent();
        out.Number(materials.Vec2File(i));
        out.Text(" ");
        out.Number(found.format);
        out.Text(" \"");
        out.Text(materials[i].name);
        out.Text("\"");
        for (int n = 0; n < found.count; ++n) {
            out.Text(" ");
            out.Number(found.numbers[n]);
        }
        out.Text("\n");
    }
    text.End();
}

}  // namespace orvalo
