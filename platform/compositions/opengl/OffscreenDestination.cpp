#include "compositions/opengl/OffscreenDestination.h"

#include "compositions/drawing/Frame.h"
#include "compositions/opengl/OpenGL.h"
#include "compositions/opengl/Renderer.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

EGLDisplay openDisplay()
{
    const auto getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    EGLDisplay display = EGL_NO_DISPLAY;
    if (getPlatformDisplay != nullptr) {
        display = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA,
                                     reinterpret_cast<void *>(EGL_DEFAULT_DISPLAY), nullptr);
    }
    // Drivers that do not know that platform may still do without a surface.
    return display != EGL_NO_DISPLAY ? display : eglGetDisplay(EGL_DEFAULT_DISPLAY);
}

} // namespace

/// A context of the system's, current from its making to its end.
class OffscreenDestination::Context
{
public:
    Context() = default;
    ~Context()
    {
        if (m_context != EGL_NO_CONTEXT) {
            eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
            eglDestroyContext(m_display, m_context);
        }
        // The display belongs to the process: to terminate it would take it away from whoever else
        // draws, and unload the driver to load it again for the next one.
        eglReleaseThread();
    }
    Q_DISABLE_COPY_MOVE(Context)

    bool initialize()
    {
        m_display = openDisplay();
        if (m_display == EGL_NO_DISPLAY ||
            eglInitialize(m_display, nullptr, nullptr) == EGL_FALSE) {
            m_display = EGL_NO_DISPLAY;
            return false;
        }
        constexpr std::array configAttributes{EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE,
                                              0, EGL_NONE};
        EGLConfig config = nullptr;
        int count = 0;
        if (eglBindAPI(EGL_OPENGL_API) == EGL_FALSE ||
            eglChooseConfig(m_display, configAttributes.data(), &config, 1, &count) == EGL_FALSE ||
            count < 1) {
            return false;
        }
        constexpr std::array contextAttributes{EGL_CONTEXT_MAJOR_VERSION,
                                               3,
                                               EGL_CONTEXT_MINOR_VERSION,
                                               3,
                                               EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                               EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                               EGL_NONE};
        m_context = eglCreateContext(m_display, config, EGL_NO_CONTEXT, contextAttributes.data());
        return m_context != EGL_NO_CONTEXT && makeCurrent();
    }

    bool makeCurrent() const
    {
        return eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context) == EGL_TRUE;
    }

private:
    EGLDisplay m_display = EGL_NO_DISPLAY;
    EGLContext m_context = EGL_NO_CONTEXT;
};

std::unique_ptr<OffscreenDestination> OffscreenDestination::create(QSize pixels, QString *error)
{
    auto context = std::make_unique<Context>();
    if (!context->initialize()) {
        if (error != nullptr) {
            *error = u"OpenGL 3.3 is not available here"_s;
        }
        return {};
    }
    std::unique_ptr<OffscreenDestination> destination(
        new OffscreenDestination(std::move(context), pixels));
    return destination->initialize(error) ? std::move(destination) : nullptr;
}

OffscreenDestination::OffscreenDestination(std::unique_ptr<Context> context, QSize pixels)
    : m_context(std::move(context))
    , m_renderer(std::make_unique<Renderer>())
    , m_pixels(pixels)
{}

OffscreenDestination::~OffscreenDestination()
{
    m_context->makeCurrent();
    if (m_renderer->isInitialized()) {
        m_renderer->release();
    }
    glDeleteFramebuffers(1, &m_framebuffer);
    glDeleteRenderbuffers(1, &m_color);
    glDeleteRenderbuffers(1, &m_depth);
}

bool OffscreenDestination::initialize(QString *error)
{
    if (!m_renderer->initialize(error)) {
        return false;
    }
    glGenFramebuffers(1, &m_framebuffer);
    glGenRenderbuffers(1, &m_color);
    glGenRenderbuffers(1, &m_depth);
    if (!allocate()) {
        if (error != nullptr) {
            *error = u"there is no memory for a picture of this size"_s;
        }
        return false;
    }
    return true;
}

bool OffscreenDestination::allocate()
{
    const auto allocateBuffer = [this](unsigned name, unsigned format, unsigned attachment) {
        glBindRenderbuffer(GL_RENDERBUFFER, name);
        glRenderbufferStorage(GL_RENDERBUFFER, format, m_pixels.width(), m_pixels.height());
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, name);
    };
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    allocateBuffer(m_color, GL_RGBA8, GL_COLOR_ATTACHMENT0);
    allocateBuffer(m_depth, GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

bool OffscreenDestination::resize(QSize pixels)
{
    m_context->makeCurrent();
    m_pixels = pixels;
    return allocate();
}

void OffscreenDestination::draw(const Frame &frame, std::stop_token stop)
{
    m_context->makeCurrent();
    m_renderer->draw(frame, m_framebuffer, m_pixels, std::move(stop));
    glFinish();
}

QImage OffscreenDestination::picture() const
{
    m_context->makeCurrent();
    QImage image(m_pixels, QImage::Format_RGBA8888);
    if (image.isNull()) {
        return image;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, m_pixels.width(), m_pixels.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                 image.bits());
    return image.mirrored(false, true);
}

} // namespace tarnwell::compositions
