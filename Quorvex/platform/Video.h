#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include <Quorvex/platform/AviTypes.h>

// Seam: the system's video files and codecs.

namespace KOVA::Quorvex::platform {

constexpr unsigned int VIDEO_RATE = 25; // frames a second, of every file

// The code of a codec or of a kind of stream: four characters, the first one in the lowest byte.
constexpr std::uint32_t FourCharacters(char a, char b, char c, char d) {
    const auto at = [](char character, unsigned int place) {
        return std::uint32_t{static_cast<unsigned char>(character)} << (8 * place);
    };
    return at(a, 0) | at(b, 1) | at(c, 2) | at(d, 3);
}

constexpr std::uint32_t VIDEO_STREAM = FourCharacters('v', 'i', 'd', 's');
constexpr std::uint32_t VIDEO_CODEC = FourCharacters('v', 'i', 'd', 'c');
constexpr std::uint32_t UNCOMPRESSED = FourCharacters('D', 'I', 'B', ' ');

// Bracket every other use of video files in the process, on the thread of Quorvex::Init.
void InitVideo();
void ReleaseVideo();

// The codecs that videos can be written with, those included that are known but cannot be opened.
std::vector<ICINFO> InstalledCodecs();

// What a recording is written with. What the record points to lives as long as the object that it was handed out with.
struct CodecOptions {
    AVICOMPRESSOPTIONS record{};
};

// For a codec with its default settings.
std::shared_ptr<const CodecOptions> MakeCodecOptions(std::uint32_t handler);

enum class VideoResult {
    Written,
    Full,  // the file cannot take another frame; what is in it stays good
    Failed // the file is of no use
};

// A video file with one stream of pictures of one size, each a key frame of its own. Opened, chosen for and closed on
// the thread of Quorvex::Init; written on any one thread at a time. Destroying it releases everything.
class VideoFile {
public:
    VideoFile() = default;
    VideoFile(const VideoFile&) = delete;
    VideoFile& operator=(const VideoFile&) = delete;
    virtual ~VideoFile() = default;

    // Lets the user choose a codec: in the system's dialog, on top of the window, or where there is none through the
    // chooser that the host has set, and without one the best that serves everywhere. Null when the user cancels.
    virtual std::shared_ptr<const CodecOptions> ChooseCodec(HWND window) = 0;

    // Ends the preparations. False when there is no such codec or it does not take pictures of this size.
    virtual bool Start(const CodecOptions& options) = 0;

    // The next picture: 4 bytes (R, G, B, A) a pixel, bottom row first; the alpha is dropped. Throws nothing.
    virtual VideoResult Write(const unsigned char* rgba) noexcept = 0;

    // Writes what is left and closes the file. False when the file is not whole.
    virtual bool Close() = 0;
};

// Makes the file, or empties it. Width and height are multiples of 4 and not 0. Null when it cannot be written.
std::unique_ptr<VideoFile> OpenVideoFile(const std::filesystem::path& path, unsigned int width, unsigned int height);

} // namespace KOVA::Quorvex::platform
