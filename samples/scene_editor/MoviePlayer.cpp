#include "scene_editor/MoviePlayer.h"

#include "foundation/GException.h"
#include "odb/GInputAVIFile.h"
#include "platform/FaultGuard.h"

#include <vfw.h>

#include <exception>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr LONG kMostHeaderBytes = 1 << 16;
constexpr const char* kNoMovie = "The movie can't be opened.";
constexpr const char* kNoForm = "No decoder of this system knows the form of this movie.";
constexpr const char* kNoFrame = "A frame of the movie can't be read.";
constexpr const char* kFault = "The movie can't be played: it may be damaged.";

std::span<const unsigned char> bytes_at(const void* data, std::size_t size)
{
    return {static_cast<const unsigned char*>(data), size};
}

}  // namespace

/// The frames of an open movie. Uncompressed ones are read as they are; for others the system looks
/// for a decoder.
class MoviePlayer::Frames {
public:
    explicit Frames(const std::string& name) : file_(name.c_str())
    {
        if (file_.handle == nullptr ||
            ::AVIFileGetStream(file_.handle, &stream_, streamtypeVIDEO, 0) != AVIERR_OK)
            return;
        LONG size = 0;
        if (::AVIStreamReadFormat(stream_, 0, nullptr, &size) != AVIERR_OK || size <= 0 ||
            size > kMostHeaderBytes)
            return;
        std::vector<unsigned char> header(static_cast<std::size_t>(size));
        if (::AVIStreamReadFormat(stream_, 0, header.data(), &size) != AVIERR_OK)
            return;
        form_ = editor::read_frame_form(header);
        if (!form_)
            decoder_ = ::AVIStreamGetFrameOpen(stream_, nullptr);
    }
    ~Frames()
    {
        if (decoder_ != nullptr)
            ::AVIStreamGetFrameClose(decoder_);
        if (stream_ != nullptr)
            ::AVIStreamRelease(stream_);
    }
    Frames(const Frames&) = delete;
    Frames& operator=(const Frames&) = delete;

    [[nodiscard]] bool is_open() const { return stream_ != nullptr; }
    [[nodiscard]] bool is_readable() const { return form_ || decoder_ != nullptr; }
    [[nodiscard]] editor::MovieClock clock() const
    {
        AVISTREAMINFOA info{};
        if (::AVIStreamInfoA(stream_, &info, sizeof info) != AVIERR_OK)
            return {};
        return {::AVIStreamLength(stream_), info.dwRate, info.dwScale};
    }
    [[nodiscard]] bool read(std::int32_t frame, editor::FramePicture& picture)
    {
        const LONG sample = ::AVIStreamStart(stream_) + frame;
        return form_ ? read_as_it_is(sample, picture) : decode(sample, picture);
    }

private:
    bool read_as_it_is(LONG sample, editor::FramePicture& picture)
    {
        const std::size_t size = editor::frame_bytes(*form_);
        bytes_.resize(size);
        LONG done = 0;
        if (::AVIStreamRead(stream_, sample, 1, bytes_.data(), static_cast<LONG>(size), &done,
                            nullptr) != AVIERR_OK)
            return false;
        return editor::convert_frame(*form_, {bytes_.data(), static_cast<std::size_t>(done)},
                                     picture);
    }
    bool decode(LONG sample, editor::FramePicture& picture)
    {
        const auto* const header =
            static_cast<const BITMAPINFOHEADER*>(::AVIStreamGetFrame(decoder_, sample));
        if (header == nullptr || header->biSize < sizeof *header)
            return false;
        // The decoder's own header tells the truth of what it wrote behind it.
        const std::size_t palette_bytes =
            header->biBitCount > 8
                ? 0
                : sizeof(RGBQUAD) * (header->biClrUsed != 0 ? header->biClrUsed : 256);
        const std::size_t header_bytes = header->biSize + palette_bytes;
        const auto form = editor::read_frame_form(bytes_at(header, header_bytes));
        if (!form)
            return false;
        const auto* const first = reinterpret_cast<const unsigned char*>(header) + header_bytes;
        return editor::convert_frame(*form, {first, editor::frame_bytes(*form)}, picture);
    }

    GInputAVIFile file_;
    PAVISTREAM stream_ = nullptr;
    std::optional<editor::FrameForm> form_;  ///< Of an uncompressed movie.
    PGETFRAME decoder_ = nullptr;
    std::vector<unsigned char> bytes_;
};

std::unique_ptr<MoviePlayer> MoviePlayer::Start(std::string movie, HWND window, UINT message)
{
    std::unique_ptr<MoviePlayer> player(new MoviePlayer(std::move(movie), window, message));
    if (player->thread_.m_hThread == nullptr)
        return nullptr;
    player->thread_.ResumeThread();
    return player;
}

MoviePlayer::MoviePlayer(std::string movie, HWND window, UINT message)
    : movie_(std::move(movie)),
      window_(window),
      message_(message),
      thread_(&MoviePlayer::Run, this, CREATE_SUSPENDED)
{
    thread_.m_bAutoDelete = FALSE;
}

MoviePlayer::~MoviePlayer()
{
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    if (thread_.m_hThread != nullptr)
        ::WaitForSingleObject(thread_.m_hThread, INFINITE);
}

void MoviePlayer::play_or_pause()
{
    {
        const std::lock_guard lock(mutex_);
        if (clock_.plays())
            clock_.pause(Clock::now());
        else if (shown_.is_open)
            clock_.play(Clock::now());
    }
    changed_.notify_all();
}

void MoviePlayer::show_frame(std::int32_t frame)
{
    {
        const std::lock_guard lock(mutex_);
        clock_.pause(Clock::now());
        clock_.go_to(frame, Clock::now());
    }
    changed_.notify_all();
}

void MoviePlayer::step(std::int32_t frames)
{
    std::int32_t wanted = 0;
    {
        const std::lock_guard lock(mutex_);
        clock_.pause(Clock::now());
        wanted = clock_.frame(Clock::now()) + frames;
    }
    show_frame(wanted);
}

MoviePlayer::Shown MoviePlayer::take(editor::FramePicture& picture)
{
    const std::lock_guard lock(mutex_);
    if (std::exchange(has_new_picture_, false))
        std::swap(picture, picture_);
    Shown shown = shown_;
    shown.plays = clock_.plays();
    return shown;
}

void MoviePlayer::refuse(const std::string& reason)
{
    {
        const std::lock_guard lock(mutex_);
        clock_.pause(Clock::now());
        shown_.reason = reason;
    }
    ::PostMessage(window_, message_, 0, 0);
}

void MoviePlayer::end(const std::string& reason)
{
    {
        const std::lock_guard lock(mutex_);
        shown_.is_open = false;
    }
    refuse(reason);
}

bool MoviePlayer::show(Frames& frames, std::int32_t frame)
{
    editor::FramePicture picture;
    if (!frames.read(frame, picture))
        return false;
    {
        const std::lock_guard lock(mutex_);
        std::swap(picture_, picture);
        has_new_picture_ = true;
        shown_.reason.clear();
        shown_.frame = frame;
        shown_.text = clock_.text(frame);
    }
    ::PostMessage(window_, message_, 0, 0);
    return true;
}

unsigned MoviePlayer::Run(void* player)
{
    auto* const self = static_cast<MoviePlayer*>(player);
    try {
        // The lock is never held where the system reads the movie: a fault there leaves it free.
        zmr::guarded([self] { self->play(); });
    } catch (const OutOfMemory_Exception& failure) {
        self->end(failure.what());
    } catch (const std::exception&) {  // a fault's own text speaks of the program
        self->end(kFault);
    }
    return 0;
}

void MoviePlayer::play()
{
    Frames frames(movie_);
    const editor::MovieClock clock = frames.is_open() ? frames.clock() : editor::MovieClock();
    if (clock.frames() == 0 || !frames.is_readable()) {
        refuse(frames.is_open() && !frames.is_readable() ? kNoForm : kNoMovie);
        return;
    }
    std::unique_lock lock(mutex_);
    clock_ = clock;
    clock_.play(Clock::now());
    shown_.is_open = true;
    shown_.frames = clock.frames();
    std::int32_t last = -1;
    while (!ends_) {
        const std::int32_t due = clock_.frame(Clock::now());
        if (due != last) {
            lock.unlock();
            const bool is_shown = show(frames, due);
            if (!is_shown)
                refuse(kNoFrame);
            lock.lock();
            last = due;
            continue;
        }
        if (clock_.plays())
            changed_.wait_until(lock, clock_.next(Clock::now()));
        else
            changed_.wait(lock);
    }
}
