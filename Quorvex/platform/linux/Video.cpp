// Video files: uncompressed ones are written here, the others by FFmpeg where it is.

#include <Quorvex/platform/Video.h>

#include <new>

#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/linux/AviWriter.h>
#include <Quorvex/platform/linux/RawAvi.h>

namespace KOVA::Quorvex {

namespace platform {

namespace {

bool (*s_chooser)(HWND, AVICOMPRESSOPTIONS*, void*) = nullptr;
void* s_chooserUser = nullptr;

constexpr std::uint64_t MAX_FRAME_BYTES = std::uint64_t{1} << 30;

class AviFile final : public VideoFile {
public:
    AviFile(const std::filesystem::path& path, unsigned int width, unsigned int height)
        : m_file(path), m_width(width), m_height(height) {}

    bool IsOpen() const { return m_file.IsOpen(); }

    std::shared_ptr<const CodecOptions> ChooseCodec(HWND window) override {
        auto options = std::make_shared<CodecOptions>();
        options->record.fccType = VIDEO_STREAM;
        options->record.fccHandler = DefaultCodec();
        if (s_chooser != nullptr && !s_chooser(window, &options->record, s_chooserUser)) {
            return nullptr;
        }
        return options;
    }

    bool Start(const CodecOptions& options) override {
        if (options.record.fccHandler == UNCOMPRESSED) {
            m_writer = std::make_unique<RawAvi>(m_file, m_width, m_height);
        } else {
            m_writer = MakeEncodedAvi(m_file, m_width, m_height, options.record);
        }
        return m_writer != nullptr;
    }

    VideoResult Write(const unsigned char* rgba) noexcept override {
        try {
            return m_writer != nullptr ? m_writer->Write(rgba) : VideoResult::Failed;
        } catch (const std::bad_alloc&) {
            return VideoResult::Failed;
        }
    }

    bool Close() override {
        const bool finished = m_writer != nullptr && m_writer->Finish();
        m_writer.reset();
        return m_file.Close() && finished;
    }

private:
    SeekableFile m_file;
    std::unique_ptr<AviWriter> m_writer; // writes to the file
    unsigned int m_width;
    unsigned int m_height;
};

} // namespace

void InitVideo() {}
void ReleaseVideo() {}

std::shared_ptr<const CodecOptions> MakeCodecOptions(std::uint32_t handler) {
    auto options = std::make_shared<CodecOptions>();
    options->record.fccType = VIDEO_STREAM;
    options->record.fccHandler = handler;
    return options;
}

ICINFO DescribeCodec(std::uint32_t handler) {
    constexpr DWORD version = 0x0104; // as of the system that these records come from
    ICINFO info{};
    info.dwSize = sizeof info;
    info.fccType = VIDEO_CODEC;
    info.fccHandler = handler;
    info.dwVersionICM = version;
    return info;
}

std::vector<ICINFO> InstalledCodecs() {
    ICINFO uncompressed = DescribeCodec(UNCOMPRESSED);
    CopyText("Uncompressed", uncompressed.szName);
    CopyText("Uncompressed frames", uncompressed.szDescription);
    std::vector<ICINFO> all{uncompressed};
    const std::vector<ICINFO> compressing = CompressingCodecs();
    all.insert(all.end(), compressing.begin(), compressing.end());
    return all;
}

std::unique_ptr<VideoFile> OpenVideoFile(const std::filesystem::path& path, unsigned int width, unsigned int height) {
    if (std::uint64_t{width} * height > MAX_FRAME_BYTES / 3) {
        return nullptr;
    }
    auto file = std::make_unique<AviFile>(path, width, height);
    return file->IsOpen() ? std::move(file) : nullptr;
}

} // namespace platform

void SetCodecChooser(bool (*chooser)(HWND window, AVICOMPRESSOPTIONS* options, void* user), void* user) {
    platform::s_chooser = chooser;
    platform::s_chooserUser = user;
}

} // namespace KOVA::Quorvex
