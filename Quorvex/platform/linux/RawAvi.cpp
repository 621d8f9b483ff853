#include <Quorvex/platform/linux/RawAvi.h>

#include <algorithm>

#include <Quorvex/core/PixelOrder.h>

namespace KOVA::Quorvex::platform {

namespace {

constexpr std::uint32_t FRAME_CHUNK = FourCharacters('0', '0', 'd', 'b');
constexpr std::uint32_t INDEX_CHUNK = FourCharacters('i', 'x', '0', '0');
constexpr std::uint32_t KEY_FRAME = 0x10;
constexpr std::uint32_t HAS_INDEX = 0x10;
constexpr std::uint32_t CHUNK_HEADER = 8;  // code and size
constexpr std::uint32_t INDEX_HEADER = 24; // of both kinds of index
constexpr std::uint32_t MAX_SUPER_ENTRIES = RawAvi::MAX_SEGMENTS;
constexpr std::uint8_t INDEX_OF_INDEXES = 0;
constexpr std::uint8_t INDEX_OF_CHUNKS = 1;

// Bytes in the order of the format, little-endian whatever the machine is.
class Bytes {
public:
    void Put8(std::uint32_t value) { Put(value, 1); }
    void Put16(std::uint32_t value) { Put(value, 2); }
    void Put32(std::uint32_t value) { Put(value, 4); }
    void Put64(std::int64_t value) { Put(static_cast<std::uint64_t>(value), 8); }
    void Zeros(std::size_t count) { m_bytes.resize(m_bytes.size() + count); }
    void Code(char a, char b, char c, char d) { Put32(FourCharacters(a, b, c, d)); }

    // A chunk is begun with its code and a size that End fills in.
    std::size_t Begin(std::uint32_t code) {
        Put32(code);
        Put32(0);
        return m_bytes.size();
    }
    std::size_t BeginList(std::uint32_t kind) {
        const std::size_t body = Begin(FourCharacters('L', 'I', 'S', 'T'));
        Put32(kind);
        return body;
    }
    void End(std::size_t body) {
        const std::size_t size = m_bytes.size() - body;
        for (std::size_t i = 0; i < 4; ++i) {
            m_bytes[body - 4 + i] = static_cast<unsigned char>(size >> (8 * i));
        }
    }

    std::vector<unsigned char> Take() { return std::move(m_bytes); }
    bool WriteTo(SeekableFile& file) const { return file.Write(m_bytes.data(), m_bytes.size()); }

private:
    void Put(std::uint64_t value, unsigned int count) {
        for (unsigned int i = 0; i < count; ++i) {
            m_bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
        }
    }

    std::vector<unsigned char> m_bytes;
};

} // namespace

RawAvi::RawAvi(SeekableFile& file, unsigned int width, unsigned int height, std::uint64_t segmentBytes)
    : m_file(file), m_width(width), m_height(height), m_frameBytes(width * height * 3),
      m_segmentFrames(static_cast<std::uint32_t>(
          std::clamp<std::uint64_t>(segmentBytes / (m_frameBytes + CHUNK_HEADER), 1, SEGMENT_FRAMES))) {}

VideoResult RawAvi::Write(const unsigned char* rgba) {
    if (m_segments.empty() || m_segments.back().frames == m_segmentFrames) {
        if (m_segments.size() == MAX_SEGMENTS) {
            return VideoResult::Full;
        }
        if (!m_segments.empty()) {
            EndSegment();
        }
        BeginSegment();
    }
    Bytes header;
    header.Put32(FRAME_CHUNK);
    header.Put32(m_frameBytes);
    m_picture.resize(m_frameBytes);
    ConvertToBgr(rgba, m_picture.size() / 3, m_picture.data());
    m_good = m_good && header.WriteTo(m_file) && m_file.Write(m_picture.data(), m_picture.size());
    ++m_segments.back().frames;
    ++m_frames;
    return m_good ? VideoResult::Written : VideoResult::Failed;
}

void RawAvi::BeginSegment() {
    const bool first = m_segments.empty();
    m_segments.push_back({m_file.Position(), 0, 0, 0});
    Bytes bytes;
    bytes.Code('R', 'I', 'F', 'F');
    bytes.Put32(0);
    bytes.Code('A', 'V', 'I', first ? ' ' : 'X');
    m_good = m_good && bytes.WriteTo(m_file);
    if (first) { // again at the end, with its numbers
        const std::vector<unsigned char> headers = Headers();
        m_good = m_good && m_file.Write(headers.data(), headers.size());
    }
    Bytes list;
    list.Code('L', 'I', 'S', 'T');
    list.Put32(0);
    list.Code('m', 'o', 'v', 'i');
    m_good = m_good && list.WriteTo(m_file);
    m_segments.back().movie = m_file.Position() - 4;
}

std::uint32_t RawAvi::IndexBytes(const Segment& segment) const {
    return INDEX_HEADER + segment.frames * 8;
}

void RawAvi::EndSegment() {
    Segment& segment = m_segments.back();
    segment.index = m_file.Position();
    Bytes index;
    const std::size_t body = index.Begin(INDEX_CHUNK);
    index.Put16(2); // 32-bit words an entry
    index.Put8(0);
    index.Put8(INDEX_OF_CHUNKS);
    index.Put32(segment.frames);
    index.Put32(FRAME_CHUNK);
    index.Put64(segment.movie);
    index.Put32(0);
    for (std::uint32_t i = 0; i < segment.frames; ++i) {
        index.Put32(4 + i * (m_frameBytes + CHUNK_HEADER) + CHUNK_HEADER); // of the picture itself
        index.Put32(m_frameBytes);                                         // the highest bit is clear: a key frame
    }
    index.End(body);
    m_good = m_good && index.WriteTo(m_file);
    PatchSize(segment.movie - CHUNK_HEADER);
    if (m_segments.size() == 1) {
        WriteOldIndex(segment);
    }
    PatchSize(segment.start);
}

void RawAvi::WriteOldIndex(const Segment& segment) {
    Bytes index;
    const std::size_t body = index.Begin(FourCharacters('i', 'd', 'x', '1'));
    for (std::uint32_t i = 0; i < segment.frames; ++i) {
        index.Put32(FRAME_CHUNK);
        index.Put32(KEY_FRAME);
        index.Put32(4 + i * (m_frameBytes + CHUNK_HEADER)); // of the chunk
        index.Put32(m_frameBytes);
    }
    index.End(body);
    m_good = m_good && index.WriteTo(m_file);
}

void RawAvi::PatchSize(std::int64_t chunk) {
    const std::int64_t end = m_file.Position();
    Bytes size;
    size.Put32(static_cast<std::uint32_t>(end - chunk - CHUNK_HEADER));
    m_good = m_good && m_file.Seek(chunk + 4) && size.WriteTo(m_file) && m_file.Seek(end);
}

// Always of the same length.
std::vector<unsigned char> RawAvi::Headers() const {
    Bytes bytes;
    const std::size_t headers = bytes.BeginList(FourCharacters('h', 'd', 'r', 'l'));

    const std::size_t file = bytes.Begin(FourCharacters('a', 'v', 'i', 'h'));
    bytes.Put32(1000000 / VIDEO_RATE); // microseconds a frame
    const std::uint64_t rate = std::uint64_t{m_frameBytes} * VIDEO_RATE;
    bytes.Put32(static_cast<std::uint32_t>(std::min<std::uint64_t>(rate, 0xFFFFFFFFU)));
    bytes.Put32(0);
    bytes.Put32(HAS_INDEX);
    bytes.Put32(m_segments.empty() ? 0 : m_segments.front().frames); // that old readers see
    bytes.Put32(0);
    bytes.Put32(1); // streams
    bytes.Put32(m_frameBytes);
    bytes.Put32(m_width);
    bytes.Put32(m_height);
    bytes.Zeros(16);
    bytes.End(file);

    const std::size_t streams = bytes.BeginList(FourCharacters('s', 't', 'r', 'l'));
    const std::size_t stream = bytes.Begin(FourCharacters('s', 't', 'r', 'h'));
    bytes.Put32(VIDEO_STREAM);
    bytes.Put32(UNCOMPRESSED);
    bytes.Zeros(12); // flags, priority and language, initial frames
    bytes.Put32(1);  // scale
    bytes.Put32(VIDEO_RATE);
    bytes.Put32(0); // start
    bytes.Put32(m_frames);
    bytes.Put32(m_frameBytes);
    bytes.Put32(0xFFFFFFFFU); // quality: the default
    bytes.Put32(0);           // sample size: frames
    bytes.Zeros(4);           // left, top
    bytes.Put16(m_width);
    bytes.Put16(m_height);
    bytes.End(stream);

    const std::size_t format = bytes.Begin(FourCharacters('s', 't', 'r', 'f'));
    bytes.Put32(40);
    bytes.Put32(m_width);
    bytes.Put32(m_height); // positive: the bottom row comes first
    bytes.Put16(1);
    bytes.Put16(24);
    bytes.Put32(0);
    bytes.Put32(m_frameBytes);
    bytes.Zeros(16);
    bytes.End(format);

    const std::size_t index = bytes.Begin(FourCharacters('i', 'n', 'd', 'x'));
    bytes.Put16(4); // 32-bit words an entry
    bytes.Put8(0);
    bytes.Put8(INDEX_OF_INDEXES);
    bytes.Put32(static_cast<std::uint32_t>(m_segments.size()));
    bytes.Put32(FRAME_CHUNK);
    bytes.Zeros(12);
    for (const Segment& segment : m_segments) {
        bytes.Put64(segment.index);
        bytes.Put32(IndexBytes(segment) + CHUNK_HEADER);
        bytes.Put32(segment.frames);
    }
    bytes.Zeros((MAX_SUPER_ENTRIES - m_segments.size()) * 16);
    bytes.End(index);
    bytes.End(streams);

    const std::size_t extended = bytes.BeginList(FourCharacters('o', 'd', 'm', 'l'));
    const std::size_t total = bytes.Begin(FourCharacters('d', 'm', 'l', 'h'));
    bytes.Put32(m_frames);
    bytes.Zeros(244);
    bytes.End(total);
    bytes.End(extended);
    bytes.End(headers);
    return bytes.Take();
}

bool RawAvi::Finish() {
    if (m_segments.empty()) {
        BeginSegment();
    }
    EndSegment();
    const std::vector<unsigned char> headers = Headers();
    m_good = m_good && m_file.Seek(12) && m_file.Write(headers.data(), headers.size());
    return m_good;
}

} // namespace KOVA::Quorvex::platform
