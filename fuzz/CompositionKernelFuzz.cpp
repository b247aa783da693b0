// Any text as an image kernel: what is taken becomes a shader that is not much longer.

#include "compositions/filters/Kernel.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using tarnwell::compositions::Kernel;
    const QString text = QString::fromLatin1(QByteArrayView(data, qsizetype(size)));
    if (const auto kernel = Kernel::translate(text)) {
        // Each word gets a prefix and a blank, each loop its counter; some functions longer names.
        if (kernel->functions().size() > 24 * text.size() || kernel->functions().contains('#')) {
            std::abort();
        }
    }
    return 0;
}
