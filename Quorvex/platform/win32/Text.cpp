#include <Quorvex/platform/Text.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <windows.h>

namespace KOVA::Quorvex::platform {

namespace {

// The text as the process's code page reads it: the font's own would depend on its character set.
std::wstring Decode(const std::string& text) {
    const int bytes = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, nullptr, 0);
    std::wstring decoded(static_cast<std::size_t>(std::max(length, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, decoded.data(), length);
    return decoded;
}

// A line as it is drawn: without characters that take no room.
std::wstring Printable(std::wstring_view line) {
    std::wstring printable(line);
    std::replace(printable.begin(), printable.end(), L'\t', L' ');
    printable.erase(std::remove_if(printable.begin(), printable.end(), [](wchar_t c) { return c < 0x20 || c == 0x7F; }),
                    printable.end());
    return printable;
}

std::vector<std::wstring> LinesOf(const std::string& text) {
    const std::wstring decoded = Decode(text);
    std::wstring_view rest = decoded;
    std::vector<std::wstring> lines;
    while (true) {
        const std::size_t end = rest.find(L'\n');
        lines.push_back(Printable(rest.substr(0, end)));
        if (end == std::wstring_view::npos) {
            return lines;
        }
        rest.remove_prefix(end + 1);
    }
}

// A font, a bitmap and the memory device context that both are selected into.
class Canvas {
public:
    Canvas()
        : m_deviceContext(CreateCompatibleDC(nullptr)), m_font(CreateLabelFont()),
          m_originalFont(SelectObject(m_deviceContext, m_font)) {
        SetTextAlign(m_deviceContext, TA_BASELINE);
        SetTextColor(m_deviceContext, RGB(255, 255, 255));
        SetBkMode(m_deviceContext, TRANSPARENT);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        if (m_bitmap != nullptr) {
            SelectObject(m_deviceContext, m_originalBitmap);
            DeleteObject(m_bitmap);
        }
        SelectObject(m_deviceContext, m_originalFont);
        DeleteObject(m_font);
        DeleteDC(m_deviceContext);
    }

    int WidthOf(const std::wstring& line) const {
        SIZE size{};
        const auto length = static_cast<int>(line.size());
        return GetTextExtentPoint32W(m_deviceContext, line.data(), length, &size) != 0 ? size.cx : 0;
    }

    void Write(const std::wstring& line, int baseline) const {
        ExtTextOutW(m_deviceContext, 0, baseline, 0, nullptr, line.data(), static_cast<UINT>(line.size()), nullptr);
    }

    // A black bitmap to write on; 4 bytes a pixel, so that rows are not padded, and the top row first. Null on failure.
    const unsigned char* MakeBitmap(int width, int height) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        void* pixels = nullptr;
        m_bitmap = CreateDIBSection(m_deviceContext, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        if (m_bitmap == nullptr) {
            return nullptr;
        }
        m_originalBitmap = SelectObject(m_deviceContext, m_bitmap);
        return static_cast<const unsigned char*>(pixels);
    }

private:
    static HFONT CreateLabelFont() {
        LOGFONTA font{};
        font.lfHeight = LABEL_CELL_ROWS; // positive: of the cell, not of the letters
        font.lfWeight = FW_BOLD;
        font.lfCharSet = ANSI_CHARSET;
        font.lfQuality = NONANTIALIASED_QUALITY;
        font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
        constexpr std::string_view face = "Arial";
        std::copy(face.begin(), face.end(), static_cast<char*>(font.lfFaceName));
        return CreateFontIndirectA(&font);
    }

    HDC m_deviceContext;
    HFONT m_font;
    HGDIOBJ m_originalFont;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_originalBitmap = nullptr;
};

} // namespace

LabelPicture RasterizeLabel(const std::string& text) {
    const std::vector<std::wstring> lines = LinesOf(text);
    Canvas canvas;
    int width = 0;
    for (const std::wstring& line : lines) {
        width = std::max(width, canvas.WidthOf(line));
    }
    if (width <= 0 || width > LABEL_MAX_SIZE || lines.size() > LABEL_MAX_SIZE / LABEL_CELL_ROWS) {
        return {};
    }
    LabelPicture picture{width, static_cast<int>(lines.size()) * LABEL_CELL_ROWS, {}};
    const unsigned char* bitmap = canvas.MakeBitmap(picture.width, picture.height);
    if (bitmap == nullptr) {
        return {};
    }
    int baseline = LABEL_BASELINE;
    for (const std::wstring& line : lines) {
        canvas.Write(line, baseline);
        baseline += LABEL_CELL_ROWS;
    }
    GdiFlush(); // drawing is batched
    picture.pixels.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        picture.pixels[i] = (bitmap[i * 4] | bitmap[i * 4 + 1] | bitmap[i * 4 + 2]) != 0 ? 255 : 0;
    }
    return picture;
}

} // namespace KOVA::Quorvex::platform
