#include "compositions/opengl/Shaders.h"

#include "compositions/opengl/OpenGL.h"

#include <QByteArray>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

constexpr auto vertexShader = R"glsl(
layout(location = 0) in vec4 position;
layout(location = 1) in vec2 texturePosition;
layout(location = 2) in vec4 color;
uniform mat4 transform;
out vec2 place;
out vec4 shade;

void main()
{
    place = texturePosition;
    shade = color;
    gl_Position = transform * position;
}
)glsl";

// Images are premultiplied, colours are not; what leaves here is.
constexpr auto fragmentShader = R"glsl(
in vec2 place;
in vec4 shade;
uniform vec4 tint;
uniform sampler2D image;
uniform sampler2D mask;
uniform float hasImage;
uniform float flipImage;
uniform float hasMask;
uniform float flipMask;
out vec4 result;

vec2 turned(float flip)
{
    return vec2(place.x, mix(place.y, 1.0 - place.y, flip));
}

void main()
{
    vec4 color = shade * tint;
    color = vec4(color.rgb * color.a, color.a);
    if (hasImage > 0.5) {
        color *= texture(image, turned(flipImage));
    }
    if (hasMask > 0.5) {
        color *= dot(texture(mask, turned(flipMask)).rgb, vec3(0.299, 0.587, 0.114));
    }
    result = color;
}
)glsl";

QByteArray header()
{
    const auto *version = reinterpret_cast<const char *>(glGetString(GL_VERSION));
    return QByteArray(version).startsWith("OpenGL ES")
               ? QByteArray("#version 300 es\nprecision highp float;\n")
               : QByteArray("#version 330 core\n");
}

unsigned compile(unsigned type, const QByteArray &source, QString *error)
{
    const QByteArray text = header() + source;
    const char *pointer = text.constData();
    const unsigned shader = glCreateShader(type);
    glShaderSource(shader, 1, &pointer, nullptr);
    glCompileShader(shader);
    int succeeded = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &succeeded);
    if (succeeded == 0) {
        QByteArray log(4096, '\0');
        glGetShaderInfoLog(shader, int(log.size()), nullptr, log.data());
        if (error != nullptr) {
            *error = QString::fromUtf8(log.constData());
        }
        glDeleteShader(shader);
        return 0;
    }
    return shader;
}

} // namespace

unsigned buildProgram(QString *error)
{
    return buildProgram(vertexShader, fragmentShader, error);
}

unsigned buildProgram(const QByteArray &vertexSource, const QByteArray &fragmentSource,
                      QString *error)
{
    if (glGetString(GL_VERSION) == nullptr) {
        if (error != nullptr) {
            *error = u"there is no OpenGL context"_s;
        }
        return 0;
    }
    const unsigned vertex = compile(GL_VERTEX_SHADER, vertexSource, error);
    const unsigned fragment = vertex != 0 ? compile(GL_FRAGMENT_SHADER, fragmentSource, error) : 0;
    if (fragment == 0) {
        glDeleteShader(vertex);
        return 0;
    }
    const unsigned program = glCreateProgram();
    glAttachShader(program, vertex);
    glAttachShader(program, fragment);
    glLinkProgram(program);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
    int succeeded = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &succeeded);
    if (succeeded == 0) {
        if (error != nullptr) {
            *error = u"the shaders do not fit together"_s;
        }
        glDeleteProgram(program);
        return 0;
    }
    return program;
}

} // namespace tarnwell::compositions
