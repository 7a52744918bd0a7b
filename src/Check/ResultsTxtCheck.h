#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Check/CellBox.h"
#include "Check/ResultsFindings.h"
#include "Check/ResultsHeader.h"
#include "Common/Platform.h"
#include "Results/RowBlocks.h"
#include "Results/TextLines.h"
#include "Results/TextRow.h"

namespace orvalo {

/// Looks for all that is wrong with text results, line by line, after ResultsReader has refused them.
class ResultsTxtCheck {
public:
    explicit ResultsTxtCheck(ResultsFindings& findings) : findings_(findings) {}

    /// Reads the open file from its start.
    void Execute(platform::InputFile& file);

private:
    bool CheckHeader(const TextLine& line);
    void CheckRow(const TextLine& line);
    void AddRowError(const TextLine& line, RowEnd end, unsigned int missing);
    bool ExplainByHeader(Diagnostic& diagnostic, const TextLine& line);
    void ExplainEnd(Diagnostic& diagnostic, const TextLine& line) const;
    void CountRow();
    void AddTooManyRows();
    void TellHeader(Diagnostic& diagnostic);
    void UseColumns(const TextColumns& columns);
    bool HidesBytes(const TextLine& line) const;
    TextRow Read(const TextLine& line, const TextColumns& columns);

    ResultsFindings& findings_;
    TextPlace place_;
    TextPlace nextPlace_;
    TextColumns columns_;
    std::optional<MeantColumns> meant_;
    std::string header_;
    bool headerTold_ = false;
    std::uint64_t lastErrorLine_ = 0;
    /// Lines as the reader counts them.
    std::uint64_t line_ = 0;
    std::uint64_t rows_ = 0;
    std::uint64_t rowLimit_ = 0;
    bool ended_ = false;
    std::vector<short> indices_;
    std::vector<double> values_;
    DecimalRuns runs_;
    CellBox box_;
};

}  // namespace orvalo
