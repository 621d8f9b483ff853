#include "System.h"

#include <algorithm>
#include <memory>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <wincodec.h>
#include <windows.h>

namespace KOVA::Quorvex::cli {

namespace {

// The imaging component is used on this thread only while this lives.
class ComScope {
public:
    ComScope() : m_result(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
    ~ComScope() {
        if (SUCCEEDED(m_result)) {
            CoUninitialize();
        }
    }

private:
    HRESULT m_result;
};

template <class T> struct Releaser {
    void operator()(T* object) const { object->Release(); }
};
template <class T> using ComPointer = std::unique_ptr<T, Releaser<T>>;

// Takes what a call hands out through its last parameter; null when the call failed.
template <class T, class Call> ComPointer<T> Made(Call call) {
    T* object = nullptr;
    return ComPointer<T>(SUCCEEDED(call(&object)) ? object : nullptr);
}

bool WriteFrame(IWICBitmapEncoder& encoder, unsigned int width, unsigned int height, std::vector<unsigned char>& bgr) {
    const auto frame = Made<IWICBitmapFrameEncode>([&](auto** made) { return encoder.CreateNewFrame(made, nullptr); });
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    return frame != nullptr && SUCCEEDED(frame->Initialize(nullptr)) && SUCCEEDED(frame->SetSize(width, height)) &&
           SUCCEEDED(frame->SetPixelFormat(&format)) && IsEqualGUID(format, GUID_WICPixelFormat24bppBGR) != 0 &&
           SUCCEEDED(frame->WritePixels(height, width * 3, static_cast<UINT>(bgr.size()), bgr.data())) &&
           SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder.Commit());
}

// The stream lies in a block of memory, which may be larger than what was written.
bool CopyToFile(IStream& stream, std::FILE* file) {
    STATSTG status;
    HGLOBAL block = nullptr;
    if (FAILED(stream.Stat(&status, STATFLAG_NONAME)) || FAILED(GetHGlobalFromStream(&stream, &block))) {
        return false;
    }
    const auto size = static_cast<std::size_t>(status.cbSize.QuadPart);
    const void* const bytes = GlobalLock(block);
    const bool written = bytes != nullptr && std::fwrite(bytes, 1, size, file) == size;
    GlobalUnlock(block);
    return written;
}

} // namespace

bool StandardErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

std::FILE* CreateNewFile(const std::filesystem::path& path) {
    const int descriptor = _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
    return descriptor >= 0 ? _fdopen(descriptor, "wb") : nullptr;
}

bool EncodePng(std::FILE* file, unsigned int width, unsigned int height, const std::vector<unsigned char>& pixels) {
    const ComScope com;
    const auto factory = Made<IWICImagingFactory>([](auto** made) {
        return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                reinterpret_cast<void**>(made));
    });
    const auto stream = Made<IStream>([](auto** made) { return CreateStreamOnHGlobal(nullptr, TRUE, made); });
    if (factory == nullptr || stream == nullptr) {
        return false;
    }
    const auto encoder = Made<IWICBitmapEncoder>(
        [&](auto** made) { return factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, made); });
    if (encoder == nullptr || FAILED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache))) {
        return false;
    }
    std::vector<unsigned char> bgr(pixels);
    for (std::size_t i = 0; i + 2 < bgr.size(); i += 3) {
        std::swap(bgr[i], bgr[i + 2]);
    }
    return WriteFrame(*encoder, width, height, bgr) && CopyToFile(*stream, file);
}

} // namespace KOVA::Quorvex::cli
