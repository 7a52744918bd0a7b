#include "Reader/ReaderCore.h"

#include <cmath>
#include <limits>

#include "Common/Raise.h"

namespace orvalo {

void ReaderCore::NextValue() {
    NextToken();
    if (token.type == TokenType::Equals) NextToken();
}

void ReaderCore::SkipToEnd() {
    for (NextToken(); !IsKeyword("end"); NextToken()) {
        if (token.type == TokenType::EndOfFile) ORVALO_RAISE(SectionReader, ReaderMessages::SectionClosingExpected);
    }
}

std::size_t ReaderCore::Match(const WordList& words, const ExceptionMessage& message) const {
    const auto place = token.type == TokenType::Keyword ? words.Find(token.text) : std::nullopt;
    if (!place) {
        expected = words;
        ORVALO_RAISE(ReaderMisc, message);
    }
    return *place;
}

std::optional<std::size_t> ReaderCore::FindWord(const WordList& words, const char* sourceModule,
                                                const ExceptionMessage& message) const {
    if (token.type != TokenType::Keyword) {
        expected = words;
        Raise(sourceModule, __LINE__, message);
    }
    const auto place = words.Find(token.text);
    if (!place) endedList = words;
    return place;
}

std::optional<std::int64_t> ReaderCore::Truncated() const {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (token.type != TokenType::Number) return std::nullopt;
    if (!(token.value < limit && token.value >= -limit)) return std::nullopt;
    const auto value = static_cast<std::int64_t>(token.value);
    if (static_cast<double>(value) != token.value) TellOf(NumberChange::FractionCut, value);
    return value;
}

std::optional<int> ReaderCore::TruncatedID() const {
    const auto value = Truncated();
    if (!value) return std::nullopt;
    const auto id = static_cast<std::int32_t>(static_cast<std::uint32_t>(*value));
    if (id != *value) TellOf(NumberChange::Wrapped, id);
    return id >= 1 ? std::optional<int>(id) : std::nullopt;
}

int ReaderCore::ReadID() const {
    const auto id = TruncatedID();
    if (!id) ORVALO_RAISE(ReaderCore, ReaderMessages::InvalidIDProperty);
    return *id;
}

bool ReaderCore::ReadEnabled() const {
    const auto value = Truncated();
    const auto flag = static_cast<std::uint32_t>(value.value_or(-1));
    if (flag > 1) ORVALO_RAISE(ReaderCore, ReaderMessages::InvalidEnabledProperty);
    return flag == 1;
}

double ReaderCore::ExpectNumber() const {
    if (token.type != TokenType::Number) ORVALO_RAISE(ReaderMisc, ReaderMessages::NumericalValueExpected);
    return token.value;
}

double ReaderCore::ExpectGreaterThan(double bound) const {
    if (!(ExpectNumber() > bound)) {
        range = {bound, std::numeric_limits<double>::infinity(), false};
        ORVALO_RAISE(ReaderMisc, ReaderMessages::InvalidPropertyValue);
    }
    return token.value;
}

double ReaderCore::ExpectAtLeast(double bound) const {
    if (bound > ExpectNumber()) {
        range = {bound, std::numeric_limits<double>::infinity(), true};
        ORVALO_RAISE(ReaderMisc, ReaderMessages::InvalidPropertyValue);
    }
    return token.value;
}

Point ReaderCore::ReadCoordinates() {
    const auto read = [this](const ExceptionMessage& message) {
        const auto value = Truncated();
        const auto coordinate = static_cast<std::int32_t>(static_cast<std::uint32_t>(value.value_or(0)));
        if (value && coordinate != *value) TellOf(NumberChange::Wrapped, coordinate);
        if (!value || coordinate < std::numeric_limits<short>::min() ||
            coordinate > std::numeric_limits<short>::max()) {
            ORVALO_RAISE(ReaderMisc, message);
        }
        return static_cast<short>(coordinate);
    };
    Point point;
    point.x = read(ReaderMessages::InvalidXCoordinate);
    NextToken();
    point.y = read(ReaderMessages::InvalidYCoordinate);
    NextToken();
    point.z = read(ReaderMessages::InvalidZCoordinate);
    return point;
}

}  // namespace orvalo
