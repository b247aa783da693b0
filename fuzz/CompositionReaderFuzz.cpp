// Any bytes as a composition file: reading them and reporting on them must end well.

#include "compositions/evaluator/Report.h"
#include "compositions/reader/CompositionReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace tarnwell::compositions;
    const auto composition = readComposition(QByteArrayView(data, qsizetype(size)));
    if (composition) {
        describe(Evaluator(composition));
    }
    return 0;
}
