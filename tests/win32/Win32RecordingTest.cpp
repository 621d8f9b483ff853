// Recordings through the system's compressors and its dialog.

#include <cstdlib>
#include <filesystem>
#include <numbers>

#include <windows.h>

#include <vfw.h>

#include <GlTest.h>

namespace KOVA::Quorvex::test {
namespace {

constexpr DWORD GREY = mmioFOURCC('Y', '8', '0', '0');
constexpr unsigned int WIDTH = 160;
constexpr unsigned int HEIGHT = 120;

int s_compressed = 0; // frames

// The grey levels of the picture, one byte each, from the top: what the code stands for in other programs, too.
void Compress(const ICCOMPRESS& job) {
    const BITMAPINFOHEADER& format = *job.lpbiInput;
    const auto* in = static_cast<const unsigned char*>(job.lpInput);
    auto* out = static_cast<unsigned char*>(job.lpOutput);
    for (LONG row = format.biHeight; row-- > 0;) {
        for (LONG column = 0; column < format.biWidth; ++column) {
            const unsigned char* p = in + (row * format.biWidth + column) * 3;
            *out++ = static_cast<unsigned char>((114 * p[0] + 587 * p[1] + 299 * p[2] + 500) / 1000);
        }
    }
    job.lpbiOutput->biSizeImage = format.biSizeImage / 3;
    *job.lpdwFlags = AVIIF_KEYFRAME;
    ++s_compressed;
}

LRESULT CALLBACK GreyCodec(DWORD_PTR /*id*/, HDRVR /*driver*/, UINT message, LPARAM first, LPARAM second) {
    const auto* in = reinterpret_cast<const BITMAPINFOHEADER*>(first);
    auto* out = reinterpret_cast<BITMAPINFOHEADER*>(second);
    switch (message) {
    case DRV_LOAD:
    case DRV_OPEN:
    case DRV_CLOSE:
    case DRV_ENABLE:
    case DRV_DISABLE:
    case DRV_FREE:
        return 1;
    case ICM_COMPRESS_QUERY:
        return in->biBitCount == 24 && in->biCompression == BI_RGB ? ICERR_OK : ICERR_BADFORMAT;
    case ICM_COMPRESS_GET_FORMAT:
        if (out != nullptr) {
            *out = *in;
            out->biCompression = GREY;
            out->biBitCount = 8;
            out->biSizeImage = in->biSizeImage / 3;
        }
        return out != nullptr ? ICERR_OK : static_cast<LRESULT>(sizeof *out);
    case ICM_COMPRESS_GET_SIZE:
        return in->biWidth * in->biHeight;
    case ICM_COMPRESS_BEGIN:
    case ICM_COMPRESS_END:
    case ICM_COMPRESS_FRAMES_INFO:
        return ICERR_OK;
    case ICM_COMPRESS:
        Compress(*reinterpret_cast<const ICCOMPRESS*>(first));
        return ICERR_OK;
    default:
        return ICERR_UNSUPPORTED;
    }
}

class Win32RecordingTest : public GlTest {
protected:
    Win32RecordingTest() {
        const char* folder = std::getenv("QUORVEX_RECORDINGS"); // of tests/recording/read_back.py
        m_folder = folder != nullptr ? folder : std::filesystem::temp_directory_path() / "quorvex-win32-recording";
        std::filesystem::create_directories(m_folder);
        m_keep = folder != nullptr;
    }
    ~Win32RecordingTest() override {
        if (!m_keep) {
            std::filesystem::remove_all(m_folder);
        }
    }
    std::string Path(const char* name) const { return (m_folder / name).string(); }

    std::filesystem::path m_folder;
    bool m_keep = false;
};

TEST_F(Win32RecordingTest, ThroughACompressor) {
    ASSERT_TRUE(ICInstall(ICTYPE_VIDEO, GREY, reinterpret_cast<LPARAM>(&GreyCodec), nullptr, ICINSTALL_FUNCTION));
    FrameFixture stage(64, 64);
    stage.frame.SetBackgroundColor(ColorRGBA(0.1F, 0.3F, 0.9F), ColorRGBA(0.9F, 0.5F, 0.0F));
    stage.frame.Add(MakeRectangle(0.5F, -0.1F, 1.1F, 0.3F, 0, {1, 1, 1}));
    stage.frame.AVISetCodec(GREY);
    ASSERT_TRUE(stage.frame.AVIRotate(Path("Y800.avi"), WIDTH, HEIGHT, {0, 0, 1}, 36));
    EXPECT_EQ(s_compressed, 36);
    ASSERT_TRUE(stage.frame.RenderToBitmap(Path("last.bmp"), WIDTH, HEIGHT));
    stage.view.RotateWorld({0, 0, 1, static_cast<float>(std::numbers::pi / 18)});
    ASSERT_TRUE(stage.frame.RenderToBitmap(Path("first.bmp"), WIDTH, HEIGHT));

    // The system reads it, too.
    PAVISTREAM stream = nullptr;
    ASSERT_EQ(AVIStreamOpenFromFileA(&stream, Path("Y800.avi").c_str(), streamtypeVIDEO, 0, OF_READ, nullptr), 0);
    AVISTREAMINFOA info{};
    EXPECT_EQ(AVIStreamInfoA(stream, &info, sizeof info), 0);
    EXPECT_EQ(info.dwLength, 36U);
    EXPECT_EQ(info.dwRate, 25 * info.dwScale);
    LONG bytes = 0;
    std::vector<unsigned char> picture(WIDTH * HEIGHT);
    EXPECT_EQ(AVIStreamRead(stream, 35, 1, picture.data(), WIDTH * HEIGHT, &bytes, nullptr), 0);
    EXPECT_EQ(bytes, static_cast<LONG>(WIDTH * HEIGHT));
    EXPECT_NEAR(picture.front(), (114 * 230 + 587 * 77 + 299 * 26) / 1000, 2) << "the upper edge comes first";
    AVIStreamRelease(stream);
    ICRemove(ICTYPE_VIDEO, GREY, 0);
}

// Cancels the system's dialog as soon as it is there.
void CALLBACK CancelDialog(HWND /*window*/, UINT /*message*/, UINT_PTR timer, DWORD /*time*/) {
    const HWND dialog = FindWindowA("#32770", nullptr);
    if (dialog != nullptr) {
        PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        KillTimer(nullptr, timer);
    }
}

TEST_F(Win32RecordingTest, CancelledDialogLeavesNothing) {
    FrameFixture stage(64, 64);
    for (int i = 0; i < 2; ++i) { // it asks again
        ASSERT_NE(SetTimer(nullptr, 0, 50, CancelDialog), 0U);
        EXPECT_FALSE(stage.frame.AVIStart(Path("a.avi"), 0));
    }
    EXPECT_FALSE(std::filesystem::exists(Path("a.avi")));
    EXPECT_EQ(stage.frame.AddAviFrame(), 0);
}

} // namespace
} // namespace KOVA::Quorvex::test
