// SPDX-License-Identifier: MIT
#include "platform/base/RealText.h"

#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle {

TEST(RealText, AsTextAsSourceAndExactly) {
    const struct {
        double value;
        const char *text, *source, *exact;
    } cases[] = {
        {0, "0.0", "0.0", "0.0"},
        {-0.0, "-0.0", "-0.0", "-0.0"},
        {-2.5, "-2.5", "-2.5", "-2.5"},
        {0.1 + 0.2, "0.3", "0.3", "0.30000000000000004"},
        {1000.0 / 3, "333.333333333333", "333.333333333333", "333.3333333333333"},
        {1.0 / 24, "0.041666666667", "0.041666666667", "0.041666666666666664"},
        {9999.5, "9999.5", "9999.5", "9999.5"},
        {10000, "1.0E+4", "1.0E+4", "1.0E+4"},
        {100000.0 / 3, "3.333333333333E+4", "3.33333333333333E+4", "3.3333333333333336E+4"},
        {0x1p60, "1.152921504607E+18", "1.15292150460685E+18", "1.152921504606847E+18"},
        {0.001, "0.001", "0.001", "0.001"},
        {0.00099, "9.9E-4", "9.9E-4", "9.9E-4"},
        {9999.99999999999999, "1.0E+4", "1.0E+4", "1.0E+4"},
        {99999.99999999999, "1.0E+5", "1.0E+5", "9.999999999999999E+4"},
        {1e300, "1.0E+300", "1.0E+300", "1.0E+300"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(utf8FromUTF16(textOfReal(each.value)), each.text);
        EXPECT_EQ(utf8FromUTF16(sourceOfReal(each.value)), each.source);
        EXPECT_EQ(utf8FromUTF16(exactSourceOfReal(each.value)), each.exact);
    }
}

} // namespace quoddle
