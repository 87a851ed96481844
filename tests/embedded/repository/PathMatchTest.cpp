// Whether a path that is asked for names an instance that is kept in root/home.
#include "repository/PathMatch.h"

#include <gtest/gtest.h>

#include <ostream>

namespace embedded::repository {

namespace {

enum class Match { Never, Loosely, Exactly };

struct MatchCase {
    const char* kept;
    const char* asked;
    Match match;
};

std::ostream& operator<<(std::ostream& out, const MatchCase& matchCase) {
    return out << matchCase.kept << " / " << matchCase.asked;
}

class PathMatch : public testing::TestWithParam<MatchCase> {};

TEST_P(PathMatch, FollowsTheRules) {
    const auto key = [](const char* path) {
        return PathKey(Pegasus::CIMObjectPath(Pegasus::String(path)),
                       Pegasus::CIMNamespaceName("root/Home"));
    };
    const PathKey kept = key(GetParam().kept);
    const PathKey asked = key(GetParam().asked);
    EXPECT_EQ(kept.matches(asked), GetParam().match == Match::Exactly);
    EXPECT_EQ(kept.matchesLoosely(asked), GetParam().match != Match::Never);
    EXPECT_TRUE(GetParam().match == Match::Never || kept.text() == asked.text()) << asked.text();
}

const MatchCase cases[] = {
    {"A.k=\"x\"", "a.K=\"x\"", Match::Exactly},
    {"A.k=\"x\"", "//h/root/other:A.k=\"x\"", Match::Exactly},
    {"A.k=\"x\"", "A.k=\"X\"", Match::Never},
    {"A.k=\"x\"", "B.k=\"x\"", Match::Never},
    {"A.k=\"5\"", "A.k=5", Match::Never},
    {"A.k=1,l=2", "A.L=2,K=1", Match::Exactly},
    {"A.k=1,l=2", "A.k=2,l=1", Match::Never},
    {"A.k=1", "A.k=1,l=2", Match::Never},
    {"A.k=31", "A.k=0x1F", Match::Exactly},
    {"A.k=-31", "A.k=31", Match::Never},
    {"A.k=TRUE", "A.k=true", Match::Exactly},
    {"A.k=\"a\",l=\"b\"", "A.k=\"a1:ls1:b\"", Match::Never},
    // Reference keys: where they point to.
    {"A.r=\"B.k=1\"", "A.r=\"b.K=0x1\"", Match::Exactly},
    {"A.r=\"B.k=1\"", "A.r=\"B.k=2\"", Match::Never},
    {"A.r=\"B.k=1\"", "A.r=\"ROOT/home:B.k=1\"", Match::Exactly},
    {"A.r=\"root/home:B.k=1\"", "A.r=\"B.k=1\"", Match::Exactly},
    {"A.r=\"B.k=1\"", "A.r=\"//h/root/home:B.k=1\"", Match::Exactly},
    {"A.r=\"B.k=1\"", "A.r=\"root/other:B.k=1\"", Match::Loosely},
    {"A.r=\"root/other:B.k=1\"", "A.r=\"B.k=1\"", Match::Never},
    {"A.r=\"//h/root/home:B.k=1\"", "A.r=\"//H/root/home:B.k=1\"", Match::Exactly},
    {"A.r=\"//h/root/home:B.k=1\"", "A.r=\"root/home:B.k=1\"", Match::Never},
    {"A.r=\"B.s=\\\"C.k=1\\\"\"", "A.r=\"B.s=\\\"root/home:C.k=1\\\"\"", Match::Exactly},
    {"A.r=\"B.s=\\\"C.k=1\\\"\"", "A.r=\"B.s=\\\"root/other:C.k=1\\\"\"", Match::Loosely},
};

INSTANTIATE_TEST_SUITE_P(Of, PathMatch, testing::ValuesIn(cases));

} // namespace
} // namespace embedded::repository
