#include "BrimquillCore/Foundation/Date.h"

#include <gtest/gtest.h>

namespace brimquill {
namespace {

TEST(Date, DistantPastSortsBeforeEveryRealDate) {
    EXPECT_LT(Date::distantPast(), Date{0});
    EXPECT_LT(Date::distantPast(), Date{-2208988800.0});
    EXPECT_GT(Date::now(), Date{1.7e9});
}

}  // namespace
}  // namespace brimquill
