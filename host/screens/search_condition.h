// Conditions that search frames put to a list, as T-SQL over the list's columns.
//
//   textCondition("Name", "علي")            [Name] LIKE N'%عل[یيى]%'
//   digitsCondition("Code", "12")           CAST([Code] AS NVARCHAR(40)) LIKE N'12%'
//   rangeCondition("F1", "1000", "")        [F1] >= 1000
//   joinedConditions({a, b})                (a) AND (b)
//
// An empty input gives an empty condition, which narrows nothing.
#pragma once

#include <string>
#include <vector>

class QString;

namespace basalt::host {

// The input without the blanks around it as a pattern of LIKE, to stand within a literal. Arabic and Persian yeh and
// kaf are one letter, as are the three kinds of digits and the blank and the half-space; characters that mean something
// to LIKE stand for themselves.
[[nodiscard]] std::string likePattern(const QString& input);
// Texts that contain that pattern.
[[nodiscard]] std::string textCondition(const std::string& field, const QString& input);
// Whole numbers that begin with the digits of `input`; other characters are left out.
[[nodiscard]] std::string digitsCondition(const std::string& field, const QString& input);
// Numbers from `from` to `to`, either of which may be empty. Text that is no number counts as empty;
// a number with more digits than the server's numbers have is a bound beyond all values.
[[nodiscard]] std::string rangeCondition(const std::string& field, const QString& from, const QString& to);
// Equal to a value: a number as a number, any other text as text.
[[nodiscard]] std::string equalCondition(const std::string& field, const std::string& value);
// All of the conditions that are not empty; empty when there is none.
[[nodiscard]] std::string joinedConditions(const std::vector<std::string>& conditions);

}  // namespace basalt::host
