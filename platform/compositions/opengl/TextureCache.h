#pragma once

#include "compositions/model/Image.h"

#include <QSize>

#include <map>
#include <memory>
#include <vector>

namespace tarnwell::compositions {

/// A texture, and with it what is needed to draw into it.
struct Texture
{
    unsigned name = 0;
    unsigned framebuffer = 0; ///< 0 unless it is a target
    unsigned depth = 0;
    QSize size;
    bool isTopDown = false; ///< the first line is the uppermost
};

/// The textures of images, each for as long as its image lives. Targets are used again for others
/// of the same size. All of it belongs to the context that is current when it is made.
class TextureCache
{
public:
    TextureCache() = default;
    Q_DISABLE_COPY_MOVE(TextureCache)

    /// The texture of an image; none for a rendered one that nobody drew.
    const Texture *find(const ImageRef &image);
    /// The target that fills a rendered image; none when memory runs out.
    const Texture *target(const ImageRef &image);
    /// Lets go of what belongs to images that are no more.
    void collect();
    /// Deletes everything. Without it, the context takes everything along.
    void clear();

    size_t count() const { return m_textures.size() + m_spare.size(); }

private:
    static Texture upload(const QImage &bitmap);
    static void remove(const Texture &texture);

    using Key = std::weak_ptr<const Image>;
    std::map<Key, Texture, std::owner_less<Key>> m_textures;
    std::vector<Texture> m_spare; ///< targets without an image
};

} // namespace tarnwell::compositions
