#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include <Quorvex/core/OutputPlace.h>
#include <Quorvex/platform/Video.h>

namespace KOVA::Quorvex {

// A video file that is being recorded. Pictures are compressed and written by a thread of its own, in step with the
// drawing of the next ones; only a few wait for it, so that memory does not grow. The file takes its name when it is
// finished and whole. Everything is called on the thread of Quorvex::Init.
class Recording {
public:
    // Opens a file for pictures of this size (multiples of 4, not 0). Without options the user is asked for a codec,
    // on top of the window, and the answer is stored there. Null, and nothing left behind, when the file cannot be
    // written, there is no such codec, or the user cancels.
    static std::shared_ptr<Recording> Open(const char* path, unsigned int width, unsigned int height, HWND window,
                                           std::shared_ptr<const platform::CodecOptions>& options);

    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
    ~Recording(); // finishes

    // The next picture: 4 bytes (R, G, B, A) a pixel, bottom row first, no padding. Waits while too many wait already.
    // False, and the picture is not recorded, when the file is full, or can no longer be written; the latter is learnt
    // a few pictures late.
    bool Add(std::unique_ptr<unsigned char[]> rgba);

    // Writes what waits and closes the file. False, and there is no file, when any of it failed; a file that is full is
    // whole. Later calls tell the same.
    bool Finish();

    // Ends without a file.
    void Discard();

private:
    Recording(unsigned int width, unsigned int height);
    bool Prepare(const char* path, HWND window, std::shared_ptr<const platform::CodecOptions>& options);
    void StartWriter();
    void StopWriter();
    void WriteWaiting() noexcept;

    unsigned int m_width;
    unsigned int m_height;
    OutputPlace m_place;
    std::unique_ptr<platform::VideoFile> m_file; // null when it is closed
    bool m_finished = false;                     // what Finish tells

    std::thread m_writer; // none when the system has no more: pictures are then written as they come
    std::mutex m_mutex;   // of what follows
    std::condition_variable m_changed;
    std::deque<std::unique_ptr<unsigned char[]>> m_waiting;
    platform::VideoResult m_result = platform::VideoResult::Written; // the worst so far
    bool m_ended = false;                                            // nothing more will come
};

} // namespace KOVA::Quorvex
