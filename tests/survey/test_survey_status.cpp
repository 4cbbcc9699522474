// Every status has its own text, and a value outside the enumeration is
// named as such rather than read out of bounds.
#include "quillon/survey.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>

// status_from_c.c
extern "C" const char* status_message_from_c(int status);

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
}

TEST(SurveyStatus, AnyIntFromACallerIsUnknownBeyondTheCodes)
{
    // Beyond the enumeration's range (0 to 7) the value is read as the int
    // it is: a sanitized build reports no invalid enumeration value.
    const int values[] = {6, 7, 8, 99, -1, INT_MIN, INT_MAX, 0x1040000};
    for (const int value : values) {
        EXPECT_STREQ(status_message_from_c(value), "unknown status") << "value " << value;
    }
    EXPECT_STREQ(status_message_from_c(QS_SINGULAR), "singular geometry");
}
