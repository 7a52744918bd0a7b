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
    {102, 102, ExplainMemory},
    {103, 104, ExplainFile},
    {105, 105, ExplainCharacter},
    {106, 106, ExplainCharacterInWord},
    {107, 107, ExplainCharacterInNumber},
    {108, 109, ExplainOpenName},
    {110, 110, ExplainIncludeName},
    {111, 111, ExplainSecondInclude},
    {112, 113, ExplainID},
    {114, 114, ExplainSwitch},
    {115, 115, ExplainMissingProperties},
    {116, 116, ExplainCount},
    {117, 117, ExplainMissingProperties},
    {118, 118, ExplainNumber},
    {119, 119, ExplainRange},
    {120, 122, ExplainCoordinate},
    {123, 126, ExplainWord},
    {127, 127, ExplainPointReused},
    {128, 128, ExplainPiezoDirection},
    {129, 129, ExplainPoint},
    {130, 131, ExplainPointCount},
    {132, 132, ExplainSectionName},
    {133, 133, ExplainNoEnd},
    {134, 134, ExplainOrder},
    {135, 135, ExplainSecondSection},
    {136, 137, ExplainOrder},
    {138, 138, ExplainSecondSection},
    {139, 140, ExplainOrder},
    {141, 141, ExplainSecondSection},
    {142, 142, ExplainOrder},
    {143, 144, ExplainNeededSection},
    {145, 145, ExplainMaterialNumber},
    {146, 146, ExplainMaterialReused},
    {147, 147, ExplainMaterialFormat},
    {148, 148, ExplainMaterialName},
    {149, 149, ExplainMaterialFormat},
    {150, 151, ExplainRowMaterial},
    {152, 152, ExplainFormat},
    {154, 154, ExplainInit},
    {155, 155, ExplainTooFewRows},
    {156, 156, ExplainTooManyRows},
    {157, 158, ExplainSamples},
    {159, 159, ExplainMissingProperties},
    {160, 160, ExplainSecondTable},
    {161, 164, ExplainReusedID},
    {165, 165, ExplainAppending},
    {166, 174, ExplainWord},
    {175, 175, ExplainPath},
    {176, 176, ExplainPiezoTable},
    {177, 177, ExplainUndefinedTable},
    {178, 178, ExplainKeyword},
    {179, 179, ExplainSampleCounts},
    {180, 180, ExplainRowNumber},
    {181, 181, ExplainReusedID},
    {183, 183, ExplainRowNumber},
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
