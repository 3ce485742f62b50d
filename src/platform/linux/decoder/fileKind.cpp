#include "platform/linux/decoder/fileKind.h"

#include <algorithm>
#include <array>
#include <string>

using namespace std::string_view_literals;

namespace {

struct Mark {
    size_t at;
    std::string_view bytes;
    FileKind kind;
    std::string_view form = {};  // at kForm, in files that are made of chunks
};
constexpr size_t kForm = 8;
constexpr std::string_view kDocumentMark = "%PDF-";
constexpr Mark kMarks[] = {
    {0, "\x89PNG\r\n\x1a\n"sv, FileKind::picture},
    {0, "\xff\xd8\xff"sv, FileKind::picture},
    {0, "GIF87a"sv, FileKind::picture},
    {0, "GIF89a"sv, FileKind::picture},
    {0, "II*\0"sv, FileKind::picture},
    {0, "MM\0*"sv, FileKind::picture},
    {0, "RIFF"sv, FileKind::picture, "WEBP"sv},
    {0, "\0\0\1\0"sv, FileKind::picture},
    {4, "ftypavif"sv, FileKind::picture},
    {4, "ftypheic"sv, FileKind::picture},
    {0, kDocumentMark, FileKind::pdf},
    {4, "ftyp"sv, FileKind::media},
    {0, "OggS"sv, FileKind::media},
    {0, "fLaC"sv, FileKind::media},
    {0, "ID3\2"sv, FileKind::media},
    {0, "ID3\3"sv, FileKind::media},
    {0, "ID3\4"sv, FileKind::media},
    {0, "\xff\xfb"sv, FileKind::media},
    {0, "\xff\xf3"sv, FileKind::media},
    {0, "\xff\xf1"sv, FileKind::media},
    {0, "RIFF"sv, FileKind::media, "WAVE"sv},
    {0, "RIFF"sv, FileKind::media, "AVI "sv},
    {0, "\x1a\x45\xdf\xa3"sv, FileKind::media},
    {0, "FLV\1"sv, FileKind::media},
    {0, "\0\0\1\xba"sv, FileKind::media},
    {0, "\x30\x26\xb2\x75\x8e\x66\xcf\x11"sv, FileKind::media},
    {0, "FORM"sv, FileKind::media, "AIFF"sv},
    {0, "FORM"sv, FileKind::media, "AIFC"sv},
    {0, ".snd"sv, FileKind::media},
};
constexpr std::array<std::pair<std::string_view, FileKind>, 12> kEndings = {{
    {"svg", FileKind::drawing},
    {"svgz", FileKind::drawing},
    {"bmp", FileKind::picture},
    {"ppm", FileKind::picture},
    {"pgm", FileKind::picture},
    {"pbm", FileKind::picture},
    {"xpm", FileKind::picture},
    {"xbm", FileKind::picture},
    {"tga", FileKind::picture},
    {"jxl", FileKind::picture},
    {"mpg", FileKind::media},
    {"m2ts", FileKind::media},
}};

}  // namespace

FileKind fileKind(std::string_view firstBytes, std::string_view name) {
    const auto has = [firstBytes](size_t at, std::string_view bytes) {
        return firstBytes.size() > at && firstBytes.substr(at, bytes.size()) == bytes;
    };
    for (const Mark& mark : kMarks)
        if (has(mark.at, mark.bytes) && (mark.form.empty() || has(kForm, mark.form)))
            return mark.kind;
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) return FileKind::unknown;
    std::string ending(name.substr(dot + 1));
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    for (const auto& [known, kind] : kEndings)
        if (known == ending) return kind;
    return FileKind::unknown;
}

bool isDocument(std::string_view firstBytes) {
    if (!firstBytes.starts_with(kDocumentMark)) return false;
    const std::string_view rest = firstBytes.substr(kDocumentMark.size());
    const size_t end = rest.find_first_not_of("0123456789. \t");
    return end == rest.npos || (end > 0 && "\r\n%"sv.find(rest[end]) != rest.npos);
}
