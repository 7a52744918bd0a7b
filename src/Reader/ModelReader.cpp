#include "Reader/ModelReader.h"

#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>

#include <Orvalo3DReader/Reader/ReadError.h>

#include "Common/Platform.h"
#include "Common/Raise.h"
#include "Reader/ExcitationTables.h"
#include "Reader/ModelValidation.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr const char* sections = "analysis.materials.cubes.actuator.piezo.sensor.dump.table.set.damping.";
enum Section : unsigned int {
    Analysis,
    Materials,
    CubesSection,
    ActuatorSection,
    PiezoSection,
    SensorSection,
    DumpSection,
    TableSection,
    SetSection,
    DampingSection,
};

/// The longest path with its terminator that clients of every platform can count on.
constexpr std::size_t longestPath = 260;

/// Files an output under its ID, which must be new.
template <class Output>
void FileByID(std::map<int, Output>& outputs, Output& output, const ExceptionMessage& reused) {
    const int id = output.shared.id;
    if (!outputs.emplace(id, std::move(output)).second) ORVALO_RAISE(Reader, reused, id);
}

}  // namespace

void ModelReader::Execute(Model& model, bool doublePrecision) {
    failurePlace_ = {};
    failureRow_ = 0;
    core_.row = 0;
    core_.lexer.ResetPosition();
    try {
        core_.lexer.stopFlag.Check();
        SetPath();
        OpenMainFile();
        if (cubesOnly_) {
            ReadOnlyCubes(model);
        } else {
            ReadWholeModel(model, doublePrecision);
        }
    } catch (const Stopped&) {
        NotePlace();
        core_.lexer.CloseAll();
        throw;
    } catch (Exception& failure) {
        RaiseLocated(failure);
    } catch (const std::bad_alloc&) {
        // Module and text are short enough to need no memory themselves.
        Exception failure("Reader\\Reader", __LINE__, ReaderMessages::OutOfMemory.code, "Out of memory.");
        RaiseLocated(failure);
    } catch (const std::length_error&) {
        Exception failure("Reader\\Reader", __LINE__, ReaderMessages::OutOfMemory.code, "Out of memory.");
        RaiseLocated(failure);
    }
}

void ModelReader::NotePlace() noexcept {
    failurePlace_ = core_.lexer.Place();
    failureRow_ = core_.row;
}

/// Closes the input and throws `inner`, called while it is being handled, with its place and with the reported place
/// before its message. Where memory does not suffice even for that, throws OutOfMemory, at a place without a path.
void ModelReader::RaiseLocated(Exception& inner) {
    // What the message, and a description made of it, may hold besides the name and the inner message.
    constexpr std::size_t longestText = 900;

    NotePlace();
    const Lexer::Position position = core_.lexer.position;
    try {
        std::string fileName = core_.lexer.CurrentFileName();
        core_.lexer.CloseAll();
        if (fileName.empty()) throw ReadError(inner, failurePlace_, failureRow_);
        const std::size_t room = longestText - std::min(longestText, inner.what().size());
        if (fileName.size() > room) fileName.erase(0, fileName.size() - room);
        throw ReadError(Exception(inner, fileName, position.line, position.column), failurePlace_, failureRow_);
    } catch (const std::bad_alloc&) {
        core_.lexer.CloseAll();
        throw ReadError({"Reader\\Reader", __LINE__, ReaderMessages::OutOfMemory.code, "Out of memory."},
                        {{}, failurePlace_.offset, failurePlace_.line, failurePlace_.column}, failureRow_);
    }
}

void ModelReader::SetPath() {
    auto resolved = platform::AbsolutePath(path_);
    if (!resolved || resolved->size() >= longestPath) {
        ORVALO_RAISE(Reader, ReaderMessages::CannotResolvePath, Quoted(path_).c_str());
    }
    resolvedPath_ = std::move(*resolved);
    core_.lexer.baseDirectory = resolvedPath_.substr(0, resolvedPath_.find_last_of("/\\") + 1);
}

void ModelReader::OpenMainFile() {
    // The rule for included files comes first. By itself it opens hardly any path with a directory in it, so that the
    // resolved path is the second choice, unless it is sure that no file is there.
    using platform::LookFor;
    using platform::Presence;
    const std::string completed = core_.lexer.Completed(path_);
    const bool useResolved =
        !path_.empty() && LookFor(completed) != Presence::There && LookFor(resolvedPath_) != Presence::NotThere;
    core_.lexer.OpenCompleted(useResolved ? resolvedPath_ : completed);
}

void ModelReader::ReadWholeModel(Model& model, bool doublePrecision) {
    for (core_.NextToken(); core_.token.type != TokenType::EndOfFile; core_.NextToken()) {
        ProcessSection(model, doublePrecision);
    }
    ValidateRequirements(model);
    const StopFlag stop = core_.lexer.stopFlag;
    CheckRequiredTables(model, stop);
    GenerateTables(model, doublePrecision, stop);
    AssignTables(model, stop);
}

/// Takes the grid from wherever its keywords stand: without the other grammars it is not known where sections begin.
void ModelReader::ReadOnlyCubes(Model& model) {
    for (core_.NextToken(); core_.token.type != TokenType::EndOfFile; core_.NextToken()) {
        if (core_.IsKeyword("cubes")) {
            cubesDefined_ = true;
            ReadCubesSection(core_, model, Grid());
        }
        if (core_.IsKeyword("damping")) ReadDampingSection(core_, model, Grid());
    }
    if (!cubesDefined_) ORVALO_RAISE(Reader, ReaderMessages::CubesNotDefined);
}

void ModelReader::ProcessSection(Model& model, bool doublePrecision) {
    const unsigned int section = core_.MatchKeyword(sections, ReaderMessages::SectionNameExpected);
    CheckOrder(section);
    switch (section) {
        case Analysis:
            analysisDefined_ = true;
            return ReadAnalysisSection(core_, model);
        case Materials:
            materialsDefined_ = true;
            return ReadMaterialsSection(core_, model.materials);
        case CubesSection:
            cubesDefined_ = true;
            return ReadCubesSection(core_, model, Grid());
        case ActuatorSection:
            return ReadActuator(model);
        case PiezoSection:
            return ReadPiezo(model, doublePrecision);
        case SensorSection:
            return ReadSensor(model);
        case DumpSection:
            return ReadDump(model);
        case TableSection:
            return ReadTable(model, doublePrecision);
        case SetSection:
            return ReadSetSection(core_, model);
        default:
            // Any number of these sections may follow: the flag that would refuse a second one stays unset.
            return ReadDampingSection(core_, model, Grid());
    }
}

void ModelReader::CheckOrder(unsigned int section) const {
    if (section == Analysis) {
        if (analysisDefined_) ORVALO_RAISE(Reader, ReaderMessages::AnalysisAlreadyDefined);
        return;
    }
    if (!analysisDefined_) ORVALO_RAISE(Reader, ReaderMessages::AnalysisNotDefinedFirst);
    if (section == Materials) {
        if (materialsDefined_) ORVALO_RAISE(Reader, ReaderMessages::MaterialsAlreadyDefined);
        return;
    }
    if (!materialsDefined_) ORVALO_RAISE(Reader, ReaderMessages::MaterialsSectionExpected);
    if (section == CubesSection) {
        if (cubesDefined_) ORVALO_RAISE(Reader, ReaderMessages::CubesAlreadyDefined);
        return;
    }
    if (!cubesDefined_) ORVALO_RAISE(Reader, ReaderMessages::CubesSectionExpected);
    if (section == DampingSection && dampingDefined_) ORVALO_RAISE(Reader, ReaderMessages::DampingAlreadyDefined);
}

void ModelReader::ReadActuator(Model& model) {
    Actuator actuator;
    if (ReadActuatorSection(core_, actuator, model)) model.actuators.push_back(actuator);
}

void ModelReader::ReadPiezo(Model& model, bool doublePrecision) {
    const auto piezo = std::make_shared<Piezo>();
    if (!ReadPiezoSection(core_, *piezo, model, doublePrecision)) return;
    // A model holds one patch: the test for a reused ID assigns the new ID to the patch before and then finds it there.
    // Solvers have come to rely on it.
    for (const auto& earlier : model.piezos) {
        earlier->shared.id = piezo->shared.id;
        if (earlier->shared.id != 0) ORVALO_RAISE(Reader, ReaderMessages::PiezoIDReused, piezo->shared.id);
    }
    model.piezos.push_back(piezo);
}

void ModelReader::ReadSensor(Model& model) {
    Sensor sensor;
    if (ReadSensorSection(core_, sensor)) FileByID(model.sensors, sensor, ReaderMessages::SensorIDReused);
}

void ModelReader::ReadDump(Model& model) {
    Dump dump;
    if (ReadDumpSection(core_, dump)) FileByID(model.dumps, dump, ReaderMessages::DumpIDReused);
}

void ModelReader::ReadTable(Model& model, bool doublePrecision) {
    const auto table = std::make_shared<Table>();
    ReadTableSection(core_, *table, doublePrecision);
    if (!model.tables.emplace(table->id, table).second) {
        ORVALO_RAISE(Reader, ReaderMessages::TableIDReused, table->id);
    }
}

void ModelReader::ValidateRequirements(const Model& model) const {
    if (!analysisDefined_) ORVALO_RAISE(Reader, ReaderMessages::AnalysisNotDefined);
    if (!materialsDefined_) ORVALO_RAISE(Reader, ReaderMessages::MaterialsNotDefined);
    if (!cubesDefined_) ORVALO_RAISE(Reader, ReaderMessages::CubesNotDefined);
    CheckExcitationAndOutput(model);
}

GridReading ModelReader::Grid() const {
    return {cubesOnly_, progress_};
}

}  // namespace orvalo
