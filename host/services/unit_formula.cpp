#include "host/services/unit_formula.h"

#include <charconv>
#include <cmath>

namespace basalt::host {

namespace {

constexpr int kDeepest = 100;

// Every function takes its part off the front of the text, or fails for good.
class Evaluator {
public:
    Evaluator(std::string_view text, double quantity) : text_(text), quantity_(quantity) {}

    std::optional<double> evaluate() {
        const double value = sum(0);
        skipBlanks();
        if (failed_ || !text_.empty() || !std::isfinite(value)) return std::nullopt;
        return value;
    }

private:
    void skipBlanks() {
        while (!text_.empty() && (text_.front() == ' ' || text_.front() == '\t'))
            text_.remove_prefix(1);
    }

    bool take(char c) {
        skipBlanks();
        if (text_.empty() || text_.front() != c) return false;
        text_.remove_prefix(1);
        return true;
    }

    double fail() {
        failed_ = true;
        return 0;
    }

    double sum(int depth) {
        double value = product(depth);
        while (!failed_) {
            if (take('+')) {
                value += product(depth);
            } else if (take('-')) {
                value -= product(depth);
            } else {
                break;
            }
        }
        return value;
    }

    double product(int depth) {
        double value = factor(depth);
        while (!failed_) {
            if (take('*')) {
                value *= factor(depth);
            } else if (take('/')) {
                value /= factor(depth);
            } else {
                break;
            }
        }
        return value;
    }

    double factor(int depth) {
        if (depth > kDeepest) return fail();
        if (take('-')) return -factor(depth + 1);
        if (take('(')) {
            const double value = sum(depth + 1);
            return take(')') ? value : fail();
        }
        if (take('X') || take('x')) return quantity_;
        return number();
    }

    double number() {
        skipBlanks();
        if (text_.empty() || text_.front() < '0' || text_.front() > '9') return fail();
        double value = 0;
        const auto [end, failure] =
            std::from_chars(text_.data(), text_.data() + text_.size(), value, std::chars_format::fixed);
        if (failure != std::errc{}) return fail();
        text_.remove_prefix(static_cast<std::size_t>(end - text_.data()));
        return value;
    }

    std::string_view text_;
    double quantity_;
    bool failed_ = false;
};

}  // namespace

std::optional<double> evaluateUnitFormula(std::string_view formula, double quantity) {
    return Evaluator(formula, quantity).evaluate();
}

}  // namespace basalt::host
