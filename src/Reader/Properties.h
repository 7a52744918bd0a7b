#pragma once

#include <cstddef>
#include <cstdint>

#include "Common/Raise.h"
#include "Reader/ReaderCore.h"
#include "Reader/WordList.h"

/// The properties of a section as a table, and the one loop that reads them.
namespace orvalo {

/// What follows the word of a property, and where reading it leaves the current token.
enum class Takes : std::uint8_t {
    Nothing,    ///< It ends the section.
    Switch,     ///< 0 or 1 after an optional `=`: whether the section counts.
    Value,      ///< A value after an optional `=`. Its last token stays current.
    BareValue,  ///< A value without `=`.
    Words,      ///< Words after an optional `=`. The first token that is none of them stays current.
    Block,      ///< Whatever its reading takes. The last token stays current.
    Rows,       ///< As Block, once all obligatory properties that stand before it in the table are given.
};

/// When a property is obligatory: a bit for each case that a section knows.
using Need = std::uint8_t;
inline constexpr Need optional = 0;
inline constexpr Need always = 1;

/// All that is to be said of a keyword of a section.
template <class Target>
struct Property {
    std::string_view word;
    /// As messages show it.
    const char* name;
    Takes takes;
    Need need = optional;
    /// Reads what follows into the target, from its first token on; a block from the property's own word on.
    void (*read)(ReaderCore& core, Target& target) = nullptr;
};

/// Which properties of a table were given.
class PropertySet {
public:
    void Add(std::size_t row) { bits_ |= std::uint32_t{1} << row; }
    bool Has(std::size_t row) const { return (bits_ >> row & 1U) != 0; }

    /// The first of the first `rows` properties that `need` asks for and that was not given, or null.
    template <class Target, std::size_t n>
    const Property<Target>* Missing(const Property<Target> (&table)[n], Need need, std::size_t rows = n) const {
        for (std::size_t row = 0; row < rows; ++row) {
            if ((table[row].need & need) != 0 && !Has(row)) return &table[row];
        }
        return nullptr;
    }

    /// Whether any of them is missing; all of them are then told to who follows the read.
    template <class Target, std::size_t n>
    bool Lacks(const ReaderCore& core, const Property<Target> (&table)[n], Need need, std::size_t rows = n) const {
        if (core.recovery != nullptr) {
            core.missing.clear();
            for (std::size_t row = 0; row < rows; ++row) {
                if ((table[row].need & need) != 0 && !Has(row)) core.missing.push_back(table[row].word);
            }
        }
        return Missing(table, need, rows) != nullptr;
    }

    /// Throws ObligatoryMissing for the property that Missing gives.
    template <class Target, std::size_t n>
    void Require(const ReaderCore& core, const Property<Target> (&table)[n], std::size_t rows = n) const {
        if (!Lacks(core, table, always, rows)) return;
        ORVALO_RAISE(ReaderMisc, ReaderMessages::ObligatoryMissing, Missing(table, always, rows)->name);
    }

private:
    std::uint32_t bits_ = 0;
};

/// Whether a table leaves nothing unsaid: END comes first, no word hides another, and each property can be read.
template <class Target, std::size_t n>
constexpr bool IsComplete(const Property<Target> (&table)[n]) {
    if (!HasWords(table) || n > 32 || table[0].word != "end") return false;
    for (const Property<Target>& property : table) {
        const bool readByLoop = property.takes == Takes::Nothing || property.takes == Takes::Switch;
        if (property.name == nullptr || (property.read == nullptr) != readByLoop) return false;
        if ((property.takes == Takes::Nothing) != (property.word == "end")) return false;
    }
    return true;
}

/// Moves on to the value of a property, whose word is current.
inline void BeginValue(ReaderCore& core, Takes takes) {
    switch (takes) {
        case Takes::Switch:
        case Takes::Value:
        case Takes::Words:
            return core.NextValue();
        case Takes::BareValue:
            return core.NextToken();
        case Takes::Nothing:
        case Takes::Block:
        case Takes::Rows:
            return;
    }
}

/// Reads the properties of a section from the token after its name to its END, which stays current, and collects them
/// in `given`. Returns false, with the value current, when the section is switched off. Throws UnknownKeyword and what
/// the properties throw. Where reading goes on after an error, a property that failed counts as given.
template <class Target, std::size_t n>
bool ReadProperties(ReaderCore& core, const Property<Target> (&table)[n], Target& target, PropertySet& given) {
    core.sectionWords = table;
    for (bool moveOn = true;;) {
        std::size_t row = n;
        try {
            if (moveOn) core.NextToken();
            row = core.Match(table, ReaderMessages::UnknownKeyword);
            const Property<Target>& property = table[row];
            if (property.takes == Takes::Nothing) return true;
            if (core.recovery != nullptr) core.recovery->PropertyBegins(property.word);
            if (property.takes == Takes::Rows) core.Attempt([&] { given.Require(core, table, row); });
            BeginValue(core, property.takes);
            if (core.recovery != nullptr) core.recovery->ValueBegins();
            if (property.takes == Takes::Switch) {
                if (!core.ReadEnabled()) {
                    if (core.recovery != nullptr) core.recovery->PropertyEnds();
                    return false;
                }
            } else {
                property.read(core, target);
            }
            given.Add(row);
            moveOn = property.takes != Takes::Words;
            if (core.recovery != nullptr) core.recovery->PropertyEnds();
        } catch (const Exception& failure) {
            if (core.recovery != nullptr && row == n) given.Lacks(core, table, always);
            if (!core.Recovers(failure)) throw;
            if (row < n) given.Add(row);
            if (row < n) core.recovery->PropertyEnds();
            moveOn = false;
            if (row < n && table[row].takes == Takes::Value && core.BeginsSection(table[row].word)) {
                core.HoldSection(table[row].word);
                return true;
            }
            if (!core.ResumeAmong(table, row == n)) return true;
        }
    }
}

}  // namespace orvalo
