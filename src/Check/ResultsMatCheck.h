#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "Check/MatElement.h"
#include "Check/ResultsFindings.h"
#include "Common/Platform.h"

namespace orvalo {

/// Finds the element for which ResultsReader has refused a MAT-file, and tells what differs from the accepted form. Of
/// the data only the coordinates are read, and these only where nothing else is wrong.
class ResultsMatCheck {
public:
    /// `size` is that of the open file.
    ResultsMatCheck(ResultsFindings& findings, platform::InputFile& file, std::uint64_t size)
        : findings_(findings), file_(file), size_(size) {}

    void Execute();

private:
    enum class NameFault : std::uint8_t { None, Short, NoName, TooLong };

    bool CheckElement(MatElement& element);
    NameFault TakeName(MatElement& element);
    bool CheckHead(MatElement& element);
    bool CheckName(MatElement& element);
    bool CheckDataTag(MatElement& element);
    bool CheckValues(const MatElement& element);
    bool CheckIndices(const MatElement& element);
    bool CheckLeft(const MatElement& element);
    void CheckWhole();
    void CheckBox();

    bool ReadAt(std::uint64_t offset, void* buffer, std::size_t size);
    Diagnostic& Add(const Exception& error, std::uint64_t offset, std::uint64_t length);
    /// The file ends within what the text names, which has `due` bytes from `offset` on.
    bool AddShort(const std::string& what, std::uint64_t offset, std::uint64_t due);

    ResultsFindings& findings_;
    platform::InputFile& file_;
    std::uint64_t size_;
    std::optional<MatElement> values_;
    std::optional<MatElement> indices_;
};

}  // namespace orvalo
