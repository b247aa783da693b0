#pragma once

#include "foundation/UniqueFd.h"

#include <QByteArray>
#include <QSize>

#include <optional>

namespace tarnwell::compositions::preview {

/// The memory that frames go through: two slots that take turns, each one picture with four bytes a
/// pixel. The pane makes it and seals its size, so that a player cannot take it away from under it.
class FrameMemory
{
public:
    static constexpr int slotCount = 2;

    /// New memory, readable here, for pictures of that many bytes. Nothing when there is none.
    static std::optional<FrameMemory> create(qint64 slotSize);
    /// The memory behind a descriptor that the pane sent, writable here. Nothing when it is not of
    /// that size.
    static std::optional<FrameMemory> map(foundation::UniqueFd descriptor, qint64 size);

    FrameMemory(FrameMemory &&other) noexcept;
    FrameMemory &operator=(FrameMemory &&other) noexcept;
    ~FrameMemory();

    int descriptor() const { return m_descriptor.get(); }
    qint64 size() const { return m_size; }
    qint64 slotSize() const { return m_size / slotCount; }
    /// The first byte of a slot. Of what the other side writes nothing is to be believed.
    uchar *slot(int index) const { return m_bytes + index * slotSize(); }

private:
    FrameMemory(foundation::UniqueFd descriptor, uchar *bytes, qint64 size);

    foundation::UniqueFd m_descriptor;
    uchar *m_bytes = nullptr;
    qint64 m_size = 0;
};

/// The bytes of one picture; 0 for a size that no picture has.
qint64 frameBytes(QSize pixels);

/// A file without a name that holds these bytes for good. Invalid when there is no memory for it.
foundation::UniqueFd sealedFile(const QByteArray &bytes);

} // namespace tarnwell::compositions::preview
