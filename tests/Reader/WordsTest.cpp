#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "Model/CodeWords.h"
#include "Reader/Sections.h"

namespace orvalo {
namespace {

/// A fuzzer that does not know a word would hardly ever find it.
TEST(Words, AreInTheFuzzersDictionary) {
    std::ifstream file(ORVALO_EXAMPLES "/../fuzz/model.dict");
    const std::string dictionary{std::istreambuf_iterator<char>(file), {}};
    const auto expectAll = [&](const WordList& words) {
        for (std::size_t i = 0; i < words.size(); ++i) {
            EXPECT_NE(dictionary.find('"' + std::string(words[i]) + ' '), std::string::npos) << words[i];
        }
    };
    expectAll(sections);
    for (const Section& section : sections) expectAll(section.words());
    for (const WordList& words :
         {WordList(actuatorInputs), WordList(excitationMethods), WordList(actuatorTypes), WordList(actuatorWaveforms),
          WordList(actuatorEnvelopes), WordList(actuatorProcessings), WordList(fileWriteModes), WordList(fileNotations),
          WordList(fileFormats)}) {
        expectAll(words);
    }
}

}  // namespace
}  // namespace orvalo
