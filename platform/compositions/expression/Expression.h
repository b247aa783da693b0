#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <span>
#include <vector>

namespace tarnwell::compositions {

/// An arithmetic expression, compiled once and run many times.
///
/// Numbers, names as variables, + - * / % ^, comparisons, && || !, ?: and the usual functions;
/// angles are in degrees. Truth is 1, falsehood 0, and a result that is no finite number is 0.
class Expression
{
public:
    /// Nothing when the text is no expression; the error then says why.
    static std::optional<Expression> compile(QStringView text, QString *error = nullptr);

    /// The variables in the order in which they first occur.
    const QStringList &variables() const { return m_variables; }

    /// How many steps a run takes.
    qsizetype length() const { return qsizetype(m_steps.size()); }

    /// As many values as there are variables. The seed decides what rand() gives.
    double evaluate(std::span<const double> values, quint64 seed = 0) const;

private:
    friend class ExpressionParser;

    struct Step
    {
        quint8 operation = 0;
        quint8 arguments = 0;
        int variable = 0;
        double constant = 0.0;
    };

    QStringList m_variables;
    std::vector<Step> m_steps; ///< in reverse Polish order
    size_t m_stackSize = 0;
};

} // namespace tarnwell::compositions
