// Number formats of grid columns: "positive;negative;zero" with # and 0, for instance "#,#0.##;-#,#0.##;0".
//
//   DisplayFormat format("#,#0.##;-#,#0.##;0");
//   format.text(*Decimal::parse("-1234567.5"))     "-1,234,567.5"
//
// 0 is a digit that is always shown, # one that is shown when it counts; a comma between digits groups by thousands.
// Other characters stand for themselves, as does text between quotation marks. A section that is missing is taken from
// the first one. The result has ASCII digits.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ado/decimal.h"

namespace basalt::host {

class DisplayFormat {
public:
    DisplayFormat() = default;  // shows numbers in plain digits
    explicit DisplayFormat(std::string_view pattern);

    [[nodiscard]] bool isEmpty() const { return sections_.empty(); }
    [[nodiscard]] std::string text(const Decimal& value) const;
    // The most digits after the point that the format shows; -1 when it is empty.
    [[nodiscard]] int decimals() const;

private:
    struct Section {
        std::string prefix;
        std::string suffix;
        int leastIntegerDigits = 0;
        int leastFractionDigits = 0;
        int mostFractionDigits = 0;
        bool groups = false;
        bool hasDigits = false;
    };
    [[nodiscard]] static Section parse(std::string_view pattern);
    [[nodiscard]] static std::string fill(const Section& section, const Decimal& magnitude);

    std::vector<Section> sections_;
};

}  // namespace basalt::host
