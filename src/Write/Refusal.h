#pragma once

#include <concepts>
#include <string>
#include <string_view>

namespace orvalo {

/// What a text is about: a sensor by its ID, a cube by its place in the grid.
struct Subject {
    std::string_view kind;
    long long number;
};

void Append(std::string& text, std::string_view part);
void Append(std::string& text, const Subject& subject);
void Append(std::string& text, double number);
void AppendInteger(std::string& text, long long number);
template <std::integral Number>
void Append(std::string& text, Number number) {
    AppendInteger(text, static_cast<long long>(number));
}

[[noreturn]] void ThrowRefusal(const std::string& text);

/// Throws a WriteError of all parts, one after the other.
template <class... Parts>
[[noreturn]] void Refuse(const Parts&... parts) {
    std::string text;
    (Append(text, parts), ...);
    ThrowRefusal(text);
}

/// Refuses a name that would not come back: what the reader drops from a name, or folds to lower case.
void CheckName(const Subject& subject, std::string_view what, std::string_view name);

/// Refuse what the properties of those kinds do not hold: no number at all, or one beyond the bound.
void CheckNumber(const Subject& subject, std::string_view what, double value);
void CheckAtLeast(const Subject& subject, std::string_view what, double value, double bound);
void CheckAbove(const Subject& subject, std::string_view what, double value, double bound);

/// Refuses an ID that is not positive, or under which the thing is not filed.
void CheckId(const Subject& subject, int ownId);

}  // namespace orvalo
