#include "cli/answer_words.h"

#include <gmock/gmock.h>

#include <sstream>

namespace basalt::cli {
namespace {

struct AnswersCase {
    const char* name;
    const char* line;
    const char* single;
};

class AnswerWords : public ::testing::TestWithParam<AnswersCase> {};

TEST_P(AnswerWords, areTakenAsLongAsTheyAreAnswers) {
    std::istringstream stream(GetParam().line);
    const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    const auto takesValue = [](const std::string& word) { return word == "--answer" || word == "--set"; };
    std::string joined;
    for (const std::string& word : withSingleAnswers(words, takesValue))
        joined += (joined.empty() ? "" : " ") + word;
    EXPECT_EQ(joined, GetParam().single);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, AnswerWords,
    ::testing::Values(
        AnswersCase{"none", "", ""}, AnswersCase{"withoutAnswers", "call F 4 1 --json", "call F 4 1 --json"},
        AnswersCase{"one", "call F 4 1 --answer yes", "call F 4 1 --answer yes"},
        AnswersCase{"several", "call F 4 --answer yes no cancel ok 6 --json",
                    "call F 4 --answer yes --answer no --answer cancel --answer ok --answer 6 --json"},
        AnswersCase{"repeated", "call F 4 --answer yes no --answer 6 7",
                    "call F 4 --answer yes --answer no --answer 6 --answer 7"},
        AnswersCase{"beforeTheFunction", "call --answer yes F 4", "call --answer yes F 4"},
        AnswersCase{"beforeTheArguments", "call F --answer yes no 4 1", "call F --answer yes --answer no 4 1"},
        AnswersCase{"aNumberFirst", "call F --answer 6 4 1", "call F --answer 6 4 1"},
        AnswersCase{"theValueOfAnOptionIsNoArgument", "call --set A=1 F --answer yes 4",
                    "call --set A=1 F --answer yes 4"},
        AnswersCase{"anOptionWithAnEqualsSignTakesOne", "call F 4 --answer=yes no", "call F 4 --answer=yes no"},
        AnswersCase{"anArgumentThatIsNoAnswer", "call F 4 --answer yes maybe no", "call F 4 --answer yes maybe no"},
        AnswersCase{"behindTheDashes", "call F 4 --answer yes -- no --answer yes no",
                    "call F 4 --answer yes -- no --answer yes no"},
        AnswersCase{"withoutAWord", "call F 4 --answer", "call F 4 --answer"},
        AnswersCase{"aWrongFirstWord", "call F 4 --answer maybe no", "call F 4 --answer maybe --answer no"}),
    [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace basalt::cli
