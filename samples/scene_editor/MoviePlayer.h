#pragma once

#include "app/GWinThread.h"
#include "scene_editor/core/MovieClock.h"
#include "scene_editor/core/MovieFrame.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

/// Plays a movie where it lies in a library: reads its frames in a thread of its own, so that the
/// window never waits for the file. The movie is as it was when it was opened, whatever is done to
/// the library meanwhile. Damage that makes the system's decoder fault ends the movie, not the
/// program.
class MoviePlayer {
public:
    /// What is to be drawn.
    struct Shown {
        bool is_open = false;
        std::string reason;  ///< Why nothing can be shown, as a sentence; or empty.
        std::string text;    ///< The place in the movie.
        std::int32_t frame = 0;
        std::int32_t frames = 0;
        bool plays = false;
    };

    /// Opens the movie of that name and plays it. `message` is posted to `window` for each frame.
    /// Null when the system gives no thread.
    [[nodiscard]] static std::unique_ptr<MoviePlayer> Start(std::string movie, HWND window,
                                                            UINT message);
    /// Waits for the thread, which closes the movie.
    ~MoviePlayer();
    MoviePlayer(const MoviePlayer&) = delete;
    MoviePlayer& operator=(const MoviePlayer&) = delete;

    void play_or_pause();
    /// Pauses at a frame of the movie, or as many frames further.
    void show_frame(std::int32_t frame);
    void step(std::int32_t frames);

    /// The frame that was read last goes to `picture`, unless it was taken before.
    [[nodiscard]] Shown take(editor::FramePicture& picture);

private:
    class Frames;

    MoviePlayer(std::string movie, HWND window, UINT message);
    static unsigned Run(void* player);
    /// Until the player ends or the movie can't be shown.
    void play();
    [[nodiscard]] bool show(Frames& frames, std::int32_t frame);
    void refuse(const std::string& reason);
    void end(const std::string& reason);

    const std::string movie_;
    const HWND window_;
    const UINT message_;
    std::mutex mutex_;
    std::condition_variable changed_;
    editor::MovieClock clock_;
    bool ends_ = false;
    editor::FramePicture picture_;
    bool has_new_picture_ = false;
    Shown shown_;
    GWinThread thread_;  ///< Comes last: it uses the rest.
};
