#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Check/CheckModel.h>

#include "Check/Mistakes.h"
#include "Check/PlateModel.h"
#include "Support/Emulated.h"

namespace orvalo {
namespace {

using namespace support;

/// A mistake: in a file other bytes stand instead of `length` bytes from `at` on.
struct Edit {
    std::size_t file = 0;
    std::size_t at = 0;
    std::size_t length = 0;
    std::string with;
    int code = 0;
    bool spoilsList = false;
    /// Where the error is: in these bytes, or else at that place of the valid file, or as told, in a file of its own.
    bool inside = false;
    std::size_t place = 0;
    std::string elsewhere;
};

struct Base {
    std::vector<File> files;
    std::vector<Edit> edits;
};

std::size_t OffsetOf(const std::string& text, std::size_t line, std::size_t column) {
    std::size_t at = 0;
    while (--line > 0) at = text.find('\n', at) + 1;
    return at + column - 1;
}

std::size_t LineOf(const std::string& text, std::size_t offset) {
    return 1 +
           static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
}

std::string PlaceOf(const std::string& text, std::size_t offset) {
    const std::size_t start = offset == 0 ? 0 : text.rfind('\n', offset - 1) + 1;
    return std::to_string(LineOf(text, offset)) + ':' + std::to_string(offset - start + 1);
}

/// Tells an edit where its error is, which is at `offset` once it alone was made.
void SetPlace(Edit& edit, std::size_t offset) {
    edit.inside = offset >= edit.at && offset < edit.at + edit.with.size();
    edit.place = edit.inside ? offset - edit.at : offset < edit.at ? offset : offset - edit.with.size() + edit.length;
}

Base ExplainedBase() {
    Base base{{{"several.model", explainedModel}}, {}};
    for (const Mistake& mistake : explainedMistakes) {
        Edit edit;
        const std::string_view what = mistake.what;
        edit.at = what.empty() ? explainedModel.size() : explainedModel.find(what);
        edit.length = what.size();
        edit.with = Replaced(mistake.with, "m.model", "several.model") + (what.empty() ? "\n" : "");
        edit.code = mistake.code;
        edit.spoilsList = mistake.spoilsList;
        std::string alone = explainedModel;
        alone.replace(edit.at, edit.length, edit.with);
        const std::vector<std::string> place = Split(mistake.place, ":");
        if (place.size() == 2) SetPlace(edit, OffsetOf(alone, std::stoul(place[0]), std::stoul(place[1])));
        if (place.size() == 3) edit.elsewhere = mistake.place;
        base.edits.push_back(edit);
    }
    return base;
}

Base PlateBase() {
    Base base{PlateFiles(), {}};
    for (const PlateMistake& mistake : plateMistakes) {
        Edit edit;
        while (base.files[edit.file].text.find(mistake.what) == std::string::npos) ++edit.file;
        const std::string& valid = base.files[edit.file].text;
        edit.at = valid.find(mistake.what);
        EXPECT_EQ(valid.rfind(mistake.what), edit.at) << mistake.what;
        edit.length = std::string_view(mistake.what).size();
        const MarkedText marked(mistake.with);
        edit.with = marked.text;
        edit.code = mistake.code;
        edit.inside = std::string_view(mistake.with).find('@') != std::string_view::npos;
        if (edit.inside) edit.place = marked.truth.offset;
        base.edits.push_back(edit);
    }
    return base;
}

/// Whether the one mistake rightly keeps the other from being told.
bool Hides(const Base& base, const Edit& a, const Edit& b) {
    // An ID that is not known can be neither missing nor taken; where a number of a material is not, rows may be right.
    // A file that is not included may hold the table that is missing. A time step tells how late a signal may start;
    // one that lacks something is not generated.
    static const std::vector<std::pair<int, std::vector<int>>> hidden = {
        {103, {177}},      {104, {177}},
        {110, {177}},      {113, {161, 163, 164, 177, 181}},
        {159, {102, 163}}, {178, {163}},
        {161, {176, 177}}, {145, {121, 146, 151, 155}},
        {146, {151}},      {118, {102, 119}},
        {119, {102, 119}}, {132, {105, 151, 183}},
        {112, {127}},      {115, {130, 131, 162, 176}},
        {116, {162, 176}}, {102, {102}},
    };
    const auto isOf = [&](const auto& row) {
        return row.first == a.code && std::find(row.second.begin(), row.second.end(), b.code) != row.second.end();
    };
    if (std::any_of(hidden.begin(), hidden.end(), isOf)) return true;
    // A list ends at the next section at the latest.
    const std::string& text = base.files[a.file].text;
    const std::size_t end = std::min(text.find("END\nEND\n", a.at), text.find("END END\n", a.at));
    return a.spoilsList && a.file == b.file && b.at + b.length > a.at && b.at < end + 8;
}

/// Whether two mistakes have nothing to do with one another: on lines of their own, of which neither takes the other's.
bool AreIndependent(const Base& base, const Edit& a, const Edit& b) {
    if (Hides(base, a, b) || Hides(base, b, a)) return false;
    if (a.file != b.file) return true;
    const std::string& text = base.files[a.file].text;
    const auto lines = [&](const Edit& edit) {
        const std::size_t last = edit.at + std::max<std::size_t>(edit.length, 1) - 1;
        return std::pair(LineOf(text, edit.at), LineOf(text, std::min(last, text.size())));
    };
    const auto takesPlace = [](const Edit& edit, const Edit& other) {
        return !other.inside && other.elsewhere.empty() && other.place >= edit.at &&
               other.place < edit.at + edit.length;
    };
    return (lines(a).second < lines(b).first || lines(b).second < lines(a).first) && !takesPlace(a, b) &&
           !takesPlace(b, a);
}

/// Makes the mistakes, which are in the order of their places.
std::vector<File> Edited(const Base& base, const std::vector<const Edit*>& edits) {
    std::vector<File> files = base.files;
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
        files[(*edit)->file].text.replace((*edit)->at, (*edit)->length, (*edit)->with);
    }
    return files;
}

/// What is to be said of an edit when all of these are made.
std::string Expected(const std::vector<File>& edited, const std::vector<const Edit*>& edits, const Edit& edit) {
    const std::string code = std::to_string(edit.code) + ' ';
    if (!edit.elsewhere.empty()) return code + edit.elsewhere;
    std::size_t offset = edit.inside ? edit.at : edit.place;
    const std::size_t valid = offset;
    for (const Edit* other : edits) {
        const bool before = other->file == edit.file && other->at + other->length <= valid;
        if (before && !(edit.inside && other == &edit)) offset += other->with.size() - other->length;
    }
    if (edit.inside) offset += edit.place;
    const File& file = edited[edit.file];
    return code + (edit.file == 0 ? "" : file.name + ':') + PlaceOf(file.text, offset);
}

std::vector<std::string> Found(const std::vector<File>& files) {
    for (const File& file : files) WriteFile(file.name, file.text);
    CheckOptions options;
    options.warnings = false;
    std::vector<std::string> found;
    std::uint64_t last = 0;
    for (const Diagnostic& d : CheckModel(ScratchDirectory() + '/' + files[0].name, options)) {
        found.push_back(std::to_string(d.code) + ' ' + PlaceIn(files[0].name, d.place));
        if (d.includedFrom.empty() && d.place.path.find(files[0].name) != std::string::npos) {
            EXPECT_GE(d.place.offset, last);
            last = d.place.offset;
        }
    }
    return found;
}

std::string Joined(std::vector<std::string> parts) {
    std::sort(parts.begin(), parts.end());
    std::string text;
    for (const std::string& part : parts) text += part + ", ";
    return text;
}

/// Whether all mistakes are told, and nothing else.
bool TellsAll(const Base& base, std::vector<const Edit*> edits, bool carriageReturns) {
    std::sort(edits.begin(), edits.end(), [](const Edit* a, const Edit* b) { return a->at < b->at; });
    std::vector<File> files = Edited(base, edits);
    std::vector<std::string> expected;
    expected.reserve(edits.size());
    for (const Edit* edit : edits) expected.push_back(Expected(files, edits, *edit));
    for (File& file : files) file.text = carriageReturns ? Replaced(file.text, "\n", "\r\n") : file.text;
    const std::string found = Joined(Found(files));
    if (found == Joined(expected)) return true;
    std::string made;
    for (const Edit* edit : edits) {
        made += base.files[edit->file].text.substr(edit->at, edit->length) + " -> " + edit->with + '\n';
    }
    ADD_FAILURE() << made << "expected " << Joined(expected) << "\nfound    " << found;
    return false;
}

TEST(SeveralMistakes, AreToldEachOnceAndNothingElse) {
    WriteIncludedFiles();
    std::mt19937 random(7);
    const auto below = [&random](std::size_t end) { return random() % end; };
    int right = 0;
    int draws = 0;
    for (const Base& base : {ExplainedBase(), PlateBase()}) {
        ASSERT_EQ(Joined(Found(base.files)), "");
        for (const Edit& edit : base.edits) right += TellsAll(base, {&edit}, draws++ % 2 == 1) ? 1 : 0;
        for (int i = 0; i < (support::emulated ? 300 : 3000); ++i, ++draws) {
            std::vector<const Edit*> drawn;
            const std::size_t count = 2 + below(3);
            while (drawn.size() < count) {
                const Edit& edit = base.edits[below(base.edits.size())];
                const bool apart = std::all_of(drawn.begin(), drawn.end(),
                                               [&](const Edit* other) { return AreIndependent(base, edit, *other); });
                if (apart) drawn.push_back(&edit);
            }
            right += TellsAll(base, drawn, below(4) == 0) ? 1 : 0;
        }
    }
    std::printf("%d of %d files got exactly their mistakes (%.2f %%)\n", right, draws, 100.0 * right / draws);
}

}  // namespace
}  // namespace orvalo
