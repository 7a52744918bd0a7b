#pragma once

#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

#include <Orvalo3DReader/Model/Point.h>

#include "Model/CodeWords.h"
#include "Reader/Sections.h"
#include "Write/Refusal.h"
#include "Write/TextWriter.h"

namespace orvalo {

/// The word for a code, or nothing where there is none.
template <std::size_t n>
constexpr std::optional<std::string_view> WordFor(const CodeWord (&words)[n], int code) {
    for (const CodeWord& entry : words) {
        if (entry.code == code) return entry.word;
    }
    return std::nullopt;
}

/// Refuses a code without a word.
template <std::size_t n>
void CheckCode(const Subject& subject, std::string_view what, const CodeWord (&words)[n], int code) {
    if (!WordFor(words, code)) Refuse(subject, ": the ", what, " ", code, " has no word");
}

/// A section as text: a property on each line, with two blanks before it for each section or block that it is within.
class SectionText {
public:
    explicit SectionText(TextWriter& out) : out_(out) {}

    /// Begins the section of that grammar, after an empty line unless it is the first.
    void Begin(SectionGrammar grammar) {
        for (const Section& section : sections) {
            if (section.read != grammar) continue;
            if (!first_) out_.Text("\n");
            first_ = false;
            BeginBlock(section.name);
        }
    }
    /// Begins a block within a section.
    void BeginBlock(std::string_view word) {
        Line(word);
        ++depth_;
    }
    void End() {
        --depth_;
        Line("END");
    }

    void Property(std::string_view word, double value) {
        Head(word);
        out_.Number(value);
        out_.Text("\n");
    }
    void Property(std::string_view word, std::string_view value) {
        Head(word);
        out_.Text(value);
        out_.Text("\n");
    }
    void Property(std::string_view word, const Point& value) {
        Head(word);
        out_.Number(value.x);
        out_.Text(" ");
        out_.Number(value.y);
        out_.Text(" ");
        out_.Number(value.z);
        out_.Text("\n");
    }
    template <std::size_t n>
    void Property(std::string_view word, const CodeWord (&words)[n], int code) {
        Property(word, WordFor(words, code).value_or(""));
    }
    void Count(std::string_view word, std::uint64_t value) {
        Head(word);
        out_.Integer(value);
        out_.Text("\n");
    }
    void Name(std::string_view word, std::string_view name) {
        Head(word);
        out_.Text("\"");
        out_.Text(name);
        out_.Text("\"\n");
    }

    void Line(std::string_view text) {
        Indent();
        out_.Text(text);
        out_.Text("\n");
    }
    void Indent() {
        for (int i = 0; i < depth_; ++i) out_.Text("  ");
    }
    TextWriter& Out() { return out_; }

private:
    void Head(std::string_view word) {
        Indent();
        out_.Text(word);
        out_.Text(" = ");
    }

    TextWriter& out_;
    int depth_ = 0;
    bool first_ = true;
};

}  // namespace orvalo
