#include "compositions/opengl/TextureCache.h"

#include "compositions/opengl/OpenGL.h"

#include <algorithm>

namespace tarnwell::compositions {

namespace {

/// Spare targets beyond that are more likely never used again.
constexpr size_t mostSpareTargets = 12;

void setUpTexture()
{
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

} // namespace

const Texture *TextureCache::find(const ImageRef &image)
{
    const auto found = m_textures.find(image);
    if (found != m_textures.end()) {
        return &found->second;
    }
    if (image->kind() != Image::Kind::Bitmap) {
        return nullptr;
    }
    return &m_textures.emplace(image, upload(image->bitmap())).first->second;
}

const Texture *TextureCache::target(const ImageRef &image)
{
    if (const auto found = m_textures.find(image); found != m_textures.end()) {
        return &found->second;
    }
    const QSize size = image->pixelSize();
    const auto spare = std::ranges::find(m_spare, size, &Texture::size);
    if (spare != m_spare.end()) {
        const Texture reused = *spare;
        m_spare.erase(spare);
        return &m_textures.emplace(image, reused).first->second;
    }
    Texture texture{.size = size};
    glGenTextures(1, &texture.name);
    glBindTexture(GL_TEXTURE_2D, texture.name);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size.width(), size.height(), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, nullptr);
    setUpTexture();
    glGenRenderbuffers(1, &texture.depth);
    glBindRenderbuffer(GL_RENDERBUFFER, texture.depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, size.width(), size.height());
    glGenFramebuffers(1, &texture.framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, texture.framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture.name, 0);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, texture.depth);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        remove(texture);
        return nullptr;
    }
    return &m_textures.emplace(image, texture).first->second;
}

void TextureCache::collect()
{
    for (auto it = m_textures.begin(); it != m_textures.end();) {
        if (!it->first.expired()) {
            ++it;
            continue;
        }
        if (it->second.framebuffer != 0) {
            m_spare.push_back(it->second);
        } else {
            remove(it->second);
        }
        it = m_textures.erase(it);
    }
    while (m_spare.size() > mostSpareTargets) {
        remove(m_spare.front());
        m_spare.erase(m_spare.begin());
    }
}

void TextureCache::clear()
{
    for (const auto &[image, texture] : m_textures) {
        remove(texture);
    }
    for (const Texture &texture : m_spare) {
        remove(texture);
    }
    m_textures.clear();
    m_spare.clear();
}

Texture TextureCache::upload(const QImage &bitmap)
{
    Texture texture{.size = bitmap.size(), .isTopDown = true};
    glGenTextures(1, &texture.name);
    glBindTexture(GL_TEXTURE_2D, texture.name);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, int(bitmap.bytesPerLine() / 4));
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, bitmap.width(), bitmap.height(), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, bitmap.constBits());
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    setUpTexture();
    return texture;
}

void TextureCache::remove(const Texture &texture)
{
    glDeleteTextures(1, &texture.name);
    if (texture.framebuffer != 0) {
        glDeleteFramebuffers(1, &texture.framebuffer);
        glDeleteRenderbuffers(1, &texture.depth);
    }
}

} // namespace tarnwell::compositions
