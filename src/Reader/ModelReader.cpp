#include "Reader/ModelReader.h"

#include <algorithm>
#include <iterator>

#include <Orvalo3DReader/Reader/ReadError.h>

#include "Common/Platform.h"
#include "Common/Raise.h"
#include "Common/WithinMemory.h"
#include "Common/Workers.h"
#include "Reader/ExcitationTables.h"
#include "Reader/ModelValidation.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

/// The longest path with its terminator that clients of every platform can count on.
constexpr std::size_t longestPath = 260;

/// The sections that come first, in their order.
struct LeadingSection {
    const ExceptionMessage& expected;
    const ExceptionMessage& alreadyDefined;
    const ExceptionMessage& notDefined;
};
using M = ReaderMessages;
const LeadingSection leadingSections[] = {
    {M::AnalysisNotDefinedFirst, M::AnalysisAlreadyDefined, M::AnalysisNotDefined},
    {M::MaterialsSectionExpected, M::MaterialsAlreadyDefined, M::MaterialsNotDefined},
    {M::CubesSectionExpected, M::CubesAlreadyDefined, M::CubesNotDefined},
};

}  // namespace

void ModelReader::Execute(Model& model, bool doublePrecision) {
    failurePlace_ = {};
    failureRow_ = 0;
    core_.row = 0;
    core_.ahead = ReadingAhead(ThreadCount(core_.ahead.threads));
    core_.lexer.ResetPosition();
    try {
        WithinMemory(module::Reader, __LINE__, [&] { Read(model, doublePrecision); });
    } catch (const Stopped&) {
        NotePlace();
        core_.lexer.CloseAll();
        throw;
    } catch (Exception& failure) {
        RaiseLocated(failure);
    }
}

void ModelReader::Read(Model& model, bool doublePrecision) {
    core_.lexer.stopFlag.Check();
    const bool open = core_.Attempt([&] {
        SetPath();
        OpenMainFile();
    });
    if (!open) return;
    const ModelReading reading{model, doublePrecision, cubesOnly_, progress_};
    if (cubesOnly_) {
        ReadOnlyCubes(reading);
    } else {
        ReadWholeModel(reading);
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
        std::string fileName = CloseInput();
        if (fileName.empty()) throw ReadError(inner, failurePlace_, failureRow_);
        const std::size_t room = longestText - std::min(longestText, inner.what().size());
        if (fileName.size() > room) fileName.erase(0, fileName.size() - room);
        throw ReadError(Exception(inner, fileName, position.line, position.column), failurePlace_, failureRow_);
    } catch (const std::bad_alloc&) {
        // Module and text are short enough to need no memory themselves.
        throw ReadError({"Reader", __LINE__, ReaderMessages::OutOfMemory.code, "Out of memory."},
                        {{}, failurePlace_.offset, failurePlace_.line, failurePlace_.column}, failureRow_);
    }
}

/// Closes all files, also where it throws, and returns the name that messages show of the one that was being read.
std::string ModelReader::CloseInput() {
    const struct Closing {
        ~Closing() { lexer.CloseAll(); }
        Lexer& lexer;
    } closing{core_.lexer};
    return core_.lexer.CurrentFileName();
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

void ModelReader::ReadWholeModel(const ModelReading& reading) {
    ReadSections(reading);
    CheckComplete(reading.model);
    CheckRequiredTables(core_, reading.model);
    if (core_.recovery != nullptr) return CheckGeneratedTables(core_, reading.model);
    const StopFlag stop = core_.lexer.stopFlag;
    GenerateTables(reading.model, reading.doublePrecision, stop, core_.ahead.threads);
    AssignTables(reading.model, stop);
}

/// Takes the grid from wherever its keywords stand: without the other grammars it is not known where sections begin.
void ModelReader::ReadOnlyCubes(const ModelReading& reading) {
    for (core_.NextToken(); core_.token.type != TokenType::EndOfFile; core_.NextToken()) {
        if (core_.token.type != TokenType::Keyword) continue;
        const auto place = WordList(sections).Find(core_.token.text);
        if (!place || !sections[*place].grid) continue;
        NoteDefined(sections[*place]);
        sections[*place].read(core_, reading);
    }
    if (!IsDefined(SectionOrder::Cubes)) ORVALO_RAISE(Reader, ReaderMessages::CubesNotDefined);
}

void ModelReader::ReadSections(const ModelReading& reading) {
    for (bool moveOn = true;;) {
        bool named = false;
        try {
            if (moveOn) core_.NextToken();
            if (core_.token.type == TokenType::EndOfFile) return;
            const Section& section = sections[core_.Match(sections, ReaderMessages::SectionNameExpected)];
            named = true;
            ReadSection(section, reading);
            moveOn = true;
        } catch (const Exception& failure) {
            if (!core_.Recovers(failure)) throw;
            moveOn = named;
            if (!named) core_.ResumeAtSection();
        }
    }
}

void ModelReader::ReadSection(const Section& section, const ModelReading& reading) {
    if (core_.recovery == nullptr) {
        CheckOrder(section);
        NoteDefined(section);
        return section.read(core_, reading);
    }
    core_.rowLimit = 0;
    core_.recovery->SectionBegins(section);
    const bool again = section.order != SectionOrder::Any && IsDefined(section.order);
    core_.Attempt([&] { CheckOrder(section); });
    NoteDefined(section);
    // A second grid, or second materials, must not be taken for the first.
    Model apart;
    apart.materials = reading.model.materials;
    apart.timeStep = reading.model.timeStep;
    if (section.order == SectionOrder::Materials) apart.materials = {};
    ModelReading own = {again ? apart : reading.model, reading.doublePrecision, reading.cubesOnly, reading.progress};
    core_.Attempt([&] { section.read(core_, own); });
    core_.recovery->SectionEnds();
}

/// Where reading goes on after an error, what should have come before counts as if it had.
void ModelReader::CheckOrder(const Section& section) {
    for (std::size_t i = 0; i < std::size(leadingSections); ++i) {
        const auto order = static_cast<SectionOrder>(i);
        if (section.order == order) {
            if (IsDefined(order)) ORVALO_RAISE(Reader, leadingSections[i].alreadyDefined);
            return;
        }
        if (!IsDefined(order) && (assumed_ >> i & 1U) == 0) {
            assumed_ |= 1U << i;
            ORVALO_RAISE(Reader, leadingSections[i].expected);
        }
    }
}

void ModelReader::CheckComplete(const Model& model) {
    for (std::size_t i = 0; i < std::size(leadingSections); ++i) {
        if (IsDefined(static_cast<SectionOrder>(i)) || (assumed_ >> i & 1U) != 0) continue;
        core_.Attempt([&] { ORVALO_RAISE(Reader, leadingSections[i].notDefined); });
    }
    core_.Attempt([&] { CheckExcitation(model); });
    core_.Attempt([&] { CheckOutput(model); });
}

void ModelReader::NoteDefined(const Section& section) {
    defined_ |= 1U << static_cast<unsigned int>(section.order);
}

bool ModelReader::IsDefined(SectionOrder order) const {
    return (defined_ >> static_cast<unsigned int>(order) & 1U) != 0;
}

}  // namespace orvalo
