#pragma once

#include "compositions/drawing/Frame.h"

#include <map>
#include <memory>

namespace tarnwell::compositions {

class TextureCache;

/// The shaders of image kernels, compiled when they are first needed. All of it belongs to the
/// context that is current then.
class KernelPrograms
{
public:
    KernelPrograms() = default;
    Q_DISABLE_COPY_MOVE(KernelPrograms)

    /// Fills the framebuffer that is bound. A kernel that no shader can be made of shows its first
    /// image as it is.
    void compute(const KernelCommand &command, QSize pixels, TextureCache &textures);
    /// Lets go of the shaders of kernels that are no more.
    void collect();
    void clear();

private:
    unsigned programOf(const std::shared_ptr<const Kernel> &kernel);
    static void setImages(unsigned program, const KernelCommand &command, TextureCache &textures);

    using Key = std::weak_ptr<const Kernel>;
    std::map<Key, unsigned, std::owner_less<Key>> m_programs;
    unsigned m_copying = 0;
    unsigned m_vertexArray = 0;
};

} // namespace tarnwell::compositions
