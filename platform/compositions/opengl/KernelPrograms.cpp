#include "compositions/opengl/KernelPrograms.h"

#include "compositions/Limits.h"
#include "compositions/filters/Kernel.h"
#include "compositions/model/Image.h"
#include "compositions/opengl/OpenGL.h"
#include "compositions/opengl/Shaders.h"
#include "compositions/opengl/TextureCache.h"
#include "foundation/Logging.h"

#include <algorithm>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostImages = 8;
/// What has no end reaches at least as far as anybody looks.
constexpr float farAway = 1.0e6F;

/// One triangle that covers everything.
constexpr auto vertexShader = R"glsl(
void main()
{
    vec2 corner = vec2(float((gl_VertexID << 1) & 2), float(gl_VertexID & 2));
    gl_Position = vec4(corner * 2.0 - 1.0, 0.0, 1.0);
}
)glsl";

/// What kernels can call.
constexpr auto library = R"glsl(
uniform vec4 argument[32];
uniform vec2 origin;
uniform int stepLimit;
uniform vec4 extent[8];
uniform vec4 tint[8];
uniform float kind[8];   // 0 nothing, 1 texture, 2 one colour
uniform float flip[8];
uniform float clamped[8];
out vec4 result;
int steps = 0;

bool takeStep() { return steps++ < stepLimit; }
vec2 destinationCoord() { return gl_FragCoord.xy + origin; }
vec2 imageCoord(int s) { return destinationCoord(); }
vec2 imageTransform(int s, vec2 p) { return p; }
vec4 imageExtent(int s) { return extent[s]; }
vec2 imageOrigin(int s) { return extent[s].xy; }
vec2 imageSize_(int s) { return extent[s].zw; }
vec4 premultiplied(vec4 c) { return vec4(c.rgb * c.a, c.a); }
vec4 unpremultiplied(vec4 c) { return c.a > 0.0 ? vec4(c.rgb / c.a, c.a) : vec4(0.0); }
float chosen(float x, float y, float z) { return x < 0.0 ? y : z; }
vec2 chosen(vec2 x, vec2 y, vec2 z) { return mix(z, y, vec2(lessThan(x, vec2(0.0)))); }
vec3 chosen(vec3 x, vec3 y, vec3 z) { return mix(z, y, vec3(lessThan(x, vec3(0.0)))); }
vec4 chosen(vec4 x, vec4 y, vec4 z) { return mix(z, y, vec4(lessThan(x, vec4(0.0)))); }
vec2 cosineSine(float x) { return vec2(cos(x), sin(x)); }
vec2 sineCosine(float x) { return vec2(sin(x), cos(x)); }

vec4 imageSample(int s, vec2 p)
{
    if (kind[s] > 1.5) {
        return tint[s];
    }
    vec2 q = (p - extent[s].xy) / extent[s].zw;
    bool isOutside = any(lessThan(q, vec2(0.0))) || any(greaterThan(q, vec2(1.0)));
    if (kind[s] < 0.5 || (isOutside && clamped[s] < 0.5)) {
        return vec4(0.0);
    }
    q.y = mix(q.y, 1.0 - q.y, flip[s]);
    return LOOK;
}
)glsl";

QByteArray fragmentShader(int images, const QByteArray &functions, const QByteArray &call)
{
    // Software renderers look into every texture that a choice names, so only those in use are.
    QByteArray declarations;
    QByteArray look = "vec4(0.0)";
    for (int i = images - 1; i >= 0; --i) {
        const QByteArray number = QByteArray::number(i);
        declarations += "uniform sampler2D image" + number + ";\n";
        look = "s == " + number + " ? textureLod(image" + number + ", q, 0.0) : " + look;
    }
    return declarations + QByteArray(library).replace("LOOK", look) + functions +
           "\nvoid main()\n{\n    result = " + call + ";\n}\n";
}

} // namespace

unsigned KernelPrograms::programOf(const std::shared_ptr<const Kernel> &kernel)
{
    if (m_copying == 0) {
        m_copying = buildProgram(
            vertexShader, fragmentShader(1, {}, "imageSample(0, destinationCoord())"), nullptr);
    }
    if (const auto found = m_programs.find(kernel); found != m_programs.end()) {
        return found->second;
    }
    if (m_programs.size() >= size_t(limits::kernels)) {
        return m_copying;
    }
    QString error;
    unsigned program = buildProgram(
        vertexShader, fragmentShader(kernel->samplerCount(), kernel->functions(), kernel->call()),
        &error);
    if (program == 0) {
        TARNWELL_ZOK_LOG(u"[SE] An image kernel cannot be used: %1"_s.arg(error.trimmed()));
        program = m_copying;
    }
    m_programs.emplace(kernel, program);
    return program;
}

void KernelPrograms::setImages(unsigned program, const KernelCommand &command,
                               TextureCache &textures)
{
    std::array<std::array<float, 4>, mostImages> extents{};
    std::array<std::array<float, 4>, mostImages> tints{};
    std::array<float, mostImages> kinds{};
    std::array<float, mostImages> flips{};
    std::array<float, mostImages> clamps{};
    extents.fill({0.0F, 0.0F, 1.0F, 1.0F});
    for (size_t i = 0; i < std::min<size_t>(command.images.size(), mostImages); ++i) {
        const ImageRef &image = command.images[i];
        glUniform1i(glGetUniformLocation(program, ("image" + std::to_string(i)).c_str()), int(i));
        if (!image) {
            continue;
        }
        if (image->kind() == Image::Kind::Constant) {
            const Color &color = image->color();
            const auto alpha = float(color.alpha);
            tints[i] = {float(color.red) * alpha, float(color.green) * alpha,
                        float(color.blue) * alpha, alpha};
            extents[i] = {-farAway, -farAway, 2.0F * farAway, 2.0F * farAway};
            kinds[i] = 2.0F;
            continue;
        }
        glActiveTexture(GL_TEXTURE0 + unsigned(i));
        const Texture *texture = textures.find(image);
        if (texture == nullptr) {
            continue;
        }
        glBindTexture(GL_TEXTURE_2D, texture->name);
        const QRect extent = image->extent();
        extents[i] = {float(extent.x()), float(extent.y()), float(extent.width()),
                      float(extent.height())};
        kinds[i] = 1.0F;
        flips[i] = texture->isTopDown ? 1.0F : 0.0F;
        clamps[i] = image->outside() == Image::Outside::NearestPixel ? 1.0F : 0.0F;
    }
    const auto place = [program](const char *name) { return glGetUniformLocation(program, name); };
    glUniform4fv(place("extent"), mostImages, extents.front().data());
    glUniform4fv(place("tint"), mostImages, tints.front().data());
    glUniform1fv(place("kind"), mostImages, kinds.data());
    glUniform1fv(place("flip"), mostImages, flips.data());
    glUniform1fv(place("clamped"), mostImages, clamps.data());
}

void KernelPrograms::compute(const KernelCommand &command, QSize pixels, TextureCache &textures)
{
    const unsigned program = programOf(command.kernel);
    if (program == 0) {
        return;
    }
    if (m_vertexArray == 0) {
        glGenVertexArrays(1, &m_vertexArray);
    }
    glBindVertexArray(m_vertexArray);
    glUseProgram(program);
    setImages(program, command, textures);
    const auto place = [program](const char *name) { return glGetUniformLocation(program, name); };
    const qint64 area = qint64(pixels.width()) * pixels.height();
    glUniform1i(place("stepLimit"), int(std::clamp<qint64>(limits::kernelSteps / area, 16, 4096)));
    glUniform2f(place("origin"), float(command.origin.x()), float(command.origin.y()));
    if (!command.arguments.empty()) {
        glUniform4fv(place("argument"), int(command.arguments.size()),
                     command.arguments.front().data());
    }
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

void KernelPrograms::collect()
{
    std::erase_if(m_programs, [this](const auto &entry) {
        if (!entry.first.expired()) {
            return false;
        }
        if (entry.second != m_copying) {
            glDeleteProgram(entry.second);
        }
        return true;
    });
}

void KernelPrograms::clear()
{
    for (const auto &[kernel, program] : m_programs) {
        if (program != m_copying) {
            glDeleteProgram(program);
        }
    }
    m_programs.clear();
    glDeleteProgram(m_copying);
    glDeleteVertexArrays(1, &m_vertexArray);
    m_copying = m_vertexArray = 0;
}

} // namespace tarnwell::compositions
