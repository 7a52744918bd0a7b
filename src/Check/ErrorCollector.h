#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Check/Diagnostic.h>

#include "Check/ReadingRecord.h"
#include "Check/SourceText.h"
#include "Reader/ReaderCore.h"
#include "Reader/Recovery.h"

namespace orvalo {

/// A diagnostic and where it stands among those of the whole read.
struct PlacedDiagnostic {
    Diagnostic diagnostic;
    ReadPlace place;
};

/// A fix that puts in a number which nothing else has: known once all was read.
struct PostponedFix {
    std::size_t diagnostic = 0;
    Fix fix;
    std::string_view section;
    std::string_view property;
    bool nested = false;
    double most = 0.0;
};

/// Collects the errors of a read that goes on after them, and keeps a record of what was read where.
///
/// What only follows from an error that is known is left out: a second error at the same place; what cannot be read on
/// the way to where reading goes on; what is missing because its section, or one that nobody knows, was not read whole.
class ErrorCollector : public Recovery {
public:
    ErrorCollector(const ReaderCore& core, const CheckOptions& options) : core_(core), options_(options) {}

    bool Note(const Exception& failure) override;
    bool LineIsSpoilt() const override { return spoilt_; }
    void SectionBegins(const Section& section) override;
    void SectionEnds() override;
    void PropertyBegins(std::string_view word) override;
    void ValueBegins() override;
    void PropertyEnds() override;
    void RowBegins() override;
    std::uint64_t BulkRowBegins(std::uint64_t row) override;
    void RowsRead(std::uint64_t read) override;
    void NumberChanges(NumberChange change, std::int64_t taken) override;

    /// Whether the read was ended by the collector itself.
    bool Ended() const { return ended_; }
    std::size_t ErrorCount() const { return errors_; }

    /// Copies the list of files that the lexer has opened so far.
    void UpdateFiles();

    ReadingRecord record;
    std::vector<PlacedDiagnostic> diagnostics;

    /// Has reading end with the error that is being explained.
    void End() { ended_ = true; }

    /// Has reading leave the line of the error that is being explained.
    void SpoilLine() { spoilt_ = true; }

    /// True the first time in a section: a list that has lost its step is told of once.
    bool TellRowShape() { return !std::exchange(rowShapeTold_, true); }

    /// Adds a fix to the error that is being explained, with the number after the largest that the property has.
    void PostponeFreeNumber(PostponedFix postponed) {
        postponed.diagnostic = diagnostics.size();
        postponed_.push_back(std::move(postponed));
    }
    const std::vector<PostponedFix>& Postponed() const { return postponed_; }

    // What an explanation may look at.
    const ReaderCore& Core() const { return core_; }
    SourceText& Source() { return source_; }
    /// The section being read, or null between sections.
    const SectionRecord* CurrentSection() const { return inSection_ ? &record.sections.back() : nullptr; }
    /// The properties being read, the innermost last; empty between properties.
    const std::vector<PropertyRecord>& OpenProperties() const { return open_; }
    /// The section of that word in which `property` was given that number, the first one; null for none.
    const SectionRecord* FindSection(std::string_view section, std::string_view property, double number) const;

private:
    ReadPlace Place() const;
    bool Follows(const Exception& failure) const;
    bool IsOfInclude(int code);
    bool FollowsAtEnd(int code) const;
    bool SectionFailed(std::initializer_list<std::string_view> words) const;
    bool PropertyFailed(std::string_view section, std::string_view property) const;
    bool PropertyUnknown(std::string_view section, std::string_view property) const;
    bool PatchTableUnknown() const;
    void SkipWords();
    void FailLast(std::string_view word);
    bool HasSection(std::string_view word) const;
    bool InOwnTable() const;
    bool MissingIsTold() const;
    bool CountsInSection(int code);
    void Add(const Exception& failure);

    const ReaderCore& core_;
    const CheckOptions& options_;
    SourceText source_;
    std::vector<PostponedFix> postponed_;
    std::vector<PropertyRecord> open_;
    bool inSection_ = false;
    bool ended_ = false;
    bool spoilt_ = false;
    bool unknownSection_ = false;
    bool unreadInclude_ = false;
    bool rowShapeTold_ = false;
    /// What is known to be missing in the current section, and in a table within it.
    std::set<std::pair<bool, std::string_view>> missingTold_;
    std::size_t errors_ = 0;
    std::size_t errorsOutsideRows_ = 0;
    /// How many were left out that are found once all was read: each takes a search.
    std::size_t followedAtEnd_ = 0;
    /// Where the last error was that is no consequence, and its code.
    std::optional<std::pair<int, FilePlace>> lastPlace_;
    int lastCode_ = 0;
    /// Whether the number of a material is not known.
    bool unknownMaterial_ = false;
    /// For each code how many errors the rows of the current section had, and the diagnostic that tells of the rest.
    std::map<int, std::uint64_t> inRows_;
    std::map<int, std::size_t> moreInRows_;
    /// Of each NumberChange how many the current section had.
    std::array<std::uint64_t, 2> changed_{};
};

}  // namespace orvalo
