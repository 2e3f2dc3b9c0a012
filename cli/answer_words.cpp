#include "cli/answer_words.h"

#include <algorithm>

#include "host/calls/answer.h"

namespace basalt::cli {
namespace {

constexpr const char* kAnswer = "--answer";
constexpr int kWordsOfACall = 3;  // the command, the function and the first argument

bool isOption(const std::string& word) {
    return word.size() > 1 && word.front() == '-';
}

}  // namespace

std::vector<std::string> withSingleAnswers(const std::vector<std::string>& words,
                                           const std::function<bool(const std::string&)>& takesValue) {
    std::vector<std::string> single;
    const auto end = std::find(words.begin(), words.end(), "--");
    int positionals = 0;
    const auto isAnother = [&](const std::string& word) {
        if (isOption(word)) return false;
        const auto answer = host::Answer::parse(word);
        return answer && (answer->named || positionals >= kWordsOfACall);
    };
    for (auto word = words.begin(); word != end; ++word) {
        single.push_back(*word);
        if (!isOption(*word)) {
            ++positionals;
            continue;
        }
        if (!takesValue(*word) || word + 1 == end) continue;
        const bool answers = *word == kAnswer;
        single.push_back(*++word);
        while (answers && word + 1 != end && isAnother(word[1])) {
            single.emplace_back(kAnswer);
            single.push_back(*++word);
        }
    }
    single.insert(single.end(), end, words.end());
    return single;
}

}  // namespace basalt::cli
