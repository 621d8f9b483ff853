#pragma once

#include <memory>
#include <vector>

#include <Quorvex/platform/Video.h>
#include <Quorvex/platform/linux/SeekableFile.h>

// What puts pictures into AVI files. The compressing ones are in video/ and, where FFmpeg is missing, in novideo/.

namespace KOVA::Quorvex::platform {

class AviWriter {
public:
    AviWriter() = default;
    AviWriter(const AviWriter&) = delete;
    AviWriter& operator=(const AviWriter&) = delete;
    virtual ~AviWriter() = default;

    virtual VideoResult Write(const unsigned char* rgba) = 0; // as VideoFile's, but may throw

    // Writes what belongs to the end. False when the file is not whole; it still has to be closed.
    virtual bool Finish() = 0;
};

// A writer of compressed pictures, or null when no such codec can be opened for this size. The file outlives it.
std::unique_ptr<AviWriter> MakeEncodedAvi(SeekableFile& file, unsigned int width, unsigned int height,
                                          const AVICOMPRESSOPTIONS& options);

// The compressing codecs, every one that has a code.
std::vector<ICINFO> CompressingCodecs();

// The codec for recordings that nobody chooses one for.
std::uint32_t DefaultCodec();

// A description with the given codes and nothing else.
ICINFO DescribeCodec(std::uint32_t handler);

// Copies a text of ASCII characters, cut off where the room ends.
template <std::size_t Room> void CopyText(const char* text, wchar_t (&target)[Room]) {
    std::size_t length = 0;
    for (; text != nullptr && text[length] != 0 && length + 1 < Room; ++length) {
        target[length] = static_cast<unsigned char>(text[length]);
    }
    target[length] = 0;
}

} // namespace KOVA::Quorvex::platform
