#pragma once

#include "foundation/UniqueFd.h"

#include <QtGlobal>

#include <optional>
#include <span>
#include <vector>

/// What the pane and the process that plays a composition say to each other, over a socket that
/// keeps messages apart. Both come from one build, so messages are structures as they lie in
/// memory; each side checks all that the other one says.
namespace tarnwell::compositions::preview {

/// Rises with every change to the messages.
inline constexpr quint32 protocolVersion = 1;

/// The exit status of a player that had no memory left.
inline constexpr int exitOutOfMemory = 113;

/// From the pane to the player.
struct Request
{
    enum class Kind : quint32 {
        Memory = 1, ///< takes the memory for frames: one descriptor, of `size` bytes
        Start,      ///< plays a composition: descriptors of its file and of its inputs
        Stop,       ///< lets go of the composition
        Frame       ///< makes a frame of what was started
    };

    Kind kind = Kind::Stop;
    qint32 width = 0;
    qint32 height = 0;
    quint32 unused = 0;
    quint64 number = 0; ///< of the start or the frame; the reply repeats it
    quint64 size = 0;
    double time = 0.0;
    double systemTime = 0.0;
};

/// From the player to the pane.
struct Reply
{
    enum class Kind : quint32 {
        Ready = 1, ///< the player is confined and waits; `detail` holds what it lacks
        Taken,     ///< it came to the start or stop of that number: it is busy no more
        Frame,     ///< the frame is in the memory, in the slot `detail`
        Failed     ///< no frame can be made of what was started; `detail` is a Failure
    };
    enum class Failure : quint32 { NoComposition = 1, NoMemory };
    /// Bits of a Ready.
    enum Lack : quint32 { NoOpenGL = 1, NotConfined = 2 };

    Kind kind = Kind::Ready;
    quint32 detail = 0;
    quint64 number = 0; ///< of a Ready the protocol's version
    qint32 width = 0;
    qint32 height = 0;
    qint64 nanoseconds = 0; ///< that the frame took
};

/// The most descriptors that come with a message.
inline constexpr size_t mostDescriptors = 2;

/// Both ends of a new connection, the first one not blocking. Empty when the system has none.
std::optional<std::pair<foundation::UniqueFd, foundation::UniqueFd>> makeConnection();

/// Sends one message; the descriptors stay the caller's. False when the other side is gone, or too
/// far behind.
bool sendBytes(int socket, const void *data, size_t size, std::span<const int> descriptors);

enum class Received { Message, Nothing, End, Nonsense };

/// Receives one message of just that size with its descriptors.
Received receiveBytes(int socket, void *data, size_t size,
                      std::vector<foundation::UniqueFd> *descriptors);

template <typename Message>
bool send(int socket, const Message &message, std::span<const int> descriptors = {})
{
    return sendBytes(socket, &message, sizeof message, descriptors);
}

template <typename Message>
Received receive(int socket, Message *message, std::vector<foundation::UniqueFd> *descriptors)
{
    return receiveBytes(socket, message, sizeof *message, descriptors);
}

} // namespace tarnwell::compositions::preview
