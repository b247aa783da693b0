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
layout(location = 3) in vec3 normal;
uniform mat4 transform;
uniform mat4 model;
uniform mat3 normalModel;
out vec2 place;
out vec4 shade;
#ifdef LIT
out vec3 spot;
out vec3 away;
#endif

void main()
{
    place = texturePosition;
    shade = color;
#ifdef LIT
    vec4 moved = model * position;
    spot = moved.xyz / moved.w;
    away = normalModel * normal;
#endif
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

#ifdef LIT
in vec3 spot;
in vec3 away;
uniform int lights;
uniform vec3 lightColor[8];
uniform vec4 lightPlace[8];  // with the attenuation
uniform vec3 ambient;
uniform vec2 gloss;          // how much, and how sharp
uniform float twoSides;

/// What a surface of that colour throws back to a viewer far away.
vec3 lit(vec3 color)
{
    vec3 normal = normalize(away);
    if (twoSides > 0.5 && !gl_FrontFacing) {
        normal = -normal;
    }
    vec3 sum = ambient * color;
    for (int i = 0; i < lights; ++i) {
        vec3 way = lightPlace[i].xyz - spot;
        float far = length(way);
        vec3 towards = way / max(far, 0.0001);
        float facing = dot(normal, towards);
        if (facing > 0.0) {
            vec3 half_ = normalize(towards + vec3(0.0, 0.0, 1.0));
            float mirrored = gloss.x * pow(max(dot(normal, half_), 0.0), max(gloss.y, 0.001));
            sum += lightColor[i] * (color * facing + mirrored) / (1.0 + lightPlace[i].w * far);
        }
    }
    return min(sum, vec3(1.0));
}
#endif

vec2 turned(float flip)
{
    return vec2(place.x, mix(place.y, 1.0 - place.y, flip));
}

void main()
{
    vec4 color = shade * tint;
#ifdef LIT
    color.rgb = lit(color.rgb);
#endif
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

unsigned compile(unsigned type, const QByteArray &source, QString *error)
{
    const QByteArray text = "#version 330 core\n" + source;
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

unsigned buildPlainProgram(QString *error)
{
    return buildProgram(vertexShader, fragmentShader, error);
}

unsigned buildLitProgram(QString *error)
{
    const QByteArray switchedOn("#define LIT\n");
    return buildProgram(switchedOn + vertexShader, switchedOn + fragmentShader, error);
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
