#include "compositions/preview/SharedMemory.h"

#include "compositions/Limits.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwell::compositions::preview {

using foundation::UniqueFd;

namespace {

UniqueFd memoryFile(qint64 size)
{
    UniqueFd file(::memfd_create("tarnwell-composition", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (file && ::ftruncate(file.get(), size) != 0)
        return {};
    return file;
}

uchar *mapped(int descriptor, qint64 size, int protection)
{
    void *const bytes = ::mmap(nullptr, size_t(size), protection, MAP_SHARED, descriptor, 0);
    return bytes == MAP_FAILED ? nullptr : static_cast<uchar *>(bytes);
}

} // namespace

std::optional<FrameMemory> FrameMemory::create(qint64 slotSize)
{
    const qint64 size = slotSize * slotCount;
    UniqueFd file = memoryFile(size);
    if (!file || ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return std::nullopt;
    uchar *const bytes = mapped(file.get(), size, PROT_READ);
    if (!bytes)
        return std::nullopt;
    return FrameMemory(std::move(file), bytes, size);
}

std::optional<FrameMemory> FrameMemory::map(UniqueFd descriptor, qint64 size)
{
    struct stat facts;
    if (size <= 0 || ::fstat(descriptor.get(), &facts) != 0 || facts.st_size != size)
        return std::nullopt;
    uchar *const bytes = mapped(descriptor.get(), size, PROT_READ | PROT_WRITE);
    if (!bytes)
        return std::nullopt;
    return FrameMemory(std::move(descriptor), bytes, size);
}

FrameMemory::FrameMemory(UniqueFd descriptor, uchar *bytes, qint64 size)
    : m_descriptor(std::move(descriptor))
    , m_bytes(bytes)
    , m_size(size)
{}

FrameMemory::FrameMemory(FrameMemory &&other) noexcept
    : m_descriptor(std::move(other.m_descriptor))
    , m_bytes(std::exchange(other.m_bytes, nullptr))
    , m_size(std::exchange(other.m_size, 0))
{}

FrameMemory &FrameMemory::operator=(FrameMemory &&other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    std::swap(m_bytes, other.m_bytes);
    std::swap(m_size, other.m_size);
    return *this;
}

FrameMemory::~FrameMemory()
{
    if (m_bytes)
        ::munmap(m_bytes, size_t(m_size));
}

qint64 frameBytes(QSize pixels)
{
    if (pixels.isEmpty() || pixels.width() > limits::imageSide ||
        pixels.height() > limits::imageSide)
        return 0;
    return qint64(pixels.width()) * pixels.height() * 4;
}

UniqueFd sealedFile(const QByteArray &bytes)
{
    UniqueFd file = memoryFile(0);
    for (qsizetype written = 0; file && written < bytes.size();) {
        const ssize_t step =
            ::write(file.get(), bytes.constData() + written, size_t(bytes.size() - written));
        if (step < 0 && errno != EINTR)
            return {};
        written += std::max<ssize_t>(step, 0);
    }
    constexpr int seals = F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;
    return file && ::fcntl(file.get(), F_ADD_SEALS, seals) == 0 ? std::move(file) : UniqueFd();
}

} // namespace tarnwell::compositions::preview
