// Fetches a list from a web server and prints it:
//
//     tarnwell-fetch-list ADDRESS TIME SIZE HEADERS REDIRECTS [AUTHORITIES]
//
// A list is a property list whose root is an array; it is printed as XML. The limits are those of
// desktop::HttpLimits, in milliseconds and bytes. AUTHORITIES is a file of certificates that takes
// the place of the system's. Exits with 0 when the whole list was printed. When the time is over
// the program is killed by its own alarm.

#include "foundation/plist/PropertyList.h"

#include <QByteArray>

#include <curl/curl.h>
#include <sys/time.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

using tarnwell::plist::Format;

struct Limits
{
    long milliseconds;
    qsizetype size;
    qsizetype headerSize;
    long redirects;
};

void setAlarm(long milliseconds)
{
    std::signal(SIGALRM, SIG_DFL);
    const itimerval alarm{{}, {milliseconds / 1000, milliseconds % 1000 * 1000}};
    ::setitimer(ITIMER_REAL, &alarm, nullptr);
}

struct Library
{
    Library() = default;
    ~Library()
    {
        curl_easy_cleanup(curl);
        curl_global_cleanup();
    }
    Q_DISABLE_COPY_MOVE(Library)

    CURL *curl = curl_easy_init();
};

struct Answer
{
    qsizetype bodyLeft;
    qsizetype headersLeft;
    QByteArray body;
};

/// The library stops when less than everything is taken.
size_t takeBody(char *bytes, size_t, size_t count, void *data)
{
    auto *answer = static_cast<Answer *>(data);
    answer->bodyLeft -= qsizetype(count);
    if (answer->bodyLeft < 0)
        return 0;
    answer->body.append(bytes, qsizetype(count));
    return count;
}

size_t takeHeader(char *, size_t size, size_t count, void *data)
{
    auto *answer = static_cast<Answer *>(data);
    answer->headersLeft -= qsizetype(size * count);
    return answer->headersLeft < 0 ? 0 : size * count;
}

bool fetch(CURL *curl, const char *address, const Limits &limits, const char *authorities,
           Answer *answer)
{
    // A limit that the library does not know must not be left out in silence.
    bool isSet = true;
    const auto set = [&](CURLoption option, auto value) {
        isSet = isSet && curl_easy_setopt(curl, option, value) == CURLE_OK;
    };
    set(CURLOPT_URL, address);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, limits.redirects);
    set(CURLOPT_MAXFILESIZE_LARGE, curl_off_t(limits.size));
    set(CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    set(CURLOPT_FAILONERROR, 1L);
    set(CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_USERAGENT, "Tarnwell");
    set(CURLOPT_NOSIGNAL, 1L); // the alarm is ours
    set(CURLOPT_WRITEFUNCTION, takeBody);
    set(CURLOPT_WRITEDATA, answer);
    set(CURLOPT_HEADERFUNCTION, takeHeader);
    set(CURLOPT_HEADERDATA, answer);
    if (authorities)
        set(CURLOPT_CAINFO, authorities);
    long status = 0;
    return isSet && curl_easy_perform(curl) == CURLE_OK &&
           curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status) == CURLE_OK && status == 200;
}

} // namespace

int main(int count, char **arguments)
{
    if (count < 6 || count > 7) {
        std::fprintf(stderr, "Usage: tarnwell-fetch-list ADDRESS TIME SIZE HEADERS REDIRECTS "
                             "[AUTHORITIES]\n");
        return 2;
    }
    const Limits limits{std::atol(arguments[2]), std::atol(arguments[3]), std::atol(arguments[4]),
                        std::atol(arguments[5])};
    setAlarm(limits.milliseconds);

    Answer answer{limits.size, limits.headerSize, {}};
    const Library library;
    if (!library.curl ||
        !fetch(library.curl, arguments[1], limits, count > 6 ? arguments[6] : nullptr, &answer))
        return 1;
    const tarnwell::plist::Value list = tarnwell::plist::read(answer.body);
    if (!list.isArray())
        return 1;
    const QByteArray bytes = tarnwell::plist::write(list, Format::Xml);
    const size_t size = size_t(bytes.size());
    const bool isPrinted =
        std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    return isPrinted ? 0 : 1;
}
