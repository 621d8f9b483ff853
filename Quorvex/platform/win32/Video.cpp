// Video files through the system's AVI library and its compressors.

#include <Quorvex/platform/Video.h>

#include <algorithm>
#include <new>
#include <system_error>

#include <windows.h>

#include <vfw.h>

#include <Quorvex/core/PixelOrder.h>
#include <Quorvex/platform/NativeWindow.h>

namespace KOVA::Quorvex {

namespace platform {

namespace {

bool (*s_chooser)(HWND, AVICOMPRESSOPTIONS*, void*) = nullptr;
void* s_chooserUser = nullptr;

// The library counts in 32 bits with a sign. A megabyte is left for what it adds in front and at the end.
constexpr std::uint64_t MAX_FILE_BYTES = (std::uint64_t{1} << 31) - (std::uint64_t{1} << 20);
constexpr std::uint64_t BYTES_PER_FRAME = 8 + 1 + 16; // chunk header, padding, index entry

struct ReleaseFile {
    void operator()(IAVIFile* file) const { AVIFileRelease(file); }
};
struct ReleaseStream {
    void operator()(IAVIStream* stream) const { AVIStreamRelease(stream); }
};
using FilePointer = std::unique_ptr<IAVIFile, ReleaseFile>;
using StreamPointer = std::unique_ptr<IAVIStream, ReleaseStream>;

// Frees what the dialog puts into the record at the end.
struct FreeOptions {
    void operator()(CodecOptions* options) const {
        AVICOMPRESSOPTIONS* record = &options->record;
        AVISaveOptionsFree(1, &record);
        std::default_delete<CodecOptions>()(options);
    }
};

std::shared_ptr<CodecOptions> NewOptions() {
    std::shared_ptr<CodecOptions> options(new CodecOptions, FreeOptions());
    options->record.fccType = streamtypeVIDEO;
    return options;
}

class AviFile final : public VideoFile {
public:
    AviFile(std::filesystem::path path, unsigned int width, unsigned int height)
        : m_path(std::move(path)), m_width(width), m_height(height), m_picture(std::size_t{width} * height * 3) {}

    bool Open() {
        PAVIFILE file = nullptr;
        if (AVIFileOpenW(&file, m_path.c_str(), OF_WRITE | OF_CREATE, nullptr) != AVIERR_OK) {
            return false;
        }
        m_file.reset(file);
        AVISTREAMINFOW info{};
        info.fccType = streamtypeVIDEO;
        info.dwScale = 1;
        info.dwRate = VIDEO_RATE;
        info.dwQuality = static_cast<DWORD>(-1); // the codec's default
        SetRect(&info.rcFrame, 0, 0, static_cast<int>(m_width), static_cast<int>(m_height));
        PAVISTREAM stream = nullptr;
        if (AVIFileCreateStreamW(file, &stream, &info) != AVIERR_OK) {
            return false;
        }
        m_stream.reset(stream);
        return true;
    }

    std::shared_ptr<const CodecOptions> ChooseCodec(HWND window) override {
        const std::shared_ptr<CodecOptions> options = NewOptions();
        AVICOMPRESSOPTIONS* record = &options->record;
        if (s_chooser != nullptr) {
            record->fccHandler = UNCOMPRESSED;
            return s_chooser(window, record, s_chooserUser) ? options : nullptr;
        }
        PAVISTREAM stream = m_stream.get();
        return AVISaveOptions(window, 0, 1, &stream, &record) != 0 ? options : nullptr;
    }

    bool Start(const CodecOptions& options) override {
        AVICOMPRESSOPTIONS record = options.record; // which the call may change
        PAVISTREAM stream = nullptr;
        if (AVIMakeCompressedStream(&stream, m_stream.get(), &record, nullptr) != AVIERR_OK) {
            return false;
        }
        m_compressed.reset(stream);
        BITMAPINFOHEADER format{};
        format.biSize = sizeof format;
        format.biWidth = static_cast<LONG>(m_width);
        format.biHeight = static_cast<LONG>(m_height);
        format.biPlanes = 1;
        format.biBitCount = 24;
        format.biCompression = BI_RGB;
        format.biSizeImage = static_cast<DWORD>(m_picture.size());
        return AVIStreamSetFormat(stream, 0, &format, sizeof format) == AVIERR_OK;
    }

    VideoResult Write(const unsigned char* rgba) noexcept override {
        const auto bytes = static_cast<LONG>(m_picture.size());
        if (m_bytes + m_picture.size() + BYTES_PER_FRAME * (m_frames + 1) > MAX_FILE_BYTES) {
            return VideoResult::Full; // if the codec made nothing smaller of it; few do not
        }
        ConvertToBgr(rgba, m_picture.size() / 3, m_picture.data());
        LONG written = 0;
        if (AVIStreamWrite(m_compressed.get(), static_cast<LONG>(m_frames), 1, m_picture.data(), bytes, AVIIF_KEYFRAME,
                           nullptr, &written) != AVIERR_OK) {
            return VideoResult::Failed;
        }
        ++m_frames;
        m_bytes += static_cast<std::uint64_t>(std::max<LONG>(written, 0));
        return VideoResult::Written;
    }

    // The library writes what belongs to the end when the file is released, and does not tell how it went.
    bool Close() override {
        const bool opened = m_compressed != nullptr;
        m_compressed.reset();
        m_stream.reset();
        m_file.reset();
        std::error_code error;
        const std::uintmax_t size = std::filesystem::file_size(m_path, error);
        return opened && !error && size > m_bytes;
    }

private:
    std::filesystem::path m_path;
    unsigned int m_width;
    unsigned int m_height;
    std::vector<unsigned char> m_picture; // as it is written
    std::uint64_t m_bytes = 0;            // of the pictures in the file
    std::uint64_t m_frames = 0;
    FilePointer m_file;
    StreamPointer m_stream;
    StreamPointer m_compressed; // released first
};

} // namespace

void InitVideo() {
    AVIFileInit();
}

void ReleaseVideo() {
    AVIFileExit();
}

std::shared_ptr<const CodecOptions> MakeCodecOptions(std::uint32_t handler) {
    const std::shared_ptr<CodecOptions> options = NewOptions();
    options->record.fccHandler = handler;
    return options;
}

std::vector<ICINFO> InstalledCodecs() {
    std::vector<ICINFO> all;
    for (DWORD index = 0;; ++index) {
        ICINFO info{};
        info.dwSize = sizeof info;
        if (ICInfo(ICTYPE_VIDEO, index, &info) == 0 || info.fccHandler == 0) {
            return all;
        }
        const HIC codec = ICOpen(info.fccType, info.fccHandler, ICMODE_QUERY);
        if (codec != nullptr) {
            ICGetInfo(codec, &info, sizeof info);
            ICClose(codec);
        }
        all.push_back(info);
    }
}

std::unique_ptr<VideoFile> OpenVideoFile(const std::filesystem::path& path, unsigned int width, unsigned int height) {
    if (std::uint64_t{width} * height > MAX_FILE_BYTES / 3) {
        return nullptr;
    }
    auto file = std::make_unique<AviFile>(path, width, height);
    return file->Open() ? std::move(file) : nullptr;
}

} // namespace platform

void SetCodecChooser(bool (*chooser)(HWND window, AVICOMPRESSOPTIONS* options, void* user), void* user) {
    platform::s_chooser = chooser;
    platform::s_chooserUser = user;
}

} // namespace KOVA::Quorvex
