#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace tarnwell::compositions {

/// A small program that computes every pixel of an image from other images and from numbers, turned
/// from the kernel language into the language of OpenGL's shaders.
class Kernel
{
public:
    enum class ArgumentType : quint8 { Sampler, Number, Vector2, Vector3, Vector4, Color };
    struct Argument
    {
        QString name;
        ArgumentType type = ArgumentType::Number;
    };

    /// Null, with the reason, for what is no kernel, what needs more than the language offers, and
    /// what might keep a graphics processor busy without end.
    static std::shared_ptr<const Kernel> translate(const QString &source, QString *error = nullptr);

    const std::vector<Argument> &arguments() const { return m_arguments; }
    int samplerCount() const;
    /// Functions in the shader language, and the expression that calls the kernel. Arguments are
    /// found in the uniforms `argument`, samplers are called by their number.
    const QByteArray &functions() const { return m_functions; }
    const QByteArray &call() const { return m_call; }

private:
    std::vector<Argument> m_arguments;
    QByteArray m_functions;
    QByteArray m_call;
};
using KernelRef = std::shared_ptr<const Kernel>;

} // namespace tarnwell::compositions
