// Every status has its own text, and a value outside the enumeration is
// named as such rather than read out of bounds.
#include "quillon/survey.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

TEST(SurveyStatus, EveryCodeHasItsOwnText)
{
    const qs_status codes[] = {
        QS_OK, QS_TOO_FEW, QS_SINGULAR, QS_NO_CONVERGENCE, QS_OUTSIDE_ALIGNMENT, QS_BAD_ARGUMENT};
    std::set<std::string> texts;
    for (qs_status code : codes) {
        texts.insert(qs_status_message(code));
    }
    EXPECT_EQ(texts.size(), 6u);
    EXPECT_EQ(texts.count("unknown status"), 0u);
    EXPECT_STREQ(qs_status_message(static_cast<qs_status>(99)), "unknown status");
    EXPECT_STREQ(qs_status_message(static_cast<qs_status>(-1)), "unknown status");
}
