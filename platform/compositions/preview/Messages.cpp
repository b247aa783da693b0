#include "compositions/preview/Messages.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>

namespace tarnwell::compositions::preview {

using foundation::UniqueFd;

namespace {

constexpr size_t controlSize = CMSG_SPACE(mostDescriptors * sizeof(int));

} // namespace

std::optional<std::pair<UniqueFd, UniqueFd>> makeConnection()
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return std::nullopt;
    std::pair<UniqueFd, UniqueFd> connection{UniqueFd(ends[0]), UniqueFd(ends[1])};
    if (::fcntl(ends[0], F_SETFL, O_NONBLOCK) != 0)
        return std::nullopt;
    return connection;
}

bool sendBytes(int socket, const void *data, size_t size, std::span<const int> descriptors)
{
    Q_ASSERT(descriptors.size() <= mostDescriptors);
    iovec bytes{const_cast<void *>(data), size};
    alignas(cmsghdr) std::array<char, controlSize> control{};
    msghdr message{};
    message.msg_iov = &bytes;
    message.msg_iovlen = 1;
    if (!descriptors.empty()) {
        message.msg_control = control.data();
        message.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
        cmsghdr *const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
        std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
    }
    ssize_t sent = 0;
    do
        sent = ::sendmsg(socket, &message, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent == ssize_t(size);
}

Received receiveBytes(int socket, void *data, size_t size, std::vector<UniqueFd> *descriptors)
{
    descriptors->clear();
    iovec bytes{data, size};
    alignas(cmsghdr) std::array<char, controlSize> control{};
    msghdr message{};
    message.msg_iov = &bytes;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    ssize_t received = 0;
    do
        received = ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    while (received < 0 && errno == EINTR);
    for (cmsghdr *header = received < 0 ? nullptr : CMSG_FIRSTHDR(&message); header;
         header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS)
            continue;
        const size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(header) + i * sizeof(int), sizeof(int));
            descriptors->emplace_back(descriptor);
        }
    }
    if (received < 0)
        return errno == EAGAIN || errno == EWOULDBLOCK ? Received::Nothing : Received::End;
    if (received == 0)
        return Received::End;
    const bool isWhole =
        received == ssize_t(size) && !(message.msg_flags & (MSG_TRUNC | MSG_CTRUNC));
    return isWhole ? Received::Message : Received::Nonsense;
}

} // namespace tarnwell::compositions::preview
