#include <gtest/gtest.h>

#include "Common/MessageCatalogue.h"

namespace orvalo {
namespace {

TEST(MessageCatalogue, HasEachCodeOnce) {
    enum Ends : unsigned int { Nothing = 0, Model = 1, Results = 2, Query = 4 };
    const struct {
        int first;
        int last;
        unsigned int ends;
    } ranges[] = {
        {100, 101, Nothing}, {102, 102, Model | Results}, {103, 152, Model},   {154, 183, Model},
        {200, 211, Results}, {300, 305, Query},           {306, 308, Results},
    };
    const auto* range = ranges;
    for (int code = -1; code < 1000; ++code) {
        if (range != std::end(ranges) && code > range->last) ++range;
        const bool known = range != std::end(ranges) && code >= range->first;
        const ExceptionMessage* const found = FindMessage(code);
        ASSERT_EQ(found != nullptr, known) << code;
        EXPECT_EQ(known ? found->code : code, code);
        const unsigned int ends =
            (MayEndModel(code) ? Model : 0U) | (MayEndResults(code) ? Results : 0U) | (MayEndQuery(code) ? Query : 0U);
        EXPECT_EQ(ends, known ? range->ends : 0U) << code;
    }
}

}  // namespace
}  // namespace orvalo
