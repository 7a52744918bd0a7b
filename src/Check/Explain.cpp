#include "Check/Explain.h"

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"

namespace orvalo {

namespace {

using M = ReaderMessages;

/// What explains the errors of some codes.
struct Explanation {
    int first;
    int last;
    void (*explain)(Diagnostic& diagnostic, ErrorCollector& errors);
};

const Explanation explanations[] = {
    {105, 105, ExplainCharacter},
    {106, 106, ExplainCharacterInWord},
    {107, 107, ExplainCharacterInNumber},
    {108, 109, ExplainOpenName},
    {123, 126, ExplainWord},
    {129, 129, ExplainWord},
    {132, 132, ExplainSectionName},
    {166, 174, ExplainWord},
    {178, 178, ExplainKeyword},
};

}  // namespace

void Explain(Diagnostic& diagnostic, ErrorCollector& errors) {
    for (const Explanation& explanation : explanations) {
        if (diagnostic.code >= explanation.first && diagnostic.code <= explanation.last) {
            explanation.explain(diagnostic, errors);
        }
    }
}

}  // namespace orvalo
