#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <Quorvex/platform/linux/AviWriter.h>

namespace KOVA::Quorvex::platform {

// Writes pictures as they are. The file is made of segments of about 1 GiB, each with an index, and an index of these
// in front (OpenDML), so that it stays readable however long it gets; the first segment has an index of the old kind as
// well. The memory that it takes does not depend on the number of pictures.
class RawAvi : public AviWriter {
public:
    static constexpr std::uint64_t SEGMENT_BYTES = std::uint64_t{1} << 30;
    static constexpr std::uint32_t SEGMENT_FRAMES = 32768;
    static constexpr std::size_t MAX_SEGMENTS = 1024;

    // The file is empty, open and outlives this. A segment has one picture at least, whatever its size should be.
    RawAvi(SeekableFile& file, unsigned int width, unsigned int height, std::uint64_t segmentBytes = SEGMENT_BYTES);

    VideoResult Write(const unsigned char* rgba) override;
    bool Finish() override;

private:
    struct Segment {
        std::int64_t start; // of the RIFF chunk
        std::int64_t movie; // of the characters "movi", behind which the pictures follow
        std::int64_t index; // of the segment's index; 0 while pictures are added
        std::uint32_t frames;
    };

    void BeginSegment();
    void EndSegment();
    void WriteOldIndex(const Segment& segment);
    void PatchSize(std::int64_t chunk); // to reach from the chunk's start to the end of the file
    std::vector<unsigned char> Headers() const;
    std::uint32_t IndexBytes(const Segment& segment) const;

    SeekableFile& m_file;
    std::uint32_t m_width;
    std::uint32_t m_height;
    std::uint32_t m_frameBytes;
    std::uint32_t m_segmentFrames;
    std::uint32_t m_frames = 0;
    std::vector<unsigned char> m_picture; // as it is written
    std::vector<Segment> m_segments;
    bool m_good = true;
};

} // namespace KOVA::Quorvex::platform
