// Any text as an expression: it compiles or not, and what compiles gives a finite number.

#include "compositions/expression/Expression.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using tarnwell::compositions::Expression;
    const QString text = QString::fromUtf8(QByteArrayView(data, qsizetype(size)));
    if (const auto expression = Expression::compile(text)) {
        std::vector<double> values;
        for (qsizetype i = 0; i < expression->variables().size(); ++i) {
            values.push_back(double(i) - 1.5);
        }
        if (!std::isfinite(expression->evaluate(values))) {
            std::abort();
        }
    }
    return 0;
}
