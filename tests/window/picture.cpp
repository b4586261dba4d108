#include "window/picture.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr uint32_t NO_COLOUR = 0xFFFFFFFF;

std::array<uint32_t, 256> MakeCrcTable() {
    std::array<uint32_t, 256> table;
    for (uint32_t n = 0; n < 256; ++n) {
        uint32_t c = n;
        for (int bit = 0; bit < 8; ++bit) c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        table[n] = c;
    }
    return table;
}

uint32_t Crc(const std::string &bytes) {
    static const std::array<uint32_t, 256> table = MakeCrcTable();
    uint32_t crc = 0xFFFFFFFFu;
    for (unsigned char byte : bytes) crc = table[(crc ^ byte) & 255] ^ (crc >> 8);
    return ~crc;
}

uint32_t Adler(const std::string &bytes) {
    uint32_t a = 1, b = 0;
    for (unsigned char byte : bytes) {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

std::string BigEndian(uint32_t n) {
    return {static_cast<char>(n >> 24), static_cast<char>(n >> 16), static_cast<char>(n >> 8),
            static_cast<char>(n)};
}

std::string Chunk(const std::string &kind, const std::string &data) {
    return BigEndian(static_cast<uint32_t>(data.size())) + kind + data + BigEndian(Crc(kind + data));
}

// A zlib stream of stored blocks: nothing is compressed, and nothing is needed for it.
std::string Stored(const std::string &bytes) {
    constexpr size_t BLOCK = 65535;
    std::string out = "\x78\x01";
    for (size_t at = 0; at < bytes.size(); at += BLOCK) {
        auto size = static_cast<uint16_t>(std::min(BLOCK, bytes.size() - at));
        out += static_cast<char>(at + size == bytes.size());
        for (uint16_t n : {size, static_cast<uint16_t>(~size)}) {
            out += static_cast<char>(n & 255);
            out += static_cast<char>(n >> 8);
        }
        out += bytes.substr(at, size);
    }
    return out + BigEndian(Adler(bytes));
}

std::string PngBytes(const Picture &picture) {
    std::string lines;
    for (int y = 0; y < picture.height; ++y) {
        lines += '\0';
        for (int x = 0; x < picture.width; ++x) {
            uint32_t pixel = picture.at(x, y);
            for (int shift : {16, 8, 0}) lines += static_cast<char>(pixel >> shift);
        }
    }
    std::string size =
        BigEndian(static_cast<uint32_t>(picture.width)) + BigEndian(static_cast<uint32_t>(picture.height));
    const char form[] = {8, 2, 0, 0, 0}; // 8 bits, red green blue
    return std::string("\x89PNG\r\n\x1a\n") + Chunk("IHDR", size + std::string(form, sizeof form)) +
           Chunk("IDAT", Stored(lines)) + Chunk("IEND", "");
}

} // namespace

uint32_t Picture::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return NO_COLOUR;
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
}

int Picture::count(uint32_t colour, int left, int top, int right, int bottom) const {
    int found = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x) found += at(x, y) == colour;
    return found;
}

Picture Picture::part(int left, int top, int right, int bottom) const {
    Picture cut;
    left = std::clamp(left, 0, width);
    top = std::clamp(top, 0, height);
    cut.width = std::clamp(right, left, width) - left;
    cut.height = std::clamp(bottom, top, height) - top;
    for (int y = 0; y < cut.height; ++y)
        for (int x = 0; x < cut.width; ++x) cut.pixels.push_back(at(left + x, top + y));
    return cut;
}

Picture PictureOfScreen(const RECT &rect) {
    Picture picture;
    picture.width = std::max<int>(rect.right - rect.left, 0);
    picture.height = std::max<int>(rect.bottom - rect.top, 0);
    picture.pixels.resize(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    if (picture.pixels.empty()) return picture;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO form = {};
    form.bmiHeader.biSize = sizeof form.bmiHeader;
    form.bmiHeader.biWidth = picture.width;
    form.bmiHeader.biHeight = -picture.height;
    form.bmiHeader.biPlanes = 1;
    form.bmiHeader.biBitCount = 32;
    void *bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(memory, &form, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ before = SelectObject(memory, bitmap);
    // To copy what lies beside the screen, as the frame of a maximized window does, can fail as a whole.
    RECT part = {}, whole = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    IntersectRect(&part, &rect, &whole);
    BitBlt(memory, part.left - rect.left, part.top - rect.top, part.right - part.left, part.bottom - part.top,
           screen, part.left, part.top, SRCCOPY);
    GdiFlush();
    const auto *source = static_cast<const uint32_t *>(bits);
    for (size_t i = 0; i < picture.pixels.size(); ++i) picture.pixels[i] = source[i] & 0xFFFFFF;
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return picture;
}

Picture PictureOfWindow(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    return PictureOfScreen(rect);
}

Picture PictureOfClient(HWND window) {
    RECT rect = {};
    GetClientRect(window, &rect);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT *>(&rect), 2);
    return PictureOfScreen(rect);
}

bool WritePng(const Picture &picture, const std::string &path) {
    FILE *file = fopen(path.c_str(), "wb");
    if (!file) return false;
    std::string bytes = PngBytes(picture);
    bool written = fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return fclose(file) == 0 && written;
}
