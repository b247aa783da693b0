#include "compositions/expression/Operations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tarnwell::compositions::expression {

using namespace Qt::StringLiterals;

namespace {

using Arguments = std::span<const double>;

constexpr double degree = std::numbers::pi / 180.0;
constexpr int anyNumber = 100;

constexpr std::array table{
    Function{"abs"_L1, 1, 1, [](Arguments a) { return std::abs(a[0]); }},
    Function{"sqrt"_L1, 1, 1, [](Arguments a) { return std::sqrt(a[0]); }},
    Function{"max"_L1, 1, anyNumber, [](Arguments a) { return std::ranges::max(a); }},
    Function{"min"_L1, 1, anyNumber, [](Arguments a) { return std::ranges::min(a); }},
    Function{"floor"_L1, 1, 1, [](Arguments a) { return std::floor(a[0]); }},
    Function{"ceil"_L1, 1, 1, [](Arguments a) { return std::ceil(a[0]); }},
    Function{"round"_L1, 1, 1, [](Arguments a) { return std::round(a[0]); }},
    Function{"trunc"_L1, 1, 1, [](Arguments a) { return std::trunc(a[0]); }},
    Function{"sin"_L1, 1, 1, [](Arguments a) { return std::sin(a[0] * degree); }},
    Function{"cos"_L1, 1, 1, [](Arguments a) { return std::cos(a[0] * degree); }},
    Function{"tan"_L1, 1, 1, [](Arguments a) { return std::tan(a[0] * degree); }},
    Function{"asin"_L1, 1, 1, [](Arguments a) { return std::asin(a[0]) / degree; }},
    Function{"acos"_L1, 1, 1, [](Arguments a) { return std::acos(a[0]) / degree; }},
    Function{"atan"_L1, 1, 1, [](Arguments a) { return std::atan(a[0]) / degree; }},
    Function{"atan2"_L1, 2, 2, [](Arguments a) { return std::atan2(a[0], a[1]) / degree; }},
    Function{"sinh"_L1, 1, 1, [](Arguments a) { return std::sinh(a[0]); }},
    Function{"cosh"_L1, 1, 1, [](Arguments a) { return std::cosh(a[0]); }},
    Function{"tanh"_L1, 1, 1, [](Arguments a) { return std::tanh(a[0]); }},
    Function{"exp"_L1, 1, 1, [](Arguments a) { return std::exp(a[0]); }},
    Function{"ln"_L1, 1, 1, [](Arguments a) { return std::log(a[0]); }},
    Function{"log"_L1, 1, 1, [](Arguments a) { return std::log10(a[0]); }},
    Function{"pow"_L1, 2, 2, [](Arguments a) { return std::pow(a[0], a[1]); }},
    Function{"fmod"_L1, 2, 2,
             [](Arguments a) { return a[1] == 0.0 ? 0.0 : std::fmod(a[0], a[1]); }},
};

} // namespace

std::span<const Function> functions()
{
    return table;
}

double applyBinary(Operation operation, double left, double right)
{
    switch (operation) {
    case Add:
        return left + right;
    case Subtract:
        return left - right;
    case Multiply:
        return left * right;
    case Divide:
        return right == 0.0 ? 0.0 : left / right;
    case Remainder:
        return right == 0.0 ? 0.0 : std::fmod(left, right);
    case Power:
        return std::pow(left, right);
    case Equal:
        return left == right ? 1.0 : 0.0;
    case NotEqual:
        return left != right ? 1.0 : 0.0;
    case Less:
        return left < right ? 1.0 : 0.0;
    case LessEqual:
        return left <= right ? 1.0 : 0.0;
    case Greater:
        return left > right ? 1.0 : 0.0;
    case GreaterEqual:
        return left >= right ? 1.0 : 0.0;
    case And:
        return left != 0.0 && right != 0.0 ? 1.0 : 0.0;
    case Or:
        return left != 0.0 || right != 0.0 ? 1.0 : 0.0;
    default:
        return 0.0;
    }
}

} // namespace tarnwell::compositions::expression
