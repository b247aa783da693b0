#include "compositions/tool/Server.h"

#include "compositions/Limits.h"
#include "compositions/confinement/Confinement.h"
#include "compositions/drawing/Frame.h"
#include "compositions/drawing/Geometry.h"
#include "compositions/evaluator/Evaluator.h"
#include "compositions/model/Image.h"
#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/preview/Messages.h"
#include "compositions/preview/SharedMemory.h"
#include "compositions/reader/CompositionReader.h"
#include "compositions/reader/ValueDecoding.h"
#include "compositions/tool/Supervision.h"
#include "foundation/BoundedFile.h"
#include "foundation/Logging.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/PropertyList.h"

#include <QElapsedTimer>
#include <QImageReader>
#include <QJSEngine>
#include <QPainter>

#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <stop_token>
#include <thread>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using foundation::UniqueFd;
using preview::FrameMemory;
using preview::Reply;
using preview::Request;

namespace {

constexpr qint64 largestFile = 64LL * 1024 * 1024;

struct Letter
{
    Request request;
    std::vector<UniqueFd> descriptors;
    std::stop_source stop; ///< of a start: asked for as soon as something else is to be played
};

/// Takes the requests from the socket while a frame is made, so that a composition that nobody
/// wants to see any more ends at its next patch; and ends the process when the pane is gone,
/// whatever the process does.
class Inbox
{
public:
    explicit Inbox(int socket)
        : m_thread([this, socket] { read(socket); })
    {
        m_thread.detach();
    }

    /// Waits for the next request.
    Letter next()
    {
        std::unique_lock lock(m_mutex);
        m_condition.wait(lock, [this] { return !m_letters.empty(); });
        Letter letter = std::move(m_letters.front());
        m_letters.pop_front();
        return letter;
    }

private:
    [[noreturn]] void read(int socket)
    {
        for (;;) {
            Letter letter;
            if (preview::receive(socket, &letter.request, &letter.descriptors) !=
                preview::Received::Message)
                std::_Exit(0);
            const std::lock_guard lock(m_mutex);
            if (letter.request.kind == Request::Kind::Start ||
                letter.request.kind == Request::Kind::Stop) {
                m_playing.request_stop();
                m_playing = letter.stop;
            }
            m_letters.push_back(std::move(letter));
            m_condition.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_condition;
    std::deque<Letter> m_letters;
    std::stop_source m_playing;
    std::thread m_thread; // last, so that it starts when everything else is there
};

/// Does what the requests ask for, one after the other.
class Player
{
public:
    explicit Player(int socket)
        : m_socket(socket)
        , m_destination(OffscreenDestination::create({64, 64}))
    {}

    bool canPlay() const { return m_destination != nullptr; }
    /// Draws once in the ways that most compositions draw, since drivers compile their programs at
    /// the first use: without it the first frame of the first composition takes three times as
    /// long.
    void warmUp();
    void take(Letter &letter);

private:
    void start(const Letter &letter);
    void makeFrame(const Request &request);
    bool draw(const Request &request);
    void fail(quint64 number, Reply::Failure failure);

    int m_socket;
    std::unique_ptr<OffscreenDestination> m_destination;
    std::optional<FrameMemory> m_memory;
    std::unique_ptr<Evaluator> m_evaluator;
    std::stop_token m_stop;
    int m_slot = 0;
};

void Player::warmUp()
{
    if (!canPlay())
        return;
    QImage pixels(4, 4, QImage::Format_RGBA8888_Premultiplied);
    pixels.fill(Qt::gray);
    const ImageRef image =
        Image::fromBitmap(pixels, std::make_shared<ImageBudget>(pixels.sizeInBytes() * 2));
    Lighting lighting;
    lighting.lights.resize(1);
    RenderTarget target;
    target.pixels = m_destination->pixels();
    DrawCommand command;
    command.mesh = unitQuad();
    command.color = {1.0, 1.0, 1.0, 0.5};
    for (const ImageRef &shown : {ImageRef(), image}) {
        command.image = shown;
        command.lighting = nullptr;
        for (const Blending blending :
             {Blending::Replace, Blending::Over, Blending::Add, Blending::Alpha}) {
            command.blending = blending;
            for (const DepthMode depth : {DepthMode::None, DepthMode::ReadWrite}) {
                command.depth = depth;
                target.commands.emplace_back(command);
            }
        }
        command.lighting = std::make_shared<const Lighting>(lighting);
        target.commands.emplace_back(command);
    }
    m_destination->draw({{target}});
    m_destination->picture();
}

void Player::take(Letter &letter)
{
    switch (letter.request.kind) {
    case Request::Kind::Memory:
        m_memory.reset();
        if (letter.descriptors.size() == 1)
            m_memory = FrameMemory::map(std::move(letter.descriptors.front()),
                                        qint64(letter.request.size));
        break;
    case Request::Kind::Start:
    case Request::Kind::Stop:
        m_evaluator.reset();
        preview::send(m_socket, Reply{.kind = Reply::Kind::Taken, .number = letter.request.number});
        if (letter.request.kind == Request::Kind::Start)
            start(letter);
        break;
    case Request::Kind::Frame:
        makeFrame(letter.request);
        break;
    }
}

void Player::start(const Letter &letter)
{
    m_stop = letter.stop.get_token();
    // Whoever goes through a long list quickly waits for none of those in between.
    if (m_stop.stop_requested() || letter.descriptors.size() != 2)
        return;
    const auto file = foundation::readBoundedFile(letter.descriptors[0].get(), largestFile);
    const plist::Value inputs =
        plist::read(foundation::readBoundedFile(letter.descriptors[1].get(), largestFile)
                        .value_or(QByteArray()));
    const auto composition = file ? readComposition(*file) : nullptr;
    if (!composition) {
        fail(letter.request.number, Reply::Failure::NoComposition);
        return;
    }
    m_evaluator = std::make_unique<Evaluator>(
        composition, EvaluatorOptions{.seed = 0,
                                      .locale = QLocale::system(),
                                      .timeZone = QTimeZone::systemTimeZone(),
                                      .stop = m_stop});
    for (const auto &[key, value] : inputs.toDictionary())
        m_evaluator->setInput(key, decodeValue(value));
}

void Player::makeFrame(const Request &request)
{
    QElapsedTimer timer;
    timer.start();
    if (!draw(request)) {
        if (!m_stop.stop_requested())
            fail(request.number, Reply::Failure::NoMemory);
        return;
    }
    preview::send(m_socket, Reply{.kind = Reply::Kind::Frame,
                                  .detail = quint32(m_slot),
                                  .number = request.number,
                                  .width = request.width,
                                  .height = request.height,
                                  .nanoseconds = timer.nsecsElapsed()});
    m_slot = (m_slot + 1) % FrameMemory::slotCount;
}

bool Player::draw(const Request &request)
{
    const QSize pixels(request.width, request.height);
    const qint64 size = preview::frameBytes(pixels);
    if (!m_evaluator || !m_destination || !m_memory || size == 0 || size > m_memory->slotSize())
        return false;
    if (m_destination->pixels() != pixels && !m_destination->resize(pixels))
        return false;
    m_destination->draw(
        m_evaluator->evaluate(
            {.time = request.time, .systemTime = request.systemTime, .pixels = pixels}),
        m_stop);
    if (m_stop.stop_requested())
        return false;
    const QImage picture = m_destination->picture();
    if (picture.sizeInBytes() != size)
        return false;
    std::memcpy(m_memory->slot(m_slot), picture.constBits(), size_t(size));
    return true;
}

void Player::fail(quint64 number, Reply::Failure failure)
{
    m_evaluator.reset();
    preview::send(m_socket,
                  Reply{.kind = Reply::Kind::Failed, .detail = quint32(failure), .number = number});
}

} // namespace

void loadBeforeConfinement()
{
    QImageReader::supportedImageFormats();
    QImage canvas(8, 8, QImage::Format_ARGB32_Premultiplied);
    QPainter(&canvas).drawText(0, 8, u"Ag"_s);
    QJSEngine().evaluate(u"new Date().toLocaleString()"_s);
    QTimeZone::systemTimeZone().displayName(QTimeZone::StandardTime);
}

void serve(int socket)
{
    Player player(socket);
    loadBeforeConfinement();
    limitMemory(Allowance().bytes);
    const QStringList lacks = confine();
    for (const QString &lack : lacks)
        TARNWELL_SYSTEM_LOG(u"Effects play less confined than they should: %1"_s.arg(lack));
    quint32 detail = player.canPlay() ? 0 : quint32(Reply::NoOpenGL);
    if (!lacks.isEmpty())
        detail |= Reply::NotConfined;
    preview::send(
        socket,
        Reply{.kind = Reply::Kind::Ready, .detail = detail, .number = preview::protocolVersion});
    Inbox inbox(socket);
    player.warmUp();
    for (;;) {
        Letter letter = inbox.next();
        player.take(letter);
    }
}

} // namespace tarnwell::compositions
