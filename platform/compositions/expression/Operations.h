#pragma once

#include <QLatin1StringView>
#include <QtGlobal>

#include <span>

namespace tarnwell::compositions::expression {

/// What one step of a compiled expression does with the top of the stack.
enum Operation : quint8 {
    Constant,
    Variable,
    Negate,
    Not,
    Add,
    Subtract,
    Multiply,
    Divide,
    Remainder,
    Power,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    And,
    Or,
    Choose,
    Random,
    FirstFunction // the index into the table of functions is added
};

struct Function
{
    QLatin1StringView name;
    int leastArguments;
    int mostArguments;
    double (*call)(std::span<const double> arguments);
};

std::span<const Function> functions();

/// The result of an operation on two operands.
double applyBinary(Operation operation, double left, double right);

} // namespace tarnwell::compositions::expression
